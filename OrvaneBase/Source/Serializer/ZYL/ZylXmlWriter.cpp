#include "Serializer/ZYL/ZylXmlWriter.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

// The entity of a character, or an empty text for a character that stands for itself.
std::string_view EntityOf(char character) {
    switch (character) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '\'':
            return "&apos;";
        case '"':
            return "&quot;";
        default:
            return {};
    }
}

}  // namespace

ZylXmlWriter::ZylXmlWriter(FILE* file, ZylXmlFormat format)
    : ZylOutStream(file), _format(format), _state(ZylOutStream::state()) {}

ZylXmlWriter::ZylXmlWriter(char* buffer, unsigned long size, ZylXmlFormat format)
    : ZylOutStream(buffer, size), _format(format), _state(ZylOutStream::state()) {}

std::string_view ZylXmlWriter::indentText() const {
    return {_indentText, static_cast<size_t>(std::min(_indentLevel, kMaxTabs))};
}

void ZylXmlWriter::_indent() {
    if (_indentLevel < kMaxTabs) _indentText[_indentLevel] = '\t';
    ++_indentLevel;
    if (_indentLevel < kMaxTabs) _indentText[_indentLevel] = '\0';
}

void ZylXmlWriter::_dedent() {
    ORVANE_ASSERT(0 < _indentLevel);  // closing what was never opened
    if (_indentLevel < kMaxTabs) _indentText[_indentLevel] = '\t';
    --_indentLevel;
    if (_indentLevel < kMaxTabs) _indentText[_indentLevel] = '\0';
}

int ZylXmlWriter::openSimple(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    ORVANE_ASSERT(false == _isSimple);
    _isSimple = true;
    const std::string_view parentEnd = _pendingOpen ? ">\n" : "";
    _pendingOpen = false;
    if (isAttributeForm()) return _state = join({parentEnd, indentText(), "<", name});
    _state = join({parentEnd, indentText(), "<", name, ">\n"});
    _indent();
    return _state;
}

int ZylXmlWriter::closeSimple(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    ORVANE_ASSERT(true == _isSimple);
    _isSimple = false;
    if (isAttributeForm()) return _state = join({"/>\n"});
    _dedent();
    return _state = join({indentText(), "</", name, ">\n"});
}

int ZylXmlWriter::openComplex(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    ORVANE_ASSERT(false == _isSimple);
    _state = join({_pendingOpen ? ">\n" : "\n", indentText(), "<", name});
    _indent();
    _pendingOpen = true;
    return _state;
}

int ZylXmlWriter::closeComplex(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    ORVANE_ASSERT(false == _isSimple);
    _dedent();
    if (!_pendingOpen) return _state = join({indentText(), "</", name, ">\n"});
    _pendingOpen = false;
    return _state = join({"/>\n"});
}

int ZylXmlWriter::textizeStr(const char* src, bool withBlank) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != src);
    const char* end = src;
    for (; *end != '\0'; ++end) {
        const std::string_view entity = EntityOf(*end);
        if (entity.empty()) continue;
        if ((_state = output(src, static_cast<unsigned long>(end - src))) != ZylError::ZYL_NO_ERROR) return _state;
        if ((_state = output(entity.data(), entity.size())) != ZylError::ZYL_NO_ERROR) return _state;
        src = end + 1;
    }
    return putValue({src, static_cast<size_t>(end - src)}, withBlank);
}

int ZylXmlWriter::putValue(std::string_view text, bool withBlank) {
    return _state = join({text, withBlank ? " " : ""});
}

template <typename Packed>
int ZylXmlWriter::putConverted(int (*convert)(char*, unsigned long, Packed), Packed value, bool withBlank) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    char text[64];
    if ((_state = convert(text, sizeof text, value)) != ZylError::ZYL_NO_ERROR) return _state;
    return putValue(text, withBlank);
}

int ZylXmlWriter::textizeIP(unsigned int ip, bool withBlank) {
    return putConverted<unsigned int>(ZylTypeUtil::zylIp2Str, ip, withBlank);
}

int ZylXmlWriter::textizeDate(unsigned int date, bool withBlank) {
    return putConverted<unsigned int>(ZylTypeUtil::zylDate2Str, date, withBlank);
}

int ZylXmlWriter::textizeTime(unsigned int time, bool withBlank) {
    return putConverted<unsigned int>(ZylTypeUtil::zylTime2Str, time, withBlank);
}

int ZylXmlWriter::textizeDateTime(unsigned long long dateTime, bool withBlank) {
    return putConverted<unsigned long long>(ZylTypeUtil::zylDateTime2Str, dateTime, withBlank);
}

template <typename Number>
int ZylXmlWriter::putNumber(Number value, bool withBlank) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    char text[32];  // the longest are 20 digits with a sign and "-1.7976931348623157e+308"
    const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
    return putValue({text, static_cast<size_t>(end - text)}, withBlank);
}

int ZylXmlWriter::textizeInt(long long value, bool withBlank) {
    return putNumber(value, withBlank);
}
int ZylXmlWriter::textizeUInt(unsigned long long value, bool withBlank) {
    return putNumber(value, withBlank);
}
int ZylXmlWriter::textizeDouble(double value, bool withBlank) {
    return putNumber(value, withBlank);
}

}  // namespace Quern
