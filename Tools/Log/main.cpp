// orvane-log: reads the library's logs. See --help.
#include <string.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "Log/Arguments.h"
#include "Log/Follow.h"
#include "Log/KeyFile.h"
#include "Log/Reading.h"
#include "Log/SourceList.h"
#include "Support/PrintableText.h"

namespace OrvaneLog {
namespace {

void SayLine(const std::string& message) {
    // A path may hold what would command a terminal, too.
    const std::string line = "orvane-log: " + OrvaneTools::PrintableText(message) + "\n";
    (void)!write(STDERR_FILENO, line.data(), line.size());
}

int MakeKey(const std::string& path) {
    Quern::CurvePublicKey publicKey;
    std::string error;
    if (!MakeKeyFile(path, publicKey, error)) {
        SayLine(error);
        return kExitUnreadable;
    }
    DescriptorOutput output(STDOUT_FILENO);
    output.Write(ToHex(publicKey.data(), publicKey.size()) + "\n");
    output.Flush();
    if (output.Error() != 0) {
        // The pair is of no use to who does not see its public half.
        SayLine(std::string("standard output: ") + strerror(output.Error()));
        unlink(path.c_str());
        return kExitUnreadable;
    }
    return kExitSound;
}

Look LookOf(const Arguments& arguments) {
    if (arguments.colour == ColourChoice::kAlways) return Look::kColoured;
    if (!isatty(STDOUT_FILENO)) return Look::kAsItStands;
    const char* no = getenv("NO_COLOR");
    const char* terminal = getenv("TERM");
    const bool plain = (no && *no) || (terminal && strcmp(terminal, "dumb") == 0);
    return plain || arguments.colour == ColourChoice::kNever ? Look::kPrintable : Look::kColoured;
}

// The size of all that will be read; 0 if that is not known.
uint64_t TotalSize(const Arguments& arguments) {
    uint64_t total = 0;
    for (const std::string& file : ListSources(arguments.paths, arguments.filter.modules).files) {
        std::error_code error;
        const uint64_t size = std::filesystem::file_size(file, error);
        if (error) return 0;
        total += size;
    }
    return total;
}

// Takes the keys of the command line, else that of the environment: a file's name, or the digits themselves, which then
// go into no message. Gives the names of all in `names`. False, and told, if one is not in order.
bool TakeKeys(const Arguments& arguments, KeyRing& keys, std::vector<std::string>& names, Report& report) {
    constexpr char kVariable[] = "ORVANE_LOG_KEY";
    const char* const value = getenv(kVariable);
    const std::string environment = arguments.keyFiles.empty() && value ? value : "";
    names = environment.empty() ? arguments.keyFiles : std::vector<std::string>{environment};
    const bool isDigits = environment.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    if (environment.empty()) return LoadKeys(names, "--key", keys, report);
    if (!isDigits) return LoadKeys(names, kVariable, keys, report);

    names = {kVariable};
    Quern::CurvePrivateKey key;
    std::string error;
    const bool isKey = ParseKey(environment, key, error);
    if (isKey)
        keys.Add(key, kVariable);
    else
        report.Problem(std::string(kVariable) + ": " + error);
    explicit_bzero(key.data(), key.size());
    return isKey;
}

int Read(const Arguments& arguments) {
    const bool printsToTerminal = isatty(STDOUT_FILENO) && arguments.action != Action::kVerify;
    const bool bar =
        isatty(STDERR_FILENO) && !printsToTerminal && !arguments.quiet && arguments.action != Action::kFollow;
    Progress progress(bar, bar ? TotalSize(arguments) : 0);
    DescriptorOutput output(STDOUT_FILENO);
    Report report([&](const std::string& message) {
        if (arguments.quiet) return;
        if (printsToTerminal) output.Flush();  // what is said comes behind the text that it is about
        progress.Clear();
        SayLine(message);
    });

    KeyRing keys;
    std::vector<std::string> keyNames;
    if (!TakeKeys(arguments, keys, keyNames, report)) return kExitUnreadable;
    if (arguments.action == Action::kFollow)
        Follow(arguments, LookOf(arguments), keys, output, report);
    else
        Reading(arguments, LookOf(arguments), keys, output, report, &progress).Run();
    output.Flush();
    if (output.Error() != 0) report.Problem(std::string("standard output: ") + strerror(output.Error()));
    if (arguments.action != Action::kVerify) return report.Status(false);
    report.SayIdleKeys(keyNames);
    const ExitStatus status = report.Status(keyNames.empty());
    if (!arguments.json) {
        report.Note(report.Summary());
        return status;
    }
    output.Write(report.SummaryAsJson(status) + "\n");
    output.Flush();
    return output.Error() == 0 ? status : kExitUnreadable;
}

int Main(const std::vector<std::string>& words) {
    Arguments arguments;
    std::string error;
    if (!ParseArguments(words, time(nullptr), arguments, error)) {
        SayLine(error);
        return kExitUnreadable;
    }
    if (arguments.action == Action::kHelp || arguments.action == Action::kVersion) {
        const bool isHelp = arguments.action == Action::kHelp;
        DescriptorOutput(STDOUT_FILENO).Write(isHelp ? kHelpText : "orvane-log " ORVANE_VERSION "\n");
        return kExitSound;
    }
    return arguments.action == Action::kKeygen ? MakeKey(arguments.keygenFile) : Read(arguments);
}

}  // namespace
}  // namespace OrvaneLog

int main(int count, char** words) {
    return OrvaneLog::Main({words + 1, words + count});
}
