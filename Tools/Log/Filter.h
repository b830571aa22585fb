// Decides which entries are shown: by level, module, time and a pattern. An entry is shown if all of them accept it.
#ifndef ORVANE_TOOLS_LOG_FILTER_H
#define ORVANE_TOOLS_LOG_FILTER_H

#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "Log/Entry.h"

namespace OrvaneLog {

// What --grep looks for: an ECMAScript expression, or plain text, which is looked for much faster. Constant once it is
// compiled.
class Pattern {
public:
    // Null, and the reason in `error`, for an expression that is not valid. `ignoreCase` is for ASCII letters.
    static std::shared_ptr<const Pattern> Compile(const std::string& expression, std::string& error,
                                                  bool ignoreCase = false);

    // An expression is matched against the first 16 KiB of the text, as much as a logger writes of a line, and against
    // 2 KiB if it has back-references. "^" and "$" match at the lines inside as well.
    bool IsFoundIn(std::string_view text) const;

private:
    // Whether the text holds _literal: all that is to be found, or what lets the slow matcher be spared.
    bool HoldsLiteral(std::string_view text) const;

    std::string _literal;  // the whole pattern, or text that every match must hold; in lower case if case is ignored
    bool _ignoreCase = false;               // of ASCII letters
    std::optional<std::regex> _expression;  // nothing if the pattern is plain text
    size_t _matchLength = 0;                // how much of a text is matched
};

// The choice of the command line. Without a word in it, it lets everything pass.
struct FilterOptions {
    int minimumLevel = 0;                    // 0 to 4; a line whose level is unknown always passes
    std::vector<std::string> modules;        // empty: all
    std::optional<LocalStamp> since;         // shown from here on
    std::optional<LocalStamp> until;         // shown up to here, itself included
    std::shared_ptr<const Pattern> pattern;  // null: any text

    bool IsEmpty() const { return minimumLevel <= 0 && modules.empty() && !since && !until && !pattern; }
};

// One for each source, in its order, since an entry without fields of its own goes by what is around it. It has the
// time of the line before it, and is not shown where there is none and a time is asked for. It has the module of its
// file. Its level counts as Info, that of a notice of lost lines as Error.
class Filter {
public:
    // The options are borrowed. `sourceModule`: the module that the file's name tells, or empty.
    Filter(const FilterOptions& options, std::string sourceModule)
        : _options(options), _sourceModule(std::move(sourceModule)) {}

    // Whether the entry is shown. Must be asked for every entry, since it also notes the time.
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
