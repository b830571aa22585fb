// The patterns of an order, as the client's own matcher takes them: its language is smaller than one thinks.
#include <cctype>
#include <cstring>
#include <set>
#include <vector>

#include "DevServer/Lint/Rules.h"
#include "Serializer/Codec/RegularExpression.h"

namespace OrvaneDevServer {
namespace {

constexpr char kRule[] = "odd-pattern";
constexpr long long kSteps = 100000;  // that the client gives a pattern for one name

std::vector<std::string> Pieces(const std::string& text) {
    std::vector<std::string> pieces(1);
    for (const char c : text)
        if (c == '|')
            pieces.emplace_back();
        else
            pieces.back() += c;
    return pieces;
}

// Names that log files have, and names made to be hard for this pattern.
std::vector<std::string> Names(const std::string& pattern) {
    std::vector<std::string> names = {"2026112510.xlog", "OrvaneCore_2026112510.log", std::string(64, 'a')};
    std::set<char> letters;
    for (const char c : pattern)
        if (isalnum(static_cast<unsigned char>(c)) && letters.size() < 8 && letters.insert(c).second)
            names.emplace_back(64, c);
    return names;
}

const char* Refusal(int code) {
    switch (code) {
        case Quern::kSlreUnexpectedQuantifier:
            return "a \"*\", \"+\" or \"?\" has nothing in front";
        case Quern::kSlreUnbalancedBrackets:
            return "its brackets do not close; a \"|\" separates patterns, also inside of brackets";
        case Quern::kSlreInternalError:
        case Quern::kSlreInvalidCharacterSet:
            return "it has a set that is none";
        case Quern::kSlreInvalidMetacharacter:
            return "behind a \"\\\" may stand one of dsSbfnrtv, x with two digits, or one of ^$().[]*+?|\\";
        case Quern::kSlreTooManyBrackets:
            return "it has more than 99 brackets";
        default:
            return nullptr;
    }
}

// The matcher looks for the end of a set, and an escape that the pattern ends in leads it past.
bool EndsInsideEscapeOfSet(const std::string& pattern) {
    bool isInSet = false;
    for (size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '\\') {
            const size_t length = i + 1 < pattern.size() && pattern[i + 1] == 'x' ? 4 : 2;
            if (i + length > pattern.size()) return isInSet;
            i += length - 1;
        } else if (!isInSet && pattern[i] == '[') {
            isInSet = true;
        } else if (isInSet && pattern[i] == ']') {
            isInSet = false;
        }
    }
    return false;
}

// Whether it fits names that have nothing in common.
bool FitsEverything(const std::string& pattern) {
    for (const char* const name : {"\x01", "~~", "9"}) {
        long long steps = kSteps;
        if (Quern::slre_match_bounded(pattern.c_str(), name, static_cast<int>(strlen(name)), Quern::kSlreIgnoreCase,
                                      steps) < 0)
            return false;
    }
    return true;
}

void CheckPiece(const LintedKey& key, const std::string& pattern, Findings& findings) {
    const auto add = [&](Severity severity, const std::string& what) {
        findings.push_back(key.Found(severity, kRule, "\"" + pattern.substr(0, 60) + "\" " + what));
    };
    if (pattern.size() > Quern::kSlreLongestBoundedPattern)
        return add(Severity::kError, "fits no file: a pattern has 1024 characters at most");
    if (EndsInsideEscapeOfSet(pattern))
        return add(Severity::kError, "never comes to its end: the client gives it up, and it fits no file");
    if (pattern.find('{') != std::string::npos) add(Severity::kWarning, "has no counts: \"{\" stands for itself");
    for (const std::string& name : Names(pattern)) {
        long long steps = kSteps;
        const int code = Quern::slre_match_bounded(pattern.c_str(), name.c_str(), static_cast<int>(name.size()),
                                                   Quern::kSlreIgnoreCase, steps);
        if (const char* why = Refusal(code)) return add(Severity::kError, std::string("fits no file: ") + why);
        if (steps <= 0)
            return add(Severity::kError, "takes too long for a name such as \"" + name.substr(0, 12) +
                                             (name.size() > 12 ? "..\"" : "\"") + ": the client gives it up");
    }
    if (FitsEverything(pattern)) add(Severity::kWarning, "fits every file");
}

}  // namespace

void FindOddPattern(const LintedKey& key, Findings& findings) {
    constexpr size_t kMostPieces = 100;
    if (!key.Is("Upload", "file_pattern")) return;
    const std::vector<std::string> pieces = Pieces(key.stored.text);
    if (pieces.size() > kMostPieces)
        findings.push_back(
            key.Found(Severity::kWarning, kRule, "there are more than 100 patterns; the others are not looked at"));
    for (size_t i = 0; i < pieces.size() && i < kMostPieces; ++i) {
        if (pieces[i].empty())
            findings.push_back(key.Found(Severity::kWarning, kRule, "an empty pattern fits every file"));
        else
            CheckPiece(key, pieces[i], findings);
    }
}

}  // namespace OrvaneDevServer
