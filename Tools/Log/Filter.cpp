#include "Log/Filter.h"

#include <algorithm>
#include <utility>

#include "Orvane/LogPriority.h"

namespace OrvaneLog {
namespace {

// How much of an entry is looked at: as much as a logger ever writes, or, for an expression with back-references, as
// much as the recursion that these need can stand.
constexpr size_t kMatchLength = 16384;
constexpr size_t kRecursiveMatchLength = 2048;

constexpr std::regex::flag_type kGrammar = std::regex::ECMAScript | std::regex::multiline;
// The library's usual matcher goes down a level of recursion for each character; this one does not, nor does it take
// time beyond measure, but it knows no back-references.
constexpr std::regex::flag_type kBounded = kGrammar | std::regex_constants::__polynomial;

}  // namespace

std::shared_ptr<const Pattern> Pattern::Compile(const std::string& expression, std::string& error) {
    auto pattern = std::make_shared<Pattern>();
    if (expression.find_first_of("^$\\.*+?()[]{}|") == std::string::npos) {
        pattern->_literal = expression;
        return pattern;
    }
    for (const auto& [flags, length] :
         {std::pair(kBounded, kMatchLength), std::pair(kGrammar, kRecursiveMatchLength)}) {
        try {
            pattern->_expression.emplace(expression, flags);
            pattern->_matchLength = length;
            return pattern;
        } catch (const std::regex_error& problem) {
            error = problem.what();
        }
    }
    return nullptr;
}

bool Pattern::IsFoundIn(std::string_view text) const {
    if (!_expression) return text.find(_literal) != std::string_view::npos;
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
