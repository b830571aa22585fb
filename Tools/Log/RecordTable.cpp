#include "Log/RecordTable.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Log/KeyFile.h"
#include "Log/Printer.h"
#include "Support/PrintableText.h"

namespace OrvaneLog {
namespace {

constexpr size_t kKeyBytesShown = 4;  // enough to tell writers apart by eye

std::string Hours(const RecordHeader& header) {
    char text[16];
    snprintf(text, sizeof text, "%d-%d", header.beginHour, header.endHour);
    return text;
}

}  // namespace

void RecordTable::WriteHeading(Output& output) {
    char line[160];
    snprintf(line, sizeof line, "%-10s %5s %5s %7s %10s %-8s %11s %8s  %-9s %s\n", "OFFSET", "MAGIC", "SEQ", "HOURS",
             "LEN", "KEY", "TEXT", "LINES", "VERDICT", "FILE");
    output.Write(line);
}

void RecordTable::OnText(std::string_view piece) {
    if (piece.empty()) return;
    _lines += static_cast<uint64_t>(std::count(piece.begin(), piece.end(), '\n'));
    _last = piece.back();
}

void RecordTable::OnRecordEnd(const RecordReport& record) {
    Row row;
    row.offset = record.offset;
    row.magic = std::to_string(record.header.magic);
    row.seq = std::to_string(record.header.seq);
    row.hours = Hours(record.header);
    row.length = record.header.length;
    if (record.header.IsEncrypted()) row.key = ToHex(record.header.publicKey.data(), kKeyBytesShown);
    row.keyName = record.keyName;
    row.textSize = record.textSize;
    row.lines = _lines + (_last != '\n');
    row.verdict = VerdictWord(record.verdict);
    row.why = record.why;
    Write(row);
    _lines = 0;
    _last = '\n';
}

void RecordTable::OnSkipped(uint64_t offset, uint64_t size, const std::string& why) {
    Row row;
    row.offset = offset;
    row.length = size;
    row.verdict = "skipped";
    row.why = why;
    Write(row);
}

void RecordTable::End() {
    if (_textRead == 0) return;
    Row row;
    row.length = row.textSize = _textRead;
    row.lines = _lines + (_last != '\n');
    row.verdict = "text";
    Write(row);
}

void RecordTable::Write(const Row& row) {
    if (!_json) {
        char line[160];
        snprintf(line, sizeof line, "%-10llu %5s %5s %7s %10llu %-8s %11llu %8llu  %-9s ",
                 static_cast<unsigned long long>(row.offset), row.magic.c_str(), row.seq.c_str(), row.hours.c_str(),
                 static_cast<unsigned long long>(row.length), row.key.c_str(),
                 static_cast<unsigned long long>(row.textSize), static_cast<unsigned long long>(row.lines),
                 row.verdict.c_str());
        _output.Write(line + OrvaneTools::PrintableText(_path) + (row.why.empty() ? "" : " (" + row.why + ")") + "\n");
        return;
    }
    std::string object = "{\"file\":";
    const auto text = [&object](const char* name, const std::string& value) {
        object += std::string(",\"") + name + "\":";
        AppendJsonString(object, value);
    };
    const auto number = [&object](const char* name, const std::string& digits) {
        object += std::string(",\"") + name + "\":" + digits;
    };
    AppendJsonString(object, _path);
    number("offset", std::to_string(row.offset));
    if (row.magic != "-") {
        number("magic", row.magic);
        number("seq", row.seq);
        text("hours", row.hours);
    }
    number("len", std::to_string(row.length));
    if (row.key != "-") text("key", row.key);
    if (!row.keyName.empty()) text("keyFile", row.keyName);
    number("text", std::to_string(row.textSize));
    number("lines", std::to_string(row.lines));
    text("verdict", row.verdict);
    if (!row.why.empty()) text("why", row.why);
    _output.Write(object + "}\n");
}

}  // namespace OrvaneLog
