#include "Log/Arguments.h"

namespace OrvaneLog {

// In a file of its own, since it is long; it goes with the options of Arguments.cpp.
const char kHelpText[] =
    R"(usage: orvane-log [OPTION]... PATH...
       orvane-log --keygen [FILE]

Reads the logs of OrvaneCore: compressed and encrypted "*.xlog" files, plain "*.log" files, and the "*.mmap3" blocks
that a killed process left behind, with the "*.journal3" beside them. PATH is a file, a folder (all its log files, at
any depth, by module and hour, the blocks last), or "-" for standard input. Damage is stepped over and reported on
standard error.

Keys
  --key FILE          a private key, 64 hexadecimal digits; may be given several times. Without it the
                      environment's ORVANE_LOG_KEY: the name of such a file, or the digits
  --keygen [FILE]     makes a key pair: the private half goes to FILE ("orvane-log.key"), which must not exist; the
                      public half, which a deployment sets, is printed

What is shown
  --level LEVEL       this level and above: Debug, Info, Warning, Event, Error, or 0 to 4
  --module NAME       this module; may be given several times
  --since TIME        from this time on. TIME is local: "YYYY-MM-DD HH:MM[:SS]", "YYYY-MM-DD", "HH:MM[:SS]" of today,
  --until TIME        or "-10m" ago (s, m, h, d), or as it is printed here: "2026-11-24 22:10:07 045". --until is the
                      last moment shown
  --grep REGEX        entries in which the ECMAScript expression is found
  -i, --ignore-case   --grep takes small and capital letters for the same
  --merge             the entries of all files and modules in order of time, not file by file
  -n, --lines N       the last N entries of all that
  -f, --follow        then go on as the logs grow, through changes of hour and over the live block. PATH is a file or a
                      folder; shows the last 10 entries first unless --lines says otherwise

How
  --json              one JSON object a line
  --otlp URL          shows nothing, but sends the entries as OpenTelemetry logs to the receiver at URL, in JSON over
                      HTTP ("http://localhost:4318"; "v1/logs" is put behind it). OTEL_EXPORTER_OTLP_HEADERS, _TIMEOUT,
                      _COMPRESSION and _CERTIFICATE, OTEL_SERVICE_NAME and OTEL_RESOURCE_ATTRIBUTES hold. Times are
                      taken for local ones
  --color[=WHEN]      colours the level: auto (on a terminal, unless NO_COLOR is set), always, never. On a terminal, and
                      with colours, control characters of the log are shown as "\x1B"
  -q, --quiet         nothing on standard error but errors of use
  --records           a table of the records instead of their text
  --verify            no text: only reads everything and sets the exit status; with --json one object of what was found
  --version, -h, --help

Exit status
  0  all sound
  1  damage was found: something was skipped, or a record gave only part of its text
  2  wrong use, a file that cannot be read or written, or entries that no receiver took
  3  all sound, but there are encrypted records that no key opens (0 with --verify, if no --key is given)
The first of 2, 1, 3 that applies.

Sound means that each record stands where it should, inflates to its end, and holds whole lines. No log has a checksum,
so none of these can be seen: a character of a text or a date that became another one, a changed hour, number or unused
field of a header, records or files that are missing where no number was skipped, a line cut in a plain "*.log" file.
Of an encrypted record that no key opens only the header and the length are checked.
)";

}  // namespace OrvaneLog
