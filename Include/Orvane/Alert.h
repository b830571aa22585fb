/// \file Alert.h
/// How a host shows the library's alerts: by the run-time class "UIAlertController". In a process without that class
/// the console has their title and message.
///
/// Whoever draws the game's surface registers the class (Orvane/RunTime.h) before the launch. For each alert the
/// library sends the selector below to the class itself, on the main run loop (Orvane/MainRunLoop.h), with three texts:
/// the title, the message, and the word on the one button, which does nothing but close the alert. They are UTF-8,
/// null-terminated and never null, and valid until the method returns. The library does not wait for the button, and
/// does not look at what the method returns.
///
/// There is one alert: that the manifest names no game id.
#ifndef ORVANE_ALERT_H
#define ORVANE_ALERT_H

#define ORVANE_ALERT_CLASS "UIAlertController"
#define ORVANE_ALERT_PRESENT "presentAlertWithTitle:message:action:"

#endif
