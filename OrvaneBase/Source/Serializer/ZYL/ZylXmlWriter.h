// Writes the XML form, driven by generated code.
//
// The calls are paired: openComplex, children, closeComplex; openSimple, one or more values, closeSimple. The ">" of a
// complex element is written when its first child comes, so that an element without children closes itself. In the node
// form a value stands on a line of its own; in the attribute form the caller writes the attribute that carries it, with
// `join` or `textize`.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_WRITER_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_WRITER_H

#include <cstdio>
#include <string_view>

#include "Serializer/ZYL/ZylIO.h"
#include "Serializer/ZYL/ZylName.h"
#include "Serializer/ZYL/ZylXmlFormat.h"

namespace Quern {

// Every operation returns the new state. REQUIRES of every operation: the state is 0, names and texts are not null.
class ZylXmlWriter : public ZylOutStream {
public:
    ZylXmlWriter(FILE* file, ZylXmlFormat format);
    ZylXmlWriter(char* buffer, unsigned long size, ZylXmlFormat format);

    int state() const { return _state; }
    ZylXmlFormat format() const { return _format; }

    int openSimple(ZylName name);   // REQUIRES: no simple element is open
    int closeSimple(ZylName name);  // REQUIRES: a simple element is open
    int openComplex(ZylName name);
    int closeComplex(ZylName name);

    // Values, each followed by a blank where `withBlank` is set, as lists of values are. The text is written with
    // <, >, &, ' and " as entities.
    int textizeStr(const char* src, bool withBlank);
    int textizeIP(unsigned int ip, bool withBlank);
    int textizeDate(unsigned int date, bool withBlank);
    int textizeTime(unsigned int time, bool withBlank);
    int textizeDateTime(unsigned long long dateTime, bool withBlank);
    // Numbers as "%lld" and "%llu" print them, at a fraction of the cost; a floating one as the shortest text that
    // reads back to the same value.
    int textizeInt(long long value, bool withBlank);
    int textizeUInt(unsigned long long value, bool withBlank);
    int textizeDouble(double value, bool withBlank);

private:
    static constexpr int kMaxTabs = 32;

    bool isAttributeForm() const { return _format == ZYL_XML_ATTRIBUTE; }
    std::string_view indentText() const;
    void _indent() { ++_indentLevel; }
    void _dedent();
    int putValue(std::string_view text, bool withBlank);
    template <typename Packed>
    int putConverted(int (*convert)(ZylWriteBuf&, Packed), Packed value, bool withBlank);
    template <typename Number>
    int putNumber(Number value, bool withBlank);

    ZylXmlFormat _format;
    int _state;
    bool _isSimple = false;     // a simple element is open
    bool _pendingOpen = false;  // the ">" of a complex element is not yet written
    int _indentLevel = 0;       // depth, counted past what the text shows
    // The tabs, of which the first _indentLevel are written, at most all.
    char _indentText[kMaxTabs + 1] = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
};

}  // namespace Quern

#endif
