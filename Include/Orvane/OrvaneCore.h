/// \file OrvaneCore.h
/// The exported functions, for the game's engine and its script layer. C99 and C++11.
///
/// Texts are null-terminated UTF-8. A text that is returned is owned by the library and valid for the process unless it
/// says otherwise. Where no thread is named, any thread may call. None of these starts or stops the plugin lifecycle:
/// that comes from the application's launch.
#ifndef ORVANE_ORVANE_CORE_H
#define ORVANE_ORVANE_CORE_H

#include <stdbool.h>
#include <stdint.h>

#include "Orvane/Export.h"
#include "Orvane/LogPriority.h"
#include "Orvane/NetworkState.h"

#ifdef __cplusplus
namespace Orvane {
class IConfigFile;
class IOrvaneCore;
}  // namespace Orvane
namespace Quern {
class AString;
}
typedef Orvane::IOrvaneCore orvanecore_instance;
typedef Orvane::IConfigFile orvane_config_file;
extern "C" {
#else
typedef struct orvanecore_instance orvanecore_instance;
typedef struct orvane_config_file orvane_config_file;
#endif

/* --- Version ------------------------------------------------------------------------------------------------------ */

/// "1.5.11.2664"
ORVANE_EXPORT const char* orvanecore_get_version(void);
/// The source revision of the build: 40 lower-case hexadecimal digits. All are zero if the sources came neither from a
/// git checkout nor from an archive that git made.
ORVANE_EXPORT const char* orvanecore_get_version_hash(void);
/// "ORVANE_VERSION_ORVANECORE_1.5.11.2664"
ORVANE_EXPORT const char* orvanecore_get_orvane_version_string(void);
/// 1.0
ORVANE_EXPORT extern const double OrvaneCoreVersionNumber;
/// "@(#)PROGRAM:OrvaneCore  PROJECT:OrvaneCore-1" and a line feed.
ORVANE_EXPORT extern const unsigned char OrvaneCoreVersionString[];

/* --- Facade ------------------------------------------------------------------------------------------------------- */

/// The facade object, made at the first call; the same pointer for the life of the process.
ORVANE_EXPORT orvanecore_instance* orvanecore_getInstance(void);
/// Kept for its callers; destroys nothing.
ORVANE_EXPORT void orvanecore_releaseInstance(void);
/// Kept for its callers. \return 0
ORVANE_EXPORT int orvanecore_init(void);
/// Sets the threshold of the library's own logger: 0 (debug) to 5 (none).
ORVANE_EXPORT void orvanecore_setLogLevel(int level);
/// Tells who the user is; both texts must not be null. Writes a file. Of two calls at a time each text is one of
/// theirs. Neither may hold a line end, at which the stored text would be two lines. \return true; a file that
/// cannot be written goes unnoticed: the pair holds for this run, and the next call, also with the same, tries again
ORVANE_EXPORT bool orvanecore_setUserInfo(const char* channelId, const char* openId);
/// Enters the environment's release marker among the quit callbacks. \return true
ORVANE_EXPORT bool InitQuernObjectEnvironment(void);
/// The marker itself; does nothing.
ORVANE_EXPORT void ReleaseQuernObjectEnvironment(void);

/* --- Remote configuration: its client ------------------------------------------------------------------------------*/

/// Points the client at another server and asks it. The address is written as "https://host:port", without a slash
/// behind it; null does nothing.
///
/// An address that differs from the present one throws away what the client has kept of the last answer. The address of
/// the last run is known only once the client has started, so a game that calls this at every launch begins each time
/// without its configuration: the server's address belongs in the manifest ("RemoteConfigUrl" of the section
/// "OrvaneCore"), and this call is for a change of it while the game runs. A request that is under way goes on, its
/// answer is dropped, and the new server is asked at the next occasion. Writes a file. Not from a log callback.
/// \return 1
ORVANE_EXPORT int orvanecore_configure_seturl(const char* url);
/// Forgets the server's address and what the client has kept of the last answer, so that settings are the manifest's
/// and the callers' defaults. Nothing is asked until orvanecore_configure_seturl, or until the next start of the
/// process finds an address in the manifest. Writes a file. Not from a log callback. \return 1
ORVANE_EXPORT int orvanecore_configure_clear(void);

/* --- Log: the library's own logger ---------------------------------------------------------------------------------*/

/// Logs a finished text through the library's own logger; before that has started, prints it on the console whatever
/// its level. A null text does nothing.
ORVANE_EXPORT void OrvaneCore_XLog(ALogPriority level, const char* file, unsigned int line, const char* function,
                                   const char* text);
/// Sets the threshold of the library's own logger, and its default before it has started.
ORVANE_EXPORT void OrvaneCore_SetQuernLogLevel(ALogPriority level);
/// A sink that is given every line of the library's own logger, on the thread that logs it and under the logger's lock;
/// lost before that logger exists. Null removes it. Of the library it may use two things: it may log, and it may read
/// settings. What it logs is handed to it again; what the library logs about such a read is logged only. All else (an
/// observer, an operation, a fetch, the server's address) takes locks under which other threads log, and so wait for
/// this one; for the same reason it must not wait for another thread.
ORVANE_EXPORT void OrvaneCore_SetQuernLogCallback(void (*callback)(ALogPriority priority, const char* line));

/* --- Log: the game's logger, named after the game id; made at the first of these calls --------------------------- */
/* Here as above and below, any thread, also for the first call. Once the store is open, orvane_log_logx neither waits
   for a file (modes 1 and 2) nor fails: a line for which there is no room is replaced by a marker or dropped.
   Mode 0 is the default and survives no kill (ILogger::SetOption); Orvane/Game.h tells what becomes of a line. */

/// Sets the threshold; the configured level of the game's module goes before it.
ORVANE_EXPORT void orvane_log_set_loglevel(ALogPriority level);
/// \return the threshold
ORVANE_EXPORT ALogPriority orvane_log_get_loglevel(void);
/// Sets an option by name, to be read by orvane_log_init; the names are those of ILogger::SetOption.
ORVANE_EXPORT void orvane_log_set_option_int(const char* key, int value);
/// Reserved; does nothing.
ORVANE_EXPORT void orvane_log_set_option_str(const char* key, const char* value);
/// Opens the store, on the caller's thread; once: later calls, and calls at the same time, return and do nothing. A
/// line that was logged before reaches the console only.
ORVANE_EXPORT void orvane_log_init(void);
/// Logs one text. A null `text` logs nothing; `tag` is ignored and may be null.
ORVANE_EXPORT void orvane_log_logx(ALogPriority level, const char* text, const char* file, unsigned int line,
                                   const char* function, const char* tag);
/// Removes old files of the game's log: the oldest beyond `fileNumLimit` (below 0: no limit), then those older than
/// `hours`.
ORVANE_EXPORT void orvane_log_remove_logfile(int hours, int fileNumLimit);

/* --- Log: thresholds of the plugins' loggers ---------------------------------------------------------------------- */

/// Sets the threshold of the module's logger; "OrvaneCore" is the library's own. An unknown module is ignored.
ORVANE_EXPORT void OrvaneSDKLog_setLogLevel(const char* module, ALogPriority level);
/// Sets the threshold of every logger that exists, the library's own last.
ORVANE_EXPORT void OrvaneSDKLog_setAllLogLevel(ALogPriority level);

/* --- Configuration of the game's own module, which is named after the game id at the first of these calls --------- */
/* What a read looks at, and what the types make of it, tells Orvane/IRemoteConfig.h: the server's last answer, then the
   manifest's section "OrvaneGame", then the default. No read waits for the network or fails. A null key gives the
   default. */

/// Sets the callback that hears which keys of the module came with an answer of the server; null for none. It replaces
/// the one before, which may be called a last time on another thread meanwhile. A module has one place for an observer:
/// nothing is heard here if the game's logger (orvane_log_*) or a native observer of that module was made first. Call
/// it once, since each call leaves a few bytes behind.
/// \param callback on the thread on which the answer arrived; `keys` is a JSON text, {"KeyList":["name",..]} and a
///                 newline, valid for the call
ORVANE_EXPORT void quern_remoteconfig_SetCallback(void (*callback)(const char* keys));
/// \return the value, or `defaultValue`; a stored value that equals it counts as not there
ORVANE_EXPORT int quern_remoteconfig_GetInt(const char* key, int defaultValue);
/// \return the value, or `defaultValue`
ORVANE_EXPORT long long quern_remoteconfig_GetLong(const char* key, long long defaultValue);
/// \return the value, or `defaultValue`; a stored value is true only as the text "true"
ORVANE_EXPORT bool quern_remoteconfig_GetBool(const char* key, bool defaultValue);
/// \return the number that a text begins with, or `defaultValue`
ORVANE_EXPORT double quern_remoteconfig_GetDouble(const char* key, double defaultValue);
/// Writes the text, zero-filled to the end of `size` bytes; a null default counts as an empty text.
/// \return true; false, and nothing written, if the text and its terminator do not fit, or for a null or a size below 1
ORVANE_EXPORT bool quern_remoteconfig_GetString(const char* key, char* buffer, int size, const char* defaultValue);

/* --- Files of settings: Orvane/IConfigFile.h tells what native code does with them -------------------------------- */

/// The default file, "Orvane.config" in the cache folder. \return the same object for the life of the process
ORVANE_EXPORT orvane_config_file* OrvaneCore_GetDefaultHandler(void);
/// A new object over "NAME.config" in the cache folder; null and "Orvane" mean the default file. One object a name: who
/// deletes one takes the store away from all others of that name.
/// \return never null; the caller gives it back to OrvaneCore_DeleteConfigFile
ORVANE_EXPORT orvane_config_file* OrvaneCore_NewConfigFile(const char* name);
/// Deletes the object, which leaves its file in plain text, and clears the pointer; does nothing for a null of either.
/// The object of OrvaneCore_GetDefaultHandler stays, and only the pointer is cleared.
ORVANE_EXPORT void OrvaneCore_DeleteConfigFile(orvane_config_file** file);

/* --- Network -------------------------------------------------------------------------------------------------------*/

/// How the device is connected, asked of the system anew. \return 0, 1 or 2
ORVANE_EXPORT quern_network_state quern_network_GetNetworkState(void);
/// Sets the one callback that hears of changes of the network, null for none; it replaces the one before. It is called
/// on the main thread, or in Quern_UpdateUIThread after Quern_EnableManualUpdate; Orvane/INetwork.h tells what a change
/// is. A switch from one kind of connection to another is told as 0 and then the new state.
ORVANE_EXPORT void quern_network_SetNetworkChangedCallback(void (*callback)(quern_network_state state));
/// Writes the detail record as bytes, without a terminator; Orvane/INetwork.h tells their order.
/// \return true; false, and nothing written, if `size` does not exceed their number by at least one, or for null
ORVANE_EXPORT bool quern_network_GetDetailNetworkInfo(char* buffer, int size);

/* --- System --------------------------------------------------------------------------------------------------------*/

/// Writes the device's id, 32 hexadecimal digits or what the data plugin tells in their place, and a terminator. Not
/// before the launch: it reads one of the library's own settings, and these are then at their defaults for as long as
/// the process lives.
/// \return true; false, and nothing written, if `size` bytes do not hold both
ORVANE_EXPORT bool Quern_system_GetUUID(char* buffer, int size);
/// The advertising id is not read: writes nothing. \return 0
ORVANE_EXPORT int Quern_system_GetIDFA(char* buffer, int size);
/// \return whether the device is modified: the application could do what only the superuser may
ORVANE_EXPORT bool Quern_system_IsDeviceRooted(void);
/// Deprecated. \return -1
ORVANE_EXPORT int Quern_system_CheckPermission(int permission);

/* --- Tracing: spans of a distributed trace, by their texts ---------------------------------------------------------*/
/* Whether there is tracing is up to the configuration, read at the launch; without it, and before the launch, the texts
   are empty and the calls do nothing, so that a game leaves them in place. From no callback of the log. */

/// Writes the trace id of this run of the process, as a rule 32 characters, and fills the buffer with zeros.
/// \return false, and nothing written, if `size` bytes do not hold the text and its terminator; true for the empty text
ORVANE_EXPORT bool orvanecore_onetrace_GetTraceId(char* value, int size);
/// Makes a span and writes its text, as a rule 58 characters, 47 for a root. Every span ends with a SpanFinish, else it
/// stays in memory; so does one whose text the buffer does not hold.
/// \param parentContext the text of the span above it; null for a root
/// \param privateType the game's own kind of a span; null is "0"
/// \return as above
ORVANE_EXPORT bool orvanecore_onetrace_CreateContext(const char* parentContext, const char* privateType, char* value,
                                                     int size);
/// Starts the span's clock and says what it is, where it runs and whom it asks. A null leaves its part, and without a
/// name the clock, as it was.
ORVANE_EXPORT void orvanecore_onetrace_SpanStart(const char* context, const char* name, const char* locName,
                                                 const char* rmtName);
/// Sets one of the game's own tags, in place of an earlier value. A null does nothing.
ORVANE_EXPORT void orvanecore_onetrace_SpanFlush(const char* context, const char* key, const char* value);
/// Stops the clock, says how it went ("0" is success), sends the span to the data plugin and ends it. A second call for
/// one span does nothing.
ORVANE_EXPORT void orvanecore_onetrace_SpanFinish(const char* context, const char* errCode, const char* errMsg);

/* --- Main-thread pump: for an engine that wants callbacks in its own tick ----------------------------------------- */

/// From now on deferred calls wait for Quern_UpdateUIThread. There is no way back.
ORVANE_EXPORT void Quern_EnableManualUpdate(void);
/// \return 1 after Quern_EnableManualUpdate, else 0
ORVANE_EXPORT int Quern_IsManualUpdate(void);
/// Performs up to 20 waiting calls. Always from the same thread: the engine's tick.
ORVANE_EXPORT void Quern_UpdateUIThread(void);
/// Drops the waiting calls to a target that is about to die: those that wait for Quern_UpdateUIThread after
/// Quern_EnableManualUpdate, those that wait for the main run loop before it. A call that is under way goes on: only on
/// the thread that performs the calls is there none when this returns.
ORVANE_EXPORT void Quern_IgnoreUIThread(void* target);
/// Drops those that wait for the main run loop, by the same rule.
ORVANE_EXPORT void Quern_RemoveTargetFromMainThread(void* target);
/// Drops all calls that wait for Quern_UpdateUIThread, and ends the one that is under way behind its present call. What
/// is posted later, also at the same time on another thread, waits for the next.
ORVANE_EXPORT void Quern_EndUIThread(void);
/// Quern_EnableManualUpdate under the script layer's name.
ORVANE_EXPORT void quern_target_unity_enable_ui_update(void);
/// Quern_UpdateUIThread under the script layer's name.
ORVANE_EXPORT void quern_target_unity_update(void);

/* --- Script objects: their native halves and the callbacks by which these answer ---------------------------------- */

/// Makes the native halves of a script object from the classes "<className>", "<className>.REQ" (takes requests) and
/// "<className>.RESP" (answers), as far as native code has registered them (Orvane/PlatformObject.h). Here and below:
/// on one thread, that of the script layer.
/// \param objectId chosen by the script layer; one that is in use loses its former halves, which are not deleted
/// \return whether a half for requests or responses was made; false for a null or empty name
ORVANE_EXPORT bool CreatePlatformObject(const char* className, uint64_t objectId);
/// CreatePlatformObject with its arguments swapped.
ORVANE_EXPORT bool addPlatformObject(uint64_t objectId, const char* className);
/// Deletes the halves for requests and responses; the plain half stays until the library is taken down. An unknown id
/// is ignored.
ORVANE_EXPORT void removePlatformObject(uint64_t objectId);
/// Kept for its callers. \return 0
ORVANE_EXPORT int quern_arbor_object_get_len(uint64_t objectId);
/// Kept for its callers; touches none of its arguments. \return 0
ORVANE_EXPORT int quern_arbor_object_read_buffer(uint64_t objectId, char* buffer, int capacity);

/// How a native half reaches the script layer: the object's id, then what the half gave. Texts are null-terminated,
/// buffers are `length` bytes, and both are valid for the call only. The call is made on the thread on which the half
/// sends. Set the callbacks before the first object is created; null, the value at the start, takes one away. The
/// take-down clears all.
typedef void (*ArborSendMessageCallback)(uint64_t objectId, const char* method, const char* message);
typedef void (*ArborSendStructCallback)(uint64_t objectId, const char* method, void* data);
typedef void (*ArborSendResultCallback)(uint64_t objectId, const char* method, int result);
typedef void (*ArborSendResultStructCallback)(uint64_t objectId, const char* method, const char* result, int length);
typedef void (*ArborSendBufferCallback)(uint64_t objectId, const char* method, const char* buffer, int length);
typedef void (*ArborSendResultBufferCallback)(uint64_t objectId, const char* method, int result, const char* buffer,
                                              int length);
typedef void (*ArborSendResultStructBufferCallback)(uint64_t objectId, const char* method, const char* result,
                                                    int resultLength, const char* buffer, int length);
typedef void (*ArborSendVoidMethodCallback)(uint64_t objectId, int method);
typedef void (*ArborSendVoidMethodParamCallback)(uint64_t objectId, int method, const char* parameter);
typedef void (*ArborSendVoidMethodBufferCallback)(uint64_t objectId, int method, const char* buffer, int length);

ORVANE_EXPORT void setArborSendMessageCallback(ArborSendMessageCallback callback);
ORVANE_EXPORT void setArborSendStructCallback(ArborSendStructCallback callback);
ORVANE_EXPORT void setArborSendResultCallback(ArborSendResultCallback callback);
ORVANE_EXPORT void setArborSendResultStructCallback(ArborSendResultStructCallback callback);
ORVANE_EXPORT void setArborSendBufferCallback(ArborSendBufferCallback callback);
ORVANE_EXPORT void setArborSendResultBufferCallback(ArborSendResultBufferCallback callback);
ORVANE_EXPORT void setArborSendResultStructBufferCallback(ArborSendResultStructBufferCallback callback);
ORVANE_EXPORT void setArborSendVoidMethodCallback(ArborSendVoidMethodCallback callback);
ORVANE_EXPORT void setArborSendVoidMethodParamCallback(ArborSendVoidMethodParamCallback callback);
ORVANE_EXPORT void setArborSendVoidMethodBufferCallback(ArborSendVoidMethodBufferCallback callback);

#ifdef __cplusplus
}  // extern "C"

