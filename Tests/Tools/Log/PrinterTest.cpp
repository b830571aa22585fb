#include "Log/Printer.h"

#include "Log/RecordTable.h"
#include "Log/TailPrinter.h"
#include "Support/Test.h"

namespace OrvaneLog {
namespace {

TEST(JsonPrinter, WritesTheFieldsOfALine) {
    StringOutput output;
    JsonPrinter printer(output);
    printer.Print(
        MakeEntry("[2026-11-24 21:50:39 007] | Event | [My \"module\"] |18446744073709551615| a\\b.cpp:12|f<\t>| "
                  "one\ntwo\r\x01"));
    printer.Print(MakeEntry("----------- begin of mmap -----------"));
    EXPECT_EQ(output.Text(), R"({"time":"2026-11-24T21:50:39.007","level":"Event","module":"My \"module\"",)"
                             R"("thread":18446744073709551615,"file":"a\\b.cpp","line":12,"function":"f<\t>",)"
                             R"("text":"one\ntwo\r\u0001"})"
                             "\n{\"text\":\"----------- begin of mmap -----------\"}\n");
}

TEST(JsonPrinter, KeepsUtf8AndReplacesTheRest) {
    const std::pair<const char*, std::string> cases[] = {
        {"h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80", "h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80"},
        {"\xC4\xE3", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // another encoding
        {"a\xC3", "a\xEF\xBF\xBD"},                                // cut within a character
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a surrogate
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\x7F", "\\u007f"},
    };
    for (const auto& [text, expected] : cases) {
        std::string json;
        AppendJsonString(json, text);
        EXPECT_EQ(json, '"' + expected + '"');
    }
}

TEST(TextPrinter, ForATerminalColoursTheLevelAndEscapesTheRest) {
    StringOutput output;
    TextPrinter printer(output, Look::kColoured);
    printer.Print(MakeEntry("[2026-11-24 21:50:39 007] | Error | [a] |1| f:1|g| bad\nworse"));
    printer.Print(MakeEntry("[F][ sg_buffer_async.Length() >= 1"));
    printer.Print(MakeEntry("[2026-11-24 21:50:39 007] | Info | [a] |1| f:1|g| fi\x1b[2Jne"));
    TextPrinter(output, Look::kPrintable).Print(MakeEntry("a\rb"));
    TextPrinter(output).Print(MakeEntry("a\rb"));
    EXPECT_EQ(output.Text(),
              "[2026-11-24 21:50:39 007] | \x1b[31mError\x1b[0m | [a] |1| f:1|g| bad\nworse\n"
              "\x1b[1;31m[F]\x1b[0m[ sg_buffer_async.Length() >= 1\n"
              "[2026-11-24 21:50:39 007] | Info | [a] |1| f:1|g| fi\\x1B[2Jne\n"
              "a\\x0Db\na\rb\n");
}

TEST(TailPrinter, KeepsTheLastThenPassesOn) {
    StringOutput output;
    TextPrinter text(output);
    TailPrinter tail(text, 2);
    for (const char* entry : {"a", "b", "c\nd"})
        tail.Print(MakeEntry(entry));
    EXPECT_EQ(output.Text(), "");
    tail.Release();
    tail.Print(MakeEntry("e"));
    EXPECT_EQ(output.Text(), "b\nc\nd\ne\n");
    StringOutput nothing;
    TextPrinter silent(nothing);
    TailPrinter none(silent, 0);
    none.Print(MakeEntry("a"));
    none.Release();
    EXPECT_EQ(nothing.Text(), "");
}

TEST(RecordTable, ARowForEachRecordAndGap) {
    RecordReport record;
    record.offset = 100;
    record.header = {7, 65535, 3, -1, 50, {0xAB}};
    record.size = 124;
    record.textSize = 9;
    record.verdict = Verdict::kDamaged;
    record.why = "why \"so\"";
    record.keyName = "my.key";
    const std::pair<bool, std::string> kForms[] = {
        {false,
         "0              -     -       -        100 -                  0        0  skipped   file.xlog (noise)\n"
         "100            7 65535    3--1         50 ab000000           9        3  damaged   file.xlog "
         "(why \"so\")\n"},
        {true, R"({"file":"file.xlog","offset":0,"len":100,"text":0,"lines":0,"verdict":"skipped","why":"noise"}
{"file":"file.xlog","offset":100,"magic":7,"seq":65535,"hours":"3--1","len":50,"key":"ab000000","keyFile":"my.key",)"
               R"("text":9,"lines":3,"verdict":"damaged","why":"why \"so\""})"
               "\n"}};
    for (const auto& [json, rows] : kForms) {
        StringOutput output;
        RecordTable table(output, "file.xlog", json);
        table.OnSkipped(0, 100, "noise");
        table.OnText("one\ntwo\n");
        table.OnText("3");
        table.OnRecordEnd(record);
        EXPECT_EQ(output.Text(), rows);
    }
}

}  // namespace
}  // namespace OrvaneLog
