#include "JsonEvent.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "Orvane/RunTime.h"

namespace Pell {
namespace {

// The length of the UTF-8 sequence that begins here, or 0 if none does: overlong forms, surrogates and what lies
// beyond U+10FFFF are none.
size_t SequenceLength(const unsigned char* at, size_t left) {
    if (at[0] < 0x80) return 1;
    size_t length;
    unsigned char least = 0x80, most = 0xBF;  // bounds of the second byte
    if (at[0] >= 0xC2 && at[0] <= 0xDF) {
        length = 2;
    } else if (at[0] >= 0xE0 && at[0] <= 0xEF) {
        length = 3;
        if (at[0] == 0xE0) least = 0xA0;
        if (at[0] == 0xED) most = 0x9F;
    } else if (at[0] >= 0xF0 && at[0] <= 0xF4) {
        length = 4;
        if (at[0] == 0xF0) least = 0x90;
        if (at[0] == 0xF4) most = 0x8F;
    } else {
        return 0;
    }
    if (length > left || at[1] < least || at[1] > most) return 0;
    for (size_t i = 2; i < length; ++i) {
        if ((at[i] & 0xC0) != 0x80) return 0;
    }
    return length;
}

std::string Bytes(const char* value, int length) {
    return value && length > 0 ? JsonText(value, static_cast<size_t>(length)) : "\"\"";
}

void AppendToFile(const char* path, const std::string& line) {
    const int file = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    const ssize_t written = file < 0 ? -1 : write(file, line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size())) {
        orvane_console_log("PELL cannot write %s: %s", path, written < 0 ? strerror(errno) : "no space left");
    }
    if (file >= 0) close(file);
}

}  // namespace

JsonEvent::JsonEvent(int source, const char* name)
    : _head("{\"event\":" + JsonText(name, strlen(name)) + ",\"source\":" + std::to_string(source)) {}

void JsonEvent::Add(const char* key, const char* value, int length) {
    if (key) AddField(JsonText(key, strlen(key)), "\"text\":" + Bytes(value, length));
}

void JsonEvent::Add(int key, const char* value, int length) {
    AddField(std::to_string(key), "\"text\":" + Bytes(value, length));
}

void JsonEvent::Add(int key, int value) {
    AddField(std::to_string(key), "\"int\":" + std::to_string(value));
}

void JsonEvent::AddField(const std::string& key, const std::string& typed) {
    if (!_fields.empty()) _fields += ',';
    _fields += "{\"key\":" + key + ',' + typed + '}';
}

void JsonEvent::Report() {
    const char* path = getenv("PELL_EVENTS");
    AppendToFile(path && *path ? path : "pell-events.jsonl", _head + ",\"fields\":[" + _fields + "]}\n");
}

std::string JsonText(const char* text, size_t length) {
    std::string out = "\"";
    const unsigned char* at = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* const end = at + length;
    while (at < end) {
        const size_t sequence = SequenceLength(at, static_cast<size_t>(end - at));
        if (sequence == 0) {
            out += "\\ufffd";
        } else if (*at == '"' || *at == '\\') {
            out += '\\';
            out += static_cast<char>(*at);
        } else if (*at < 0x20) {
            char escape[8];
            snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(*at));
            out += escape;
        } else {
            out.append(reinterpret_cast<const char*>(at), sequence);
        }
        at += sequence ? sequence : 1;
    }
    return out + '"';
}

}  // namespace Pell
