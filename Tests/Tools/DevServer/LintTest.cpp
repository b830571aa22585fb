#include "DevServer/Lint/Lint.h"

#include "DevServer/JsonText.h"
#include "DevServer/Lint/LintCommand.h"
#include "Support/Test.h"

namespace OrvaneDevServer {
namespace {

// "KEY severity rule" of each, one behind the other.
std::string Told(const Findings& findings) {
    std::string told;
    for (const Finding& finding : findings)
        told += (told.empty() ? "" : "; ") + finding.key + " " + SeverityWord(finding.severity) + " " + finding.rule;
    return told;
}

struct Case {
    const char* module;
    const char* keys;
    const char* told;
};

const std::string kLong = R"({"YarrowUrl":")" + std::string(1024, 'u') + "\"}";
const std::string kFits = R"({"YarrowUrl":")" + std::string(1023, 'u') + "\"}";
const std::string kLongId = R"({"upload_id":")" + std::string(252, 'i') + R"(","part_size":1024})";

const Case kCases[] = {
    {"Sample", R"({"a":"v1.10","b":7,"c":"7","d":"true","e":"1234567890123456789"})", ""},
    {"Sample", R"({"a":"1.10"})", "a warning changed-number"},
    {"Sample", R"({"a":"007","b":"-0"})", "a warning changed-number; b warning changed-number"},
    {"Sample", R"({"a":18446744073709551615,"b":9223372036854775807})", "a error changed-number"},
    {"Sample", R"({"a":true,"b":1.5,"c":null,"d":[],"e":""})",
     "a error dropped-value; b error dropped-value; c error dropped-value; d error dropped-value; "
     "e warning dropped-value"},
    {"Sample", R"({"a":"x#y","b":" x","c":"x\ny","d":"x\u0000y"})",
     "a error cut-text; b warning cut-text; c error cut-text; d error cut-text"},
    {"Sample", R"({"a=b":1," c":1,"[d]":1,"[e":1,"":1})",
     " error odd-name;  c error odd-name; [d] error odd-name; a=b error odd-name"},
    {"Sam]ple", R"({"a":1})", "a error odd-name"},
    {"Sample", R"({"LogMode":"2","LogLevel":"warn","loglevel":"Info"})",
     "LogLevel error odd-log-level; LogMode note next-launch; loglevel warning misspelt-key"},
    {"Sample", R"({"LogMode":0,"LogFileCleanAuto":"no"})",
     "LogFileCleanAuto error unread-flag; LogFileCleanAuto note next-launch; LogMode warning equals-default; "
     "LogMode note next-launch"},
    {"OrvaneCore", R"({"YarrowEnable":"TRUE","TaskSystemEnable":"false","UnifyDeviceInfo":"1"})",
     "TaskSystemEnable note next-launch; UnifyDeviceInfo error unread-flag; UnifyDeviceInfo note next-launch; "
     "YarrowEnable note next-launch"},
    {"OrvaneCore", R"({"PellReportAvailable":"yes","RemoteConfigMaxRetryCount":"005"})",
     "PellReportAvailable warning text-for-int"},
    {"OrvaneCore", R"({"OperationQueueShrinkStep":2})", "OperationQueueShrinkStep warning misspelt-key"},
    {"OrvaneCore", R"({"OperationQueueMaxThreadNum":6})",
     "OperationQueueMaxThreadNum warning equals-default; OperationQueueMaxThreadNum note next-launch"},
    {"OrvaneCore", R"({"RemoteConfigNextGap":0})",
     "RemoteConfigNextGap error odd-gap; RemoteConfigNextGap note next-launch"},
    {"OrvaneCore", R"({"RemoteConfigNextGap":"soon"})",
     "RemoteConfigNextGap warning text-for-int; RemoteConfigNextGap error odd-gap; RemoteConfigNextGap note "
     "next-launch"},
    {"OrvaneCore", R"({"RemoteConfigNextGap":604801})",
     "RemoteConfigNextGap warning odd-gap; RemoteConfigNextGap note next-launch"},
    {"OrvaneCore", R"({"RemoteConfigNextGap":604800})", "RemoteConfigNextGap note next-launch"},
    {"OrvaneCore", R"({"RemoteConfigNextGap":59})",
     "RemoteConfigNextGap warning odd-gap; RemoteConfigNextGap note next-launch"},
    {"OrvaneCore", R"({"RemoteConfigUrl":"http://a/"})",
     "RemoteConfigUrl warning server-move; RemoteConfigUrl error server-move; RemoteConfigUrl note next-launch"},
    {"OrvaneCore", kLong.c_str(), "YarrowUrl error long-text; YarrowUrl note next-launch"},
    {"OrvaneCore", kFits.c_str(), "YarrowUrl note next-launch"},
    {"Sample", kLong.c_str(), "YarrowUrl warning long-text"},
    {"Upload", R"({"upload_id":"a","part_size":1000000,"file_pattern":"xlog$|^[a-z]+_[0-9]+\\.log$"})", ""},
    {"Upload", R"({"upload_id":"a"})", "part_size error odd-part-size"},
    {"Upload", R"({"upload_id":"a","part_size":-1})", "part_size error odd-part-size"},
    {"Upload", R"({"upload_id":"a","part_size":67108864})", ""},
    {"Upload", R"({"upload_id":"a","part_size":67108865})", "part_size error odd-part-size"},
    {"Upload", R"({"upload_id":"a","part_size":1023})", "part_size warning odd-part-size"},
    {"Upload", R"({"upload_id":"a/b","part_size":1024})", "upload_id error odd-upload-id"},
    {"Upload", R"({"upload_id":"0012","part_size":1024})", "upload_id warning changed-number"},
    {"Upload", kLongId.c_str(), "upload_id error odd-upload-id"},
    {"Upload", R"({"file_pattern":"[\\"})", "file_pattern error odd-pattern"},       // never returns by itself
    {"Upload", R"({"file_pattern":"a|[b\\x4"})", "file_pattern error odd-pattern"},  // likewise
    {"Upload", R"~({"file_pattern":"(a|b)"})~", "file_pattern error odd-pattern; file_pattern error odd-pattern"},
    {"Upload", R"({"file_pattern":"\\w+"})", "file_pattern error odd-pattern"},
    {"Upload", R"({"file_pattern":"^.*$|g$"})", "file_pattern warning odd-pattern"},
    {"Upload", R"({"file_pattern":"*.log"})", "file_pattern error odd-pattern"},
    {"Upload", R"({"file_pattern":"a*a*a*a*a*a*a*b"})", "file_pattern error odd-pattern"},
    {"Upload", R"({"file_pattern":"log{2}|"})", "file_pattern warning odd-pattern; file_pattern warning odd-pattern"},
};

TEST(Lint, SaysWhatTheClientWillMakeOfAKey) {
    for (const Case& at : kCases)
        EXPECT_EQ(Told(LintModuleText(at.module, at.keys)), at.told) << at.module << ": " << at.keys;
    EXPECT_EQ(Told(LintModuleText("M", "[]")), " error no-module");
    EXPECT_EQ(Told(LintModuleText("M", "{\"a\":1,\"a\":2}")), " error no-module");
    Json::Value shared;
    shared["part_size"] = 4096;
    EXPECT_EQ(Told(LintModuleText("Upload", R"({"upload_id":"a"})", shared)), "");
}

TEST(Lint, LooksAtAnswersOfAnyServer) {
    EXPECT_EQ(Told(LintText("answer.json", R"({"ret":0,"biz_data":{"merged_cfg":{"M":{"a":true},"N":[]}}})")),
              "a error dropped-value;  error no-module");
    const std::string good(32, '0');
    EXPECT_EQ(
        Told(LintText("ids.json", R"({"retcode":0,"result":{"count":3,"traceids":[")" + good + R"(","a-b",7,"s"]}})")),
        "traceids error odd-trace-id; traceids error odd-trace-id; traceids warning odd-trace-id");
}

TEST(Lint, GoesThroughAFolder) {
    const OrvaneTest::TemporaryFolder folder;
    folder.Write("served/modules/Upload.json", R"({"part_size":4096})");
    folder.Write("served/devices/D1/Upload.json", R"({"upload_id":"a"})");
    folder.Write("served/devices/D1/.swap.json", "{");
    EXPECT_THAT(LintPaths({folder / "served"}).lines, IsEmpty());
    EXPECT_EQ(LintPaths({folder / "served"}).files, 2u);
    const std::string file = folder.Write("plain/OrvaneCore.json", R"({"LogMode":1})");
    LintReport report = LintPaths({folder / "plain"});
    EXPECT_THAT(report.lines,
                ElementsAre(file + ": LogMode: note: takes effect at the next launch only [next-launch]"));
    EXPECT_FALSE(report.hasFault);
    folder.Write("plain/OrvaneCore.json", "{");
    report = LintPaths({file, folder / "absent"});
    EXPECT_THAT(report.lines, ElementsAre(HasSubstr("[no-module]")));
    EXPECT_TRUE(report.hasFault);
    EXPECT_EQ(report.problems.size(), 1u);
}

}  // namespace
}  // namespace OrvaneDevServer
