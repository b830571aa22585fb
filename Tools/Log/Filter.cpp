#include "Log/Filter.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

#include "Orvane/LogPriority.h"

namespace OrvaneLog {
namespace {

// How much of an entry is looked at: as much as a logger ever writes, or, for an expression with back-references, as
// much as the recursion that these need can stand.
constexpr size_t kMatchLength = 16384;
constexpr size_t kRecursiveMatchLength = 2048;

constexpr std::string_view kSpecial = "^$\\.*+?()[]{}|";
constexpr std::string_view kQuantifiers = "*+?{";

constexpr std::regex::flag_type kGrammar = std::regex::ECMAScript | std::regex::multiline;
// The library's usual matcher goes down a level of recursion for each character; this one does not, nor does it take
// time beyond measure, but it knows no back-references.
constexpr std::regex::flag_type kBounded = kGrammar | std::regex_constants::__polynomial;

// Of ASCII letters alone, as the expressions take them in the "C" locale.
char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The longest text that any match of a valid expression holds, as far as that can be seen with little reading. Looking
// for it first spares the matcher, which is slow, most entries.
std::string RequiredText(const std::string& expression) {
    if (expression.find('|') != std::string::npos) return "";
    std::string longest, run;
    const auto endRun = [&longest, &run] {
        if (run.size() > longest.size()) longest = run;
        run.clear();
    };
    for (size_t i = 0; i < expression.size(); ++i) {
        const char c = expression[i];
        if (kSpecial.find(c) == std::string_view::npos) {
            run += c;
            continue;
        }
        // What stands in front of a quantifier may be missing, or come twice.
        if (kQuantifiers.find(c) != std::string_view::npos && !run.empty()) run.pop_back();
        endRun();
        if (c == '(' || c == '[') return longest;  // what follows may belong to the group
        if (c == '{') i = std::min(expression.find('}', i), expression.size());
        if (c == '\\') {
            if (i + 1 < expression.size() && isalnum(static_cast<unsigned char>(expression[i + 1]))) {
                // A class, or a character by its number: its digits are no text.
                if (strchr("dDwWsSbB", expression[i + 1]) == nullptr) return longest;
            }
            ++i;
        }
    }
    endRun();
    return longest;
}

}  // namespace

std::shared_ptr<const Pattern> Pattern::Compile(const std::string& expression, std::string& error, bool ignoreCase) {
    auto pattern = std::make_shared<Pattern>();
    pattern->_ignoreCase = ignoreCase;
    const auto literal = [ignoreCase](std::string text) {
        if (ignoreCase) std::transform(text.begin(), text.end(), text.begin(), LowerCase);
        return text;
    };
    if (expression.find_first_of(kSpecial) == std::string::npos) {
        pattern->_literal = literal(expression);
        return pattern;
    }
    for (const auto& [flags, length] :
         {std::pair(kBounded, kMatchLength), std::pair(kGrammar, kRecursiveMatchLength)}) {
        try {
            pattern->_expression.emplace(expression, ignoreCase ? flags | std::regex::icase : flags);
            pattern->_matchLength = length;
            pattern->_literal = literal(RequiredText(expression));
            return pattern;
        } catch (const std::regex_error& problem) {
            error = problem.what();
        }
    }
    return nullptr;
}

bool Pattern::HoldsLiteral(std::string_view text) const {
    if (!_ignoreCase) return text.find(_literal) != std::string_view::npos;
    return std::search(text.begin(), text.end(), _literal.begin(), _literal.end(),
                       [](char a, char b) { return LowerCase(a) == b; }) != text.end() ||
           _literal.empty();
}

bool Pattern::IsFoundIn(std::string_view text) const {
    if (!HoldsLiteral(text)) return false;
    if (!_expression) return true;
    text = text.substr(0, _matchLength);
    return std::regex_search(text.begin(), text.end(), *_expression);
}

bool Filter::Accepts(const Entry& entry) {
    // The time first: it also notes where in time the source stands.
    return AcceptsTime(entry) && AcceptsLevel(entry) && AcceptsModule(entry) &&
           (!_options.pattern || _options.pattern->IsFoundIn(entry.whole));
}

bool Filter::AcceptsLevel(const Entry& entry) const {
    switch (entry.kind) {
        case EntryKind::kLine:
            return entry.line.level == kUnknownLevel || entry.line.level >= _options.minimumLevel;
        case EntryKind::kLossNotice:
            return kLogError >= _options.minimumLevel;
        case EntryKind::kOther:
            return kLogInfo >= _options.minimumLevel;
    }
    return true;
}

bool Filter::AcceptsModule(const Entry& entry) const {
    if (_options.modules.empty()) return true;
    const std::string_view module =
        entry.kind == EntryKind::kLine ? entry.line.module : std::string_view(_sourceModule);
    return std::find(_options.modules.begin(), _options.modules.end(), module) != _options.modules.end();
}

bool Filter::AcceptsTime(const Entry& entry) {
    if (entry.kind == EntryKind::kLine) _lastStamp = entry.line.stamp;
    if (!_options.since && !_options.until) return true;
    if (_lastStamp == 0) return false;
    return (!_options.since || _lastStamp >= *_options.since) && (!_options.until || _lastStamp <= *_options.until);
}

}  // namespace OrvaneLog
