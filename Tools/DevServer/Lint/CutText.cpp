// The client keeps an answer as lines, in which some characters have a meaning.
#include <cstring>

#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindCutText(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "cut-text";
    if (!key.value.isString()) return;
    const std::string text = key.value.asString();
    const auto add = [&](Severity severity, const std::string& what) {
        findings.push_back(key.Found(severity, kRule, what));
    };
    if (text.find(std::string_view("\0", 1)) != std::string::npos)
        add(Severity::kError, "the client takes the text up to its first NUL");
    if (key.stored.written.find('#') != std::string::npos)
        add(Severity::kError, "\"#\" begins a comment: the game reads \"" + key.stored.text + "\"");
    else if (key.stored.written != key.stored.text)
        add(Severity::kWarning, "blanks at the ends of a text are lost");
    if (key.stored.written.find_first_of("\r\n") != std::string::npos)
        add(Severity::kError, "a text with a line end is whole until the next launch, which finds two lines");
}

}  // namespace OrvaneDevServer
