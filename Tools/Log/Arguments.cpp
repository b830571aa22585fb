#include "Log/Arguments.h"

#include <getopt.h>

#include <charconv>

#include "Log/TimeArgument.h"
#include "Orvane/LogPriority.h"
#include "Support/OptionError.h"

namespace OrvaneLog {
namespace {

enum Option : int {
    kKey = 256,
    kKeygen,
    kLevel,
    kModule,
    kSince,
    kUntil,
    kGrep,
    kMerge,
    kJson,
    kColour,
    kRecords,
    kVerify,
    kOtlp,
    kVersion
};

const option kOptions[] = {
    {"key", required_argument, nullptr, kKey},
    {"keygen", optional_argument, nullptr, kKeygen},
    {"level", required_argument, nullptr, kLevel},
    {"module", required_argument, nullptr, kModule},
    {"since", required_argument, nullptr, kSince},
    {"until", required_argument, nullptr, kUntil},
    {"grep", required_argument, nullptr, kGrep},
    {"ignore-case", no_argument, nullptr, 'i'},
    {"merge", no_argument, nullptr, kMerge},
    {"lines", required_argument, nullptr, 'n'},
    {"follow", no_argument, nullptr, 'f'},
    {"json", no_argument, nullptr, kJson},
    {"otlp", required_argument, nullptr, kOtlp},
    {"color", optional_argument, nullptr, kColour},
    {"colour", optional_argument, nullptr, kColour},
    {"quiet", no_argument, nullptr, 'q'},
    {"records", no_argument, nullptr, kRecords},
    {"verify", no_argument, nullptr, kVerify},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

template <typename Number>
bool ParseNumber(const std::string& text, Number& number) {
    const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc() && stop == text.data() + text.size() && !text.empty();
}

bool ParseLevel(const std::string& text, int& level) {
    if (const int known = LevelOfWord(text); known != kUnknownLevel) {
        level = known;
        return true;
    }
    int number = 0;
    if (!ParseNumber(text, number) || number < kLogDebug || number > kLogError) return false;
    level = number;
    return true;
}

bool EndsAtOnce(Action action) {
    return action == Action::kHelp || action == Action::kVersion;
}

// Takes the options one by one.
class Parser {
public:
    Parser(Arguments& arguments, time_t now, std::string& error) : _arguments(arguments), _now(now), _error(error) {}

    bool Take(int option, const std::string& value, bool hasValue) {
        FilterOptions& filter = _arguments.filter;
        switch (option) {
            case kKey:
                _arguments.keyFiles.push_back(value);
                return true;
            case kKeygen:
                if (hasValue) _arguments.keygenFile = value;
                return Choose(Action::kKeygen);
            case kLevel:
                return ParseLevel(value, filter.minimumLevel) ||
                       Wrong("--level", value, "Debug, Info, Warning, Event, Error, or 0 to 4");
            case kModule:
                filter.modules.push_back(value);
                return true;
            case kSince:
                return TakeTime("--since", value, filter.since);
            case kUntil:
                return TakeTime("--until", value, filter.until);
            case kGrep:
                _pattern = value;
                return true;
            case 'i':
                _ignoreCase = true;
                return true;
            case kMerge:
                _arguments.merge = true;
                return true;
            case 'n':
                return TakeLines(value);
            case 'f':
                return Choose(Action::kFollow);
            case kJson:
                _arguments.json = true;
                return true;
            case kOtlp:
                _arguments.otlpUrl = value;
                return !value.empty() || Fail("--otlp: the address is empty");
            case kColour:
                return TakeColour(hasValue ? value : "always");
            case 'q':
                _arguments.quiet = true;
                return true;
            case kRecords:
                return Choose(Action::kRecords);
            case kVerify:
                return Choose(Action::kVerify);
            case kVersion:
                if (_arguments.action != Action::kHelp) _arguments.action = Action::kVersion;
                return true;
            default:
                _arguments.action = Action::kHelp;
                return true;
        }
    }

    // When all options are taken: what two of them make together.
    bool End() {
        if (!_pattern) return true;
        std::string problem;
        _arguments.filter.pattern = Pattern::Compile(*_pattern, problem, _ignoreCase);
        if (!_arguments.filter.pattern) _error = "--grep: \"" + *_pattern + "\" is no valid expression: " + problem;
        return _arguments.filter.pattern != nullptr;
    }

private:
    bool Fail(const std::string& error) {
        _error = error;
        return false;
    }
    bool Wrong(const char* option, const std::string& value, const char* wanted) {
        return Fail(std::string(option) + ": \"" + value + "\" is none of: " + wanted);
    }
    bool Choose(Action action) {
        if (EndsAtOnce(_arguments.action) || _arguments.action == action) return true;
        if (_arguments.action != Action::kPrint) {
            _error = "--records, --verify, --follow and --keygen exclude each other";
            return false;
        }
        _arguments.action = action;
        return true;
    }
    bool TakeTime(const char* option, const std::string& value, std::optional<LocalStamp>& stamp) {
        LocalStamp parsed = 0;
        if (!ParseTimeArgument(value, _now, parsed))
            return Wrong(option, value, "\"YYYY-MM-DD HH:MM[:SS[ mmm]]\", \"YYYY-MM-DD\", \"HH:MM[:SS]\", \"-10m\"");
        stamp = parsed;
        return true;
    }
    bool TakeLines(const std::string& value) {
        size_t count = 0;
        if (!ParseNumber(value, count)) return Fail("--lines: \"" + value + "\" is no number of lines");
        _arguments.lines = count;
        return true;
    }
    bool TakeColour(const std::string& value) {
        if (value == "auto")
            _arguments.colour = ColourChoice::kAuto;
        else if (value == "always")
            _arguments.colour = ColourChoice::kAlways;
        else if (value == "never")
            _arguments.colour = ColourChoice::kNever;
        else
            return Wrong("--color", value, "auto, always, never");
        return true;
    }

    Arguments& _arguments;
    time_t _now;
    std::string& _error;
    std::optional<std::string> _pattern;
    bool _ignoreCase = false;
};

bool CheckWhole(Arguments& arguments, std::string& error) {
    if (EndsAtOnce(arguments.action)) return true;
    if (arguments.merge && arguments.action != Action::kPrint) {
        error = "--merge brings text in order: not with --records, --verify, --follow or --keygen";
        return false;
    }
    if (arguments.action == Action::kKeygen) {
        if (arguments.paths.size() > 1) error = "--keygen makes one file";
        if (arguments.paths.size() == 1) arguments.keygenFile = arguments.paths[0];
        return error.empty();
    }
    if (!arguments.otlpUrl.empty() &&
        (arguments.json || arguments.action == Action::kRecords || arguments.action == Action::kVerify))
        error = "--otlp excludes --json, --records and --verify";
    if (arguments.paths.empty()) error = "no file or folder named; see --help";
    if (arguments.action == Action::kFollow)
        for (const std::string& path : arguments.paths)
            if (path == "-") error = "--follow takes files and folders; standard input is followed to its end as it is";
    return error.empty();
}

}  // namespace

bool ParseArguments(const std::vector<std::string>& words, time_t now, Arguments& arguments, std::string& error) {
    error.clear();
    std::vector<std::string> copies = {"orvane-log"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> pointers;
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int count = static_cast<int>(copies.size());

    Parser parser(arguments, now, error);
    optind = 0;  // start over
    opterr = 0;
    for (;;) {
        const int found = getopt_long(count, pointers.data(), ":fhin:q", kOptions, nullptr);
        if (found == -1) break;
        if (found == '?' || found == ':') {
            error = OrvaneTools::OptionError(found, pointers.data());
            return false;
        }
        if (!parser.Take(found, optarg ? optarg : "", optarg != nullptr)) return false;
    }
    if (!parser.End()) return false;
    for (int i = optind; i < count; ++i)
        arguments.paths.push_back(pointers[static_cast<size_t>(i)]);
    return CheckWhole(arguments, error);
}

}  // namespace OrvaneLog
