#include "Log/LogLine.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <iterator>

#include "Base/LogLevelWords.h"
#include "Support/PrintableText.h"

namespace OrvaneLog {
namespace {

constexpr size_t kLevels = std::size(Quern::kLogLevelWords) - 1;  // of lines
constexpr std::string_view kLossNotice = "[F][ sg_buffer_async.Length() >= ";
// How much of a text is looked at to tell text from noise.
constexpr size_t kTextSample = 256;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads a piece at a time from the front of a line.
class Scanner {
public:
    explicit Scanner(std::string_view text) : _text(text) {}

    bool Literal(std::string_view literal) {
        if (_text.substr(_at, literal.size()) != literal) return false;
        _at += literal.size();
        return true;
    }
    // `least` to `most` digits, appended to the decimal number in `value`.
    bool Digits(size_t least, size_t most, uint64_t& value) {
        size_t count = 0;
        for (; count < most && _at < _text.size() && IsDigit(_text[_at]); ++count, ++_at)
            value = value * 10 + static_cast<uint64_t>(_text[_at] - '0');
        return count >= least;
    }
    // Everything up to `end`, which is passed over. Never across a newline.
    bool Until(std::string_view end, std::string_view& field) {
        const size_t found = _text.find(end, _at);
        if (found == std::string_view::npos) return false;
        field = _text.substr(_at, found - _at);
        if (field.find('\n') != std::string_view::npos) return false;
        _at = found + end.size();
        return true;
    }
    size_t At() const { return _at; }
    std::string_view Rest() const { return _text.substr(_at); }

private:
    std::string_view _text;
    size_t _at = 0;
};

// "[2026-11-24 21:50:39 123] | "
bool ScanTime(Scanner& scanner, LocalStamp& stamp) {
    stamp = 0;
    return scanner.Literal("[") && scanner.Digits(4, 4, stamp) && scanner.Literal("-") && scanner.Digits(2, 2, stamp) &&
           scanner.Literal("-") && scanner.Digits(2, 2, stamp) && scanner.Literal(" ") && scanner.Digits(2, 2, stamp) &&
           scanner.Literal(":") && scanner.Digits(2, 2, stamp) && scanner.Literal(":") && scanner.Digits(2, 2, stamp) &&
           scanner.Literal(" ") && scanner.Digits(3, 3, stamp) && scanner.Literal("] | ");
}

// "core.cpp:12|": the name may hold colons itself, so the number is looked for from the bar back.
bool ScanPlace(Scanner& scanner, LogLine& line) {
    std::string_view place;
    if (!scanner.Until("|", place)) return false;
    const size_t colon = place.rfind(':');
    if (colon == std::string_view::npos) return false;
    line.file = place.substr(0, colon);
    line.line = place.substr(colon + 1);
    const std::string_view digits = line.line.substr(line.line.starts_with('-') ? 1 : 0);
    return !digits.empty() && std::all_of(digits.begin(), digits.end(), IsDigit);
}

}  // namespace

bool BeginsLine(std::string_view text) {
    if (text.empty() || text[0] != '[') return false;
    Scanner scanner(text.substr(0, kLineStartLength));
    LocalStamp stamp;
    std::string_view word;
    return ScanTime(scanner, stamp) && scanner.Until(" | [", word);
}

bool BeginsLossNotice(std::string_view text) {
    return text.starts_with(kLossNotice);
}

bool ParseLine(std::string_view text, LogLine& line) {
    line = LogLine{};
    if (text.ends_with('\n')) text.remove_suffix(1);
    Scanner scanner(text);
    if (!ScanTime(scanner, line.stamp)) return false;
    line.time = text.substr(1, scanner.At() - 5);
    if (!scanner.Until(" | [", line.levelWord) || !scanner.Until("] |", line.module)) return false;
    if (!scanner.Digits(1, 20, line.thread) || !scanner.Literal("| ")) return false;
    if (!ScanPlace(scanner, line) || !scanner.Until("| ", line.function)) return false;
    line.level = LevelOfWord(line.levelWord);
    line.text = scanner.Rest();
    return true;
}

int LevelOfWord(std::string_view word) {
    for (size_t i = 0; i < kLevels; ++i) {
        const std::string_view known = Quern::kLogLevelWords[i];
        if (word.size() == known.size() && strncasecmp(word.data(), known.data(), known.size()) == 0)
            return static_cast<int>(i);
    }
    return kUnknownLevel;
}

bool LooksLikeText(std::string_view text) {
    if (BeginsLine(text)) return true;
    const bool cut = text.size() > kTextSample;
    text = text.substr(0, kTextSample);
    for (size_t at = 0; at < text.size();) {
        const uint8_t byte = static_cast<uint8_t>(text[at]);
        const bool space = byte == '\t' || byte == '\n' || byte == '\r' || byte == 0x1B;
        if ((byte < 0x20 && !space) || byte == 0x7F) return false;
        const size_t length = OrvaneTools::Utf8Length(text.substr(at));
        if (length == 0) return cut && text.size() - at < 4;  // the sample ends within a character
        at += length;
    }
    return true;
}

}  // namespace OrvaneLog
