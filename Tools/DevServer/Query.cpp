#include "DevServer/Query.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <set>

namespace OrvaneDevServer {
namespace {

bool IsUnreserved(unsigned char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

int HexValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    return -1;
}

std::string Escaped(unsigned char byte) {
    char text[4];
    snprintf(text, sizeof text, "%%%02X", byte);
    return text;
}

std::string Quoted(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "\"" : ", \"") + name + "\"";
    return text.empty() ? "nothing" : text;
}

// Reads one value from left to right.
class ValueDecoder {
public:
    ValueDecoder(const std::string& name, const std::string& value, Problems& problems)
        : _name(name), _value(value), _problems(problems) {}

    std::string Decode() {
        std::string decoded;
        while (_at < _value.size())
            decoded += _value[_at] == '%' ? TakeEscape() : TakePlain();
        return decoded;
    }

private:
    enum Kind { kCutEscape, kLowerCase, kSpace, kNeedless, kMissing };

    char TakePlain() {
        const char byte = _value[_at];
        if (byte != '+' && !IsUnreserved(static_cast<unsigned char>(byte)))
            Report(kMissing,
                   std::string("\"") + byte + "\" is sent as \"" + Escaped(static_cast<unsigned char>(byte)) + "\"");
        ++_at;
        return byte == '+' ? ' ' : byte;
    }

    char TakeEscape() {
        const int high = _at + 2 < _value.size() ? HexValue(_value[_at + 1]) : -1;
        const int low = _at + 2 < _value.size() ? HexValue(_value[_at + 2]) : -1;
        if (high < 0 || low < 0) {
            Report(kCutEscape, "a \"%\" has no two hexadecimal digits behind it");
            ++_at;
            return '%';
        }
        const unsigned char byte = static_cast<unsigned char>(high * 16 + low);
        const std::string text = _value.substr(_at, 3);
        if (byte == ' ')
            Report(kSpace, "a space is sent as \"+\", not as \"" + text + "\"");
        else if (IsUnreserved(byte))
            Report(kNeedless,
                   "\"" + text + "\" stands for a \"" + static_cast<char>(byte) + "\", which is sent as it is");
        else if (text != Escaped(byte))
            Report(kLowerCase, "\"" + text + "\" is sent with upper-case digits, \"" + Escaped(byte) + "\"");
        _at += 3;
        return static_cast<char>(byte);
    }

    void Report(Kind kind, const std::string& what) {
        if (_told.insert(kind).second)
            _problems.push_back(_name + " is wrongly encoded at position " + std::to_string(_at) + ": " + what);
    }

    const std::string& _name;
    const std::string& _value;
    Problems& _problems;
    size_t _at = 0;
    std::set<Kind> _told;
};

}  // namespace

Target SplitTarget(const std::string& target) {
    Target parts;
    const size_t mark = target.find('?');
    parts.path = target.substr(0, mark);
    if (mark == std::string::npos) return parts;
    for (size_t begin = mark + 1; begin <= target.size();) {
        const size_t end = std::min(target.find('&', begin), target.size());
        const std::string piece = target.substr(begin, end - begin);
        const size_t equals = piece.find('=');
        parts.query.emplace_back(piece.substr(0, equals), equals == std::string::npos ? "" : piece.substr(equals + 1));
        begin = end + 1;
    }
    return parts;
}

const std::string* FindValue(const Target& target, std::string_view name) {
    for (const auto& [key, value] : target.query)
        if (key == name) return &value;
    return nullptr;
}

void CheckNames(const Target& target, const std::vector<std::string>& expected, Problems& problems) {
    std::vector<std::string> names;
    for (const auto& [name, value] : target.query)
        names.push_back(name);
    if (names != expected)
        problems.push_back("the query holds " + Quoted(names) + "; it must hold " + Quoted(expected) +
                           ", in this order");
}

std::string DecodeValue(const std::string& name, const std::string& value, Problems& problems) {
    return ValueDecoder(name, value, problems).Decode();
}

bool ReadDecimal(const std::string& text, uint64_t& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && (text[0] != '0' || text.size() == 1);
}

}  // namespace OrvaneDevServer
