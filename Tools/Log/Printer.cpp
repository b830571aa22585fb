#include "Log/Printer.h"

#include <cstdio>

#include "Orvane/LogPriority.h"
#include "Support/PrintableText.h"

namespace OrvaneLog {
namespace {

constexpr std::string_view kLossMark = "[F]";  // what stands for the level in a notice of lost lines
constexpr std::string_view kReset = "\x1b[0m";

std::string_view ColourOf(const Entry& entry) {
    if (entry.kind == EntryKind::kLossNotice) return "\x1b[1;31m";
    if (entry.kind == EntryKind::kOther) return "";
    switch (entry.line.level) {
        case kLogDebug:
            return "\x1b[2m";
        case kLogWarning:
            return "\x1b[33m";
        case kLogEvent:
            return "\x1b[36m";
        case kLogError:
            return "\x1b[31m";
        default:
            return "";
    }
}

// The part of the text that its colour is for.
std::string_view LevelOf(const Entry& entry) {
    return entry.kind == EntryKind::kLine ? entry.line.levelWord : entry.whole.substr(0, kLossMark.size());
}

void AppendJsonEscape(std::string& out, unsigned char c) {
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default: {
            char escape[8];
            snprintf(escape, sizeof escape, "\\u%04x", c);
            out += escape;
        }
    }
}

bool StandsForItself(unsigned char c) {
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
}

void AppendField(std::string& out, std::string_view name, std::string_view value) {
    out += out.empty() ? "{\"" : ",\"";
    out += name;
    out += "\":";
    AppendJsonString(out, value);
}

void AppendNumber(std::string& out, std::string_view name, std::string_view digits) {
    out += ",\"";
    out += name;
    out += "\":";
    // The format pads nothing here, but JSON takes no leading zeros.
    const size_t sign = digits.starts_with('-') ? 1 : 0;
    const size_t first = digits.find_first_not_of('0', sign);
    out += digits.substr(0, sign);
    out += first == std::string_view::npos ? std::string_view("0") : digits.substr(first);
}

}  // namespace

void TextPrinter::Print(const Entry& entry) {
    const std::string_view whole = entry.whole;
    const std::string_view colour = _look == Look::kColoured ? ColourOf(entry) : "";
    if (_look == Look::kAsItStands) {
        _output.Write(whole);
    } else if (colour.empty()) {
        _output.Write(OrvaneTools::PrintableText(whole));
    } else {
        const std::string_view level = LevelOf(entry);
        const size_t begin = static_cast<size_t>(level.data() - whole.data());
        _output.Write(OrvaneTools::PrintableText(whole.substr(0, begin)));
        _output.Write(colour);
        _output.Write(OrvaneTools::PrintableText(level));
        _output.Write(kReset);
        _output.Write(OrvaneTools::PrintableText(whole.substr(begin + level.size())));
    }
    _output.Write("\n");
}

void JsonPrinter::Print(const Entry& entry) {
    _object.clear();
    if (entry.kind == EntryKind::kLine) {
        const LogLine& line = entry.line;
        std::string time(line.time);  // "2026-11-24 21:50:39 123" is written as "2026-11-24T21:50:39.123"
        time[10] = 'T';
        time[19] = '.';
        AppendField(_object, "time", time);
        AppendField(_object, "level", line.levelWord);
        AppendField(_object, "module", line.module);
        AppendNumber(_object, "thread", std::to_string(line.thread));
        AppendField(_object, "file", line.file);
        AppendNumber(_object, "line", line.line);
        AppendField(_object, "function", line.function);
        AppendField(_object, "text", line.text);
    } else {
        AppendField(_object, "text", entry.whole);
    }
    _object += "}\n";
    _output.Write(_object);
}

void AppendJsonString(std::string& out, std::string_view text) {
    out += '"';
    for (size_t at = 0; at < text.size();) {
        size_t run = at;
        while (run < text.size() && StandsForItself(static_cast<unsigned char>(text[run])))
            ++run;
        out += text.substr(at, run - at);
        at = run;
        if (at == text.size()) break;
        const unsigned char c = static_cast<unsigned char>(text[at]);
        const size_t length = OrvaneTools::Utf8Length(text.substr(at));
        if (length == 0) {
            out += "\xEF\xBF\xBD";
            ++at;
        } else {
            if (length > 1)
                out += text.substr(at, length);
            else
                AppendJsonEscape(out, c);
            at += length;
        }
    }
    out += '"';
}

}  // namespace OrvaneLog
