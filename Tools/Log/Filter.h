// Which entries are shown.
#ifndef ORVANE_TOOLS_LOG_FILTER_H
#define ORVANE_TOOLS_LOG_FILTER_H

#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "Log/Entry.h"

namespace OrvaneLog {

// An ECMAScript expression, or plain text, which is looked for much faster.
class Pattern {
public:
    // Null, and the reason in `error`, for an expression that is not valid.
    static std::shared_ptr<const Pattern> Compile(const std::string& expression, std::string& error,
                                                  bool ignoreCase = false);

    bool IsFoundIn(std::string_view text) const;

private:
    bool HoldsLiteral(std::string_view text) const;

    std::string _literal;  // the whole pattern, or text that every match must hold; in lower case if case is ignored
    bool _ignoreCase = false;
    std::optional<std::regex> _expression;
    size_t _matchLength = 0;
};

struct FilterOptions {
    int minimumLevel = 0;
    std::vector<std::string> modules;  // empty: all
    std::optional<LocalStamp> since;   // shown from here on
    std::optional<LocalStamp> until;   // shown up to here, itself included
    std::shared_ptr<const Pattern> pattern;

    bool IsEmpty() const { return minimumLevel <= 0 && modules.empty() && !since && !until && !pattern; }
};

// One for each source: an entry without fields of its own goes by those around it.
class Filter {
public:
    // `sourceModule`: the module that the file's name tells, or empty.
    Filter(const FilterOptions& options, std::string sourceModule)
        : _options(options), _sourceModule(std::move(sourceModule)) {}

    bool Accepts(const Entry& entry);

private:
    bool AcceptsLevel(const Entry& entry) const;
    bool AcceptsModule(const Entry& entry) const;
    bool AcceptsTime(const Entry& entry);

    const FilterOptions& _options;
    std::string _sourceModule;
    LocalStamp _lastStamp = 0;  // of the last line that had one
};

}  // namespace OrvaneLog

#endif
