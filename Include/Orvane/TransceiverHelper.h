/// \file TransceiverHelper.h
/// How the task system, a product beside this library, is started by it: by the run-time class "KTransceiverHelper". In
/// a process without that class nothing is started, and the log says so.
///
/// The setting "TaskSystemEnable" (a bool, section "OrvaneCore", off by default) turns the start on. It is read once a
/// launch, as the last run stored it or the manifest has it: an answer of the configuration server counts from the next
/// launch on. Whoever brings the product registers the class (Orvane/RunTime.h) before the launch. The library sends
/// these selectors to the class itself, in this order, on one of its queue's threads, and does not look at what they
/// return:
///
/// | selector               | arguments                                                                             |
/// |------------------------|---------------------------------------------------------------------------------------|
/// | "init:appID:baseUrl:"  | three texts: the user's open id, the application's bundle id, and the address of the  |
/// |                        | setting "TransceiverUrl" in the manifest's section "OrvaneCore"                       |
/// | "start"                | none                                                                                  |
///
/// The texts are null-terminated, never null and valid for the life of the process; open id and address are empty where
/// they are not known. A class without the first gets neither; one without the second gets the first alone.
#ifndef ORVANE_TRANSCEIVER_HELPER_H
#define ORVANE_TRANSCEIVER_HELPER_H

#define ORVANE_TRANSCEIVER_HELPER "KTransceiverHelper"
#define ORVANE_TRANSCEIVER_INIT "init:appID:baseUrl:"
#define ORVANE_TRANSCEIVER_START "start"

#endif
