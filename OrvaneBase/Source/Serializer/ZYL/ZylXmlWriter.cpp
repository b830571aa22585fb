#include "Serializer/ZYL/ZylXmlWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

// The entities, at the indices that kEntityOf gives; 0 for a character that stands for itself, the terminator not.
constexpr std::string_view kEntities[] = {"", "&lt;", "&gt;", "&amp;", "&apos;", "&quot;"};
constexpr unsigned char kEndOfText = 255;

constexpr auto kEntityOf = [] {
    std::array<unsigned char, 256> table{};
    table['\0'] = kEndOfText;
    table['<'] = 1;
    table['>'] = 2;
    table['&'] = 3;
    table['\''] = 4;
    table['"'] = 5;
    return table;
}();

}  // namespace

ZylXmlWriter::ZylXmlWriter(FILE* file, ZylXmlFormat format)
    : ZylOutStream(file), _format(format), _state(ZylOutStream::state()) {}

ZylXmlWriter::ZylXmlWriter(char* buffer, unsigned long size, ZylXmlFormat format)
    : ZylOutStream(buffer, size), _format(format), _state(ZylOutStream::state()) {}

std::string_view ZylXmlWriter::indentText() const {
    return {_indentText, static_cast<size_t>(std::min(_indentLevel, kMaxTabs))};
}

void ZylXmlWriter::_dedent() {
    ORVANE_ASSERT(0 < _indentLevel);  // closing what was never opened
    --_indentLevel;
}

int ZylXmlWriter::openSimple(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    ORVANE_ASSERT(false == _isSimple);
    _isSimple = true;
    const std::string_view parentEnd(">\n", _pendingOpen ? 2 : 0);
    _pendingOpen = false;
    if (isAttributeForm()) return _state = join(parentEnd, indentText(), "<", name.view());
    _state = join(parentEnd, indentText(), "<", name.view(), ">\n");
    _indent();
    return _state;
}

int ZylXmlWriter::closeSimple(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    ORVANE_ASSERT(true == _isSimple);
    _isSimple = false;
    if (isAttributeForm()) return _state = join("/>\n");
    _dedent();
    return _state = join(indentText(), "</", name.view(), ">\n");
}

int ZylXmlWriter::openComplex(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    ORVANE_ASSERT(false == _isSimple);
    _state = join(_pendingOpen ? ">" : "", "\n", indentText(), "<", name.view());
    _indent();
    _pendingOpen = true;
    return _state;
}

int ZylXmlWriter::closeComplex(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    ORVANE_ASSERT(false == _isSimple);
    _dedent();
    if (!_pendingOpen) return _state = join(indentText(), "</", name.view(), ">\n");
    _pendingOpen = false;
    return _state = join("/>\n");
}

int ZylXmlWriter::textizeStr(const char* src, bool withBlank) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != src);
    const char* end = src;
    while (true) {
        const unsigned char entity = kEntityOf[static_cast<unsigned char>(*end)];
        if (entity == kEndOfText) break;
        if (entity != 0) {
            if ((_state = output(src, static_cast<unsigned long>(end - src))) != ZylError::ZYL_NO_ERROR) return _state;
            const std::string_view text = kEntities[entity];
            if ((_state = output(text.data(), text.size())) != ZylError::ZYL_NO_ERROR) return _state;
            src = end + 1;
        }
        ++end;
    }
    return putValue({src, static_cast<size_t>(end - src)}, withBlank);
}

int ZylXmlWriter::putValue(std::string_view text, bool withBlank) {
    return _state = withBlank ? join(text, " ") : join(text);
}

template <typename Packed>
int ZylXmlWriter::putConverted(int (*convert)(ZylWriteBuf&, Packed), Packed value, bool withBlank) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    char text[64];
    ZylWriteBuf converted(text, sizeof text);
    if ((_state = convert(converted, value)) != ZylError::ZYL_NO_ERROR) return _state;
    return putValue({text, converted.position}, withBlank);
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
    return _state = printShort([=](char* place) {
               char* const end = std::to_chars(place, place + kMaxShortText, value).ptr;
               if (withBlank) *end = ' ';
               return end + (withBlank ? 1 : 0);
           });
}

int ZylXmlWriter::textizeInt(long long value, bool withBlank) {
    return putNumber(value, withBlank);
}
int ZylXmlWriter::textizeUInt(unsigned long long value, bool withBlank) {
    // Most numbers are small, and those are divided faster.
    if (value <= UINT32_MAX) return putNumber(static_cast<uint32_t>(value), withBlank);
    return putNumber(value, withBlank);
}
int ZylXmlWriter::textizeDouble(double value, bool withBlank) {
    return putNumber(value, withBlank);
}

}  // namespace Quern
