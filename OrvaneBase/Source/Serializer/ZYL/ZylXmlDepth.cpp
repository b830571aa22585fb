#include "Serializer/ZYL/ZylXmlDepth.h"

#include <cstring>

namespace Quern {
namespace {

bool IsXmlSpace(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// Each Skip takes a place and gives the one behind what it skips, or null at the end of the text.

const char* SkipPast(const char* text, const char* end) {
    const char* const found = strstr(text, end);
    return found == nullptr ? nullptr : found + strlen(end);
}

// The internal subset of a document type may hold any markup between its brackets.
const char* SkipDocumentType(const char* text) {
    for (int brackets = 0; *text != '\0'; ++text) {
        if (*text == '[') ++brackets;
        if (*text == ']' && brackets > 0) --brackets;
        if (*text == '>' && brackets == 0) return text + 1;
    }
    return nullptr;
}

// What follows "<!".
const char* SkipDeclaration(const char* text) {
    if (strncmp(text, "--", 2) == 0) return SkipPast(text + 2, "-->");
    if (strncmp(text, "[CDATA[", 7) == 0) return SkipPast(text + 7, "]]>");
    if (strncmp(text, "DOCTYPE", 7) == 0 && IsXmlSpace(text[7])) return SkipDocumentType(text + 8);
    return SkipPast(text, ">");
}

// A start tag behind its "<". A quote opens a value only behind "=": the parser lets names hold quotes.
const char* SkipStartTag(const char* text, bool& closesItself) {
    text += strcspn(text, " \t\n\r/>?");  // the element's name
    while (true) {
        text += strspn(text, " \t\n\r");
        const size_t nameSize = strcspn(text, " \t\n\r/<>=?!");
        if (nameSize == 0) break;
        text += nameSize;
        text += strspn(text, " \t\n\r");
        if (*text != '=') return nullptr;
        text += 1 + strspn(text + 1, " \t\n\r");
        if (*text != '\'' && *text != '"') return nullptr;
        text = strchr(text + 1, *text);
        if (text == nullptr) return nullptr;
        ++text;
    }
    closesItself = *text == '/';
    if (closesItself) ++text;
    return *text == '>' ? text + 1 : nullptr;
}

// No text has more elements open than it has "<" in it: enough for nearly every text.
bool HasFewTags(const char* text, int limit) {
    int tags = 0;
    while ((text = strchr(text, '<')) != nullptr) {
        if (++tags > limit) return false;
        ++text;
    }
    return true;
}

}  // namespace

bool IsXmlDepthWithin(const char* text, size_t size, int limit) {
    constexpr size_t kShortestTag = 3;  // "<a>"
    if (size / kShortestTag <= static_cast<size_t>(limit) || HasFewTags(text, limit)) return true;
    int depth = 0;
    while (text != nullptr && (text = strchr(text, '<')) != nullptr) {
        ++text;
        if (*text == '!') {
            text = SkipDeclaration(text + 1);
        } else if (*text == '?') {
            text = SkipPast(text + 1, "?>");
        } else if (*text == '/') {
            if (depth > 0) --depth;
            text = SkipPast(text, ">");
        } else {
            bool closesItself = false;
            if (depth == limit) return false;
            text = SkipStartTag(text, closesItself);
            if (!closesItself) ++depth;
        }
    }
    return true;
}

}  // namespace Quern