/// Enters a function in the list that the take-down runs, once and in order of first registration; null is ignored.
/// Any thread, also during the run and from inside a callback.
ORVANE_EXPORT void AddApplicationQuitCallback(void (*callback)());
/// Runs the list and empties it; no lock is held over a callback. One entered during the run is run too. One that is
/// entered again when its turn has come is run once more, and left for the next run after that. On the thread that
/// takes the library down; a second call during the run does nothing.
ORVANE_EXPORT void OnApplicationQuit();
/// Hooks the application's delegate class of that name in the run-time table, for applications whose delegate is not
/// called "AppDelegate" or "UnityAppController" or was registered after this library loaded. Main thread.
ORVANE_EXPORT void g_OrvaneCoreManualHook(const char* className);

/// Whether the text may be an IPv4 address, with a port or without: digits, dots and at most one colon. True for an
/// empty text, false for null.
ORVANE_EXPORT bool IsNumericIPv4Notation(const char* text);
/// Whether the text may be an IPv6 address: it begins with "[" or has two colons. False for null.
ORVANE_EXPORT bool IsNumericIPv6Notation(const char* text);
/// Splits "scheme://host:port" or a part of it; an IPv6 address with a port stands in brackets. A scheme that is not
/// there leaves `scheme` as it was; a port that is not there is 0, and one beyond 16 bits is cut. A host out of
/// brackets ends with a zero byte that counts as part of it. \return false for null, without "]" behind "[", and
/// without a port behind "]" (the host is set then)
ORVANE_EXPORT bool ParseURI(const char* text, Quern::AString& scheme, Quern::AString& host, unsigned short& port);
/// Writes the form that an IPv4 address takes in a network of IPv6 alone: "64::ff9b:1.2.3.4", "[64::ff9b:1.2.3.4]:80",
/// with the scheme in front. A text with another host stays as it is, and an empty text gives the prefix alone.
/// \return false, with `out` untouched, for what ParseURI refuses
ORVANE_EXPORT bool ConvertIpV4To6(const char* text, Quern::AString& out);
#endif

#endif
