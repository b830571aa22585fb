// Runs orvane-log as a user does.
#include <json/json.h>
#include <sys/resource.h>

#include "Support/LogWriter.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;

Outcome RunReader(std::vector<std::string> words, std::vector<std::pair<std::string, std::string>> environment = {}) {
    words.insert(words.begin(), ORVANE_LOG_PROGRAM);
    return RunToEnd({words, environment, ""});
}

std::string BytesOf(const std::string& digits) {
    std::string bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

TEST(LogTool, AKeyPairOpensWhatItsPublicHalfClosed) {
    const TemporaryFolder folder;
    const std::string key = folder / "reader.key", other = folder / "other.key";
    const Outcome made = RunReader({"--keygen", key});
    ASSERT_EQ(made.status, 0) << made.error;
    ASSERT_EQ(made.output.size(), 129u);
    EXPECT_EQ(made.output.find_first_not_of("0123456789abcdef"), 128u);
    struct stat facts;
    ASSERT_EQ(stat(key.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
    EXPECT_EQ(RunReader({"--keygen", key}).status, 2) << "a key is never replaced";
    EXPECT_EQ(RunReader({"--keygen=" + other}).status, 0);

    const auto lines = NumberedLines(0, 300);
    const WriterKey writer = AgreeWith(BytesOf(made.output.substr(0, 128)));
    const std::string log =
        folder.Write("Pell_2026112421.xlog", EncryptedRecord(1, lines, writer) + EncryptedRecord(2, lines, writer));
    const Outcome read = RunReader({"--key", other, "--key", key, log});
    EXPECT_EQ(read.status, 0) << read.error;
    EXPECT_EQ(read.output, Joined(lines) + Joined(lines));
    EXPECT_EQ(read.error, "");

    const Outcome closed = RunReader({"--key", other, log});
    EXPECT_EQ(closed.output, "");
    EXPECT_EQ(std::count(closed.error.begin(), closed.error.end(), '\n'), 1) << closed.error;
    const std::string opensNone = other + ": this key opens none";
    const std::tuple<std::vector<std::string>, int, std::string> kRuns[] = {
        {{"--key", other, log}, 3, "2 encrypted records"},
        {{"--verify", log}, 0, "2 encrypted and not looked into: sound as far as can be told without a key"},
        {{"--verify", "--key", other, log}, 3, opensNone + " of the encrypted records"},  // a key was to open it
        {{"--verify", "--key", other, "--key", key, log}, 0, opensNone},
        {{"--verify", "--key", other, "--key", key, log}, 0, "2 records: sound\n"},
        {{"--key", log, log}, 2, ""},
        {{"--key", folder / "gone", log}, 2, ""}};
    for (const auto& [words, status, said] : kRuns) {
        const Outcome run = RunReader(words);
        EXPECT_EQ(run.status, status) << said;
        EXPECT_THAT(run.error, HasSubstr(said));
    }

    EXPECT_EQ(RunReader({log}, {{"ORVANE_LOG_KEY", key}}).output, Joined(lines) + Joined(lines));
    std::string digits;
    std::ifstream(key) >> digits;
    EXPECT_EQ(RunReader({log}, {{"ORVANE_LOG_KEY", digits}}).output, Joined(lines) + Joined(lines));
    const Outcome cut = RunReader({log}, {{"ORVANE_LOG_KEY", digits.substr(1)}});
    EXPECT_EQ(cut.status, 2);
    EXPECT_EQ(cut.error.find(digits.substr(1, 20)), std::string::npos) << "a secret goes into no message";
    EXPECT_EQ(RunReader({"--key", other, log}, {{"ORVANE_LOG_KEY", key}}).status, 3) << "the option goes before it";
    EXPECT_EQ(RunReader({"--verify", log}, {{"ORVANE_LOG_KEY", other}}).status, 3);
    for (const Outcome& gone : {RunReader({"--key", "/gone", log}), RunReader({log}, {{"ORVANE_LOG_KEY", "/gone"}})}) {
        EXPECT_EQ(gone.status, 2);
        EXPECT_THAT(gone.error, ContainsRegex("(--key|ORVANE_LOG_KEY): /gone: No such file"));
    }
}

TEST(LogTool, ExitStatuses) {
    const TemporaryFolder folder;
    const std::string good = CompressedRecord(1, NumberedLines(0, 10));
    const std::string sound = folder.Write("sound.xlog", good),
                      hurt = folder.Write("hurt.xlog", good + "garbage" + good);
    for (const char* how : {"--verify", "--records", "--json"}) {
        EXPECT_EQ(RunReader({how, sound}).status, 0) << how;
        EXPECT_EQ(RunReader({how, hurt, sound}).status, 1) << how;
        EXPECT_EQ(RunReader({how, sound, folder / "gone.xlog"}).status, 2) << how;
    }
    const Outcome verify = RunReader({"--verify", hurt});
    EXPECT_EQ(verify.output, "");
    EXPECT_THAT(verify.error, HasSubstr(hurt + ": offset " + std::to_string(good.size()) + ": skipped 7 bytes: "));
    EXPECT_THAT(verify.error, HasSubstr("1 file, 2 records, 7 bytes skipped in 1 place"));
    EXPECT_EQ(RunReader({"--verify", "--quiet", hurt}).error, "");
    EXPECT_EQ(RunReader({"--verify", "--json", hurt}).output,
              "{\"files\":1,\"records\":2,\"encrypted\":0,\"damaged\":0,\"torn\":0,\"skipped_places\":1,"
              "\"skipped_bytes\":7,\"missing_blocks\":0,\"problems\":0,\"sound\":false,\"status\":1}\n");
    for (const auto& [words, complaint] : std::vector<std::pair<std::vector<std::string>, const char*>>{
             {{}, "no file or folder named"},
             {{sound, "--nonsense"}, "--nonsense: no such option"},
             {{sound, "-qx"}, "-x: no such option"},
             {{sound, "--json=1"}, "--json=1: takes no value"},
             {{sound, "-qn"}, "-n: wants a value"},
             {{sound, "--level"}, "--level: wants a value"},
             {{sound, "--lines=x"}, "--lines: \"x\" is no number"},
             {{"--merge", "--follow", sound}, "--merge brings text in order"},
             {{"--grep", "(", sound}, "--grep: \"(\" is no valid expression"}}) {
        const Outcome result = RunReader(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.error, StartsWith(std::string("orvane-log: ") + complaint));
    }
    EXPECT_EQ(RunReader({"--help"}).status, 0);
    EXPECT_THAT(RunReader({"--help"}).output, HasSubstr("Exit status"));
    EXPECT_EQ(RunReader({"--verify", "/dev/null"}).status, 0);
}

TEST(LogTool, AFolderWithLeftOverBlocksThroughTheFilters) {
    const TemporaryFolder folder;
    std::string open = CompressedRecord(3, NumberedLines(500, 3));
    open.pop_back();
    const std::string multi = NumberedLine(70) + "\nsecond line of needle\n";
    folder.Write("OrvaneSDKLog/Sample/Sample_2026112421.xlog", CompressedRecord(1, NumberedLines(0, 60)));
    folder.Write("OrvaneSDKLog/Sample/Sample_2026112422.log", Joined(NumberedLines(60, 10)) + multi);
    folder.Write("Sample.mmap3", MappedBlock(open));
    folder.Write("OrvaneSDKLog/Other/Other_2026112421.xlog", PlainRecord("other\n"));
    const std::string root = folder.Path();

    const std::string sample = Joined(NumberedLines(0, 70)) + multi + Joined(NumberedLines(500, 3));
    EXPECT_EQ(RunReader({root}).output, "other\n" + sample);
    EXPECT_EQ(RunReader({"--module", "Sample", root}).output, sample);
    EXPECT_EQ(RunReader({folder / "OrvaneSDKLog/Sample"}).output, sample);
    EXPECT_EQ(RunReader({"--lines", "4", root}).output, multi + Joined(NumberedLines(500, 3)));
    EXPECT_EQ(RunReader({"--grep", "needle$", root}).output, multi);
    for (const char* pattern : {"NEEdle", "SECOND LINE.*Needle$"}) {
        EXPECT_EQ(RunReader({"-i", "--grep", pattern, root}).output, multi);
        EXPECT_EQ(RunReader({"--grep", pattern, root}).output, "");
    }
    EXPECT_EQ(RunReader({"--since", "2026-11-24 21:08:20", "--until", "2026-11-24 21:08:21", root}).output,
              Joined(NumberedLines(500, 1)));
    EXPECT_EQ(RunReader({"--level", "error", root}).output.substr(0, NumberedLine(4).size()), NumberedLine(4));
    const std::string coloured = RunReader({"--color=always", "--grep", "line 4 ", root}).output;
    std::string expected = NumberedLine(4) + "\n";
    EXPECT_EQ(coloured, expected.replace(expected.find("Error"), 5, "\x1b[31mError\x1b[0m"));
    EXPECT_EQ(RunReader({"--color=auto", "--grep", "line 4 ", root}).output, NumberedLine(4) + "\n");

    const std::vector<std::string> objects = SplitLines(RunReader({"--json", root}).output);
    EXPECT_EQ(objects.size(), 75u);
    for (Json::Value value; const std::string& object : objects)
        EXPECT_TRUE(Json::Reader().parse(object, value)) << object;
}

TEST(LogTool, MergesModulesByTime) {
    const TemporaryFolder folder;
    const std::string tip = "--- begin ---", loss = "[F][ sg_buffer_async.Length() >= 1";
    folder.Write("A_2026112421.log", Joined({NumberedLine(2), NumberedLine(2) + "\nmore", loss, NumberedLine(9)}));
    folder.Write("B_2026112421.log", Joined({tip, NumberedLine(1), NumberedLine(2), NumberedLine(5)}));
    EXPECT_EQ(RunReader({"--merge", folder.Path()}).output,
              Joined({tip, NumberedLine(1), NumberedLine(2), NumberedLine(2) + "\nmore", loss, NumberedLine(2),
                      NumberedLine(5), NumberedLine(9)}));
    EXPECT_EQ(RunReader({"--merge", "--lines", "2", folder.Path()}).output, Joined({NumberedLine(5), NumberedLine(9)}));
    EXPECT_EQ(RunReader({"--merge", folder.Path()}, {{"TMPDIR", "/nowhere"}}).status, 2);
}

// What a player typed into a chat must not command the terminal of who reads the log.
TEST(LogTool, ATerminalGetsNoControlCharacters) {
    const TemporaryFolder folder;
    const std::string hostile = NumberedLine(1) + "\x1b]0;title\x07";
    const std::string log = folder.Write("hostile.xlog", CompressedRecord(1, {hostile}));
    EXPECT_EQ(RunReader({log}).output, hostile + "\n") << "a pipe gets what was logged";
    const std::string shown = NumberedLine(1) + "\\x1B]0;title\\x07";
    EXPECT_THAT(RunReader({"--color=always", log}).output, HasSubstr(shown));
    for (const char* how : {" ", " --color=never ", " --lines=1 "}) {
        const std::string command = std::string("NO_COLOR=1 ") + ORVANE_LOG_PROGRAM + how + log;
        EXPECT_EQ(RunToEnd({{"script", "-qec", command, "/dev/null"}, {}, ""}).output, shown + "\r\n") << how;
    }
}

TEST(LogTool, StandardInputIsReadAsItComes) {
    Process process({{ORVANE_LOG_PROGRAM, "-"}, {}, ""});
    const std::string record = CompressedRecord(1, NumberedLines(0, 5));
    process.Send(record + record.substr(0, 40));
    process.Send(record.substr(40) + "rest");
    process.CloseInput();
    EXPECT_EQ(process.Wait().status, 1);
    EXPECT_EQ(process.Output(), Joined(NumberedLines(0, 5)) + Joined(NumberedLines(0, 5)));
    EXPECT_THAT(process.Error(), HasSubstr("-: offset " + std::to_string(2 * record.size()) + ": skipped 4 bytes"));
}

bool WaitForOutput(const Process& process, const std::string& text) {
    return WaitFor([&] { return process.Output() == text; });
}

TEST(LogTool, FollowsAFolder) {
    const TemporaryFolder folder;
    const std::string file = "OrvaneSDKLog/Sample/Sample_2026112421.xlog";
    folder.Write(file, CompressedRecord(1, NumberedLines(0, 30)));
    Process process({{ORVANE_LOG_PROGRAM, "--follow", "--level", "info", folder.Path()}, {}, ""});
    std::string expected;
    for (unsigned i = 18; i < 30; ++i)
        if (i % 5 != 0) expected += NumberedLine(i) + "\n";
    ASSERT_TRUE(WaitForOutput(process, expected)) << process.Output() << process.Error();
    folder.Write(file, CompressedRecord(2, {NumberedLine(35), NumberedLine(36)}), true);
    EXPECT_TRUE(WaitForOutput(process, expected + NumberedLine(36) + "\n")) << process.Output();
    process.Signal(SIGTERM);
    EXPECT_EQ(process.Wait().signal, SIGTERM);
    EXPECT_EQ(process.Error(), "");
}

// A payload of a hundred kilobytes that inflates to a hundred megabytes, read in far less memory than that.
TEST(LogTool, ABombDoesNotFillTheMemory) {
    const TemporaryFolder folder;
    RecordFields bomb;
    bomb.payload = DeflateLines(std::vector<std::string>(100, std::string(1 << 20, 'A')));
    const std::string log = folder.Write("bomb.xlog", RecordBytes(bomb) + CompressedRecord(2, {"after"}));
    for (const char* how : {"--verify", "--records", "--grep=after"}) {
        EXPECT_EQ(RunReader({how, log}).status, 0) << how;
    }
    rusage usage;
    ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
    EXPECT_TRUE(kIsSanitized || usage.ru_maxrss < 40000) << usage.ru_maxrss << " kilobytes";
}

}  // namespace
}  // namespace EndToEnd
