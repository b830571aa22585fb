/// \file TelephonyNetworkInfo.h
/// How a platform with a modem tells the library of its radio and of its SIM: by the run-time class
/// "CTTelephonyNetworkInfo". In a process without that class, a cellular connection is of an unknown radio and carrier.
///
/// Whoever knows the modem registers the class (Orvane/RunTime.h), before or after the library loads. At each question
/// the library makes an instance, asks it, copies the answer, and releases it, on whatever thread the question came
/// from. A method may be left out and any answer may be null: not known. Instances have these methods:
///
/// | selector                              | answer                                                                  |
/// |---------------------------------------|-------------------------------------------------------------------------|
/// | "currentRadioAccessTechnology"        | a radio name; asked on system versions from 7 to below 13               |
/// | "serviceCurrentRadioAccessTechnology" | from version 13 on: an object that answers "objectForKey:", given a     |
/// |                                       | service's key, with its radio name                                      |
/// | "dataServiceIdentifier"               | from version 13 on: the key of the service that carries data            |
/// | "subscriberCellularProvider"          | an object that answers "mobileCountryCode" and "mobileNetworkCode",     |
/// |                                       | texts of digits                                                         |
///
/// Texts are null-terminated. Texts and objects belong to the instance and are valid until it is released. The version
/// is the system's own, in front of its first blank ("12", "22.04").
#ifndef ORVANE_TELEPHONY_NETWORK_INFO_H
#define ORVANE_TELEPHONY_NETWORK_INFO_H

/// The radio names. Any other name is an unknown radio. 2G:
#define ORVANE_RADIO_GPRS "CTRadioAccessTechnologyGPRS"
#define ORVANE_RADIO_EDGE "CTRadioAccessTechnologyEdge"
/// 3G:
#define ORVANE_RADIO_WCDMA "CTRadioAccessTechnologyWCDMA"
#define ORVANE_RADIO_HSDPA "CTRadioAccessTechnologyHSDPA"
#define ORVANE_RADIO_HSUPA "CTRadioAccessTechnologyHSUPA"
#define ORVANE_RADIO_CDMA1X "CTRadioAccessTechnologyCDMA1x"
#define ORVANE_RADIO_CDMA_EVDO_REV_0 "CTRadioAccessTechnologyCDMAEVDORev0"
#define ORVANE_RADIO_CDMA_EVDO_REV_A "CTRadioAccessTechnologyCDMAEVDORevA"
#define ORVANE_RADIO_CDMA_EVDO_REV_B "CTRadioAccessTechnologyCDMAEVDORevB"
/// 4G:
#define ORVANE_RADIO_EHRPD "CTRadioAccessTechnologyeHRPD"
#define ORVANE_RADIO_LTE "CTRadioAccessTechnologyLTE"
/// 5G:
#define ORVANE_RADIO_NRNSA "CTRadioAccessTechnologyNRNSA"
#define ORVANE_RADIO_NR "CTRadioAccessTechnologyNR"

#endif
