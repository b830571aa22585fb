#include "Log/Printer.h"

#include <json/json.h>

#include "Log/RecordTable.h"
#include "Log/TailPrinter.h"
#include "Support/Test.h"

namespace OrvaneLog {
namespace {

Json::Value Parsed(const std::string& text) {
    Json::Value value;
    std::string errors;
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, &errors)) << errors << text;
    return value;
}

TEST(JsonPrinter, WritesTheFieldsOfALine) {
    StringOutput output;
    JsonPrinter printer(output);
    printer.Print(
        MakeEntry("[2026-11-24 21:50:39 007] | Event | [My \"module\"] |18446744073709551615| a\\b.cpp:12|f<\t>| "
                  "one\ntwo\r\x01"));
    printer.Print(MakeEntry("----------- begin of mmap -----------"));
    const size_t second = output.Text().find("}\n") + 2;
    EXPECT_EQ(output.Text().find('\n'), second - 1) << "one line each";

    const Json::Value line = Parsed(output.Text().substr(0, second));
    EXPECT_EQ(line["time"], "2026-11-24T21:50:39.007");
    EXPECT_EQ(line["level"], "Event");
    EXPECT_EQ(line["module"], "My \"module\"");
    EXPECT_EQ(line["thread"].asUInt64(), 18446744073709551615u);
    EXPECT_EQ(line["file"], "a\\b.cpp");
    EXPECT_EQ(line["line"], 12);
    EXPECT_EQ(line["function"], "f<\t>");
    EXPECT_EQ(line["text"], "one\ntwo\r\x01");
    EXPECT_EQ(line.size(), 8u);
    EXPECT_EQ(Parsed(output.Text().substr(second))["text"], "----------- begin of mmap -----------");
}

TEST(JsonPrinter, KeepsUtf8AndReplacesTheRest) {
    const struct {
        const char *text, *expected;
    } cases[] = {
        {"h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80", "h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80"},
        {"\xC4\xE3", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // another encoding
        {"a\xC3", "a\xEF\xBF\xBD"},                                // cut within a character
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a surrogate
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\x7F", "\x7F"},
    };
    for (const auto& one : cases) {
        std::string json;
        AppendJsonString(json, one.text);
        EXPECT_EQ(Parsed("[" + json + "]")[0].asString(), one.expected) << json;
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
    record.header.magic = 7;
    record.header.seq = 65535;
    record.header.beginHour = 3;
    record.header.endHour = -1;
    record.header.length = 50;
    record.header.publicKey[0] = 0xAB;
    record.size = 124;
    record.textSize = 9;
    record.verdict = Verdict::kDamaged;
    record.why = "why \"so\"";
    record.keyName = "my.key";
    for (const bool json : {false, true}) {
        StringOutput output;
        RecordTable table(output, "file.xlog", json);
        table.OnSkipped(0, 100, "noise");
        table.OnText("one\ntwo\n");
        table.OnText("3");
        table.OnRecordEnd(record);
        const size_t second = output.Text().find('\n') + 1;
        if (!json) {
            EXPECT_NE(output.Text().find("skipped   file.xlog (noise)\n"), std::string::npos);
            EXPECT_NE(
                output.Text().find("100            7 65535    3--1         50 ab000000           9        3  damaged"),
                std::string::npos)
                << output.Text();
            continue;
        }
        EXPECT_EQ(Parsed(output.Text().substr(0, second))["verdict"], "skipped");
        const Json::Value row = Parsed(output.Text().substr(second));
        EXPECT_EQ(row["file"], "file.xlog");
        EXPECT_EQ(row["seq"], 65535);
        EXPECT_EQ(row["len"], 50);
        EXPECT_EQ(row["lines"], 3);
        EXPECT_EQ(row["keyFile"], "my.key");
        EXPECT_EQ(row["why"], "why \"so\"");
    }
}

}  // namespace
}  // namespace OrvaneLog
