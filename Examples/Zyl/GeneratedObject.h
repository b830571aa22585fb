// What a generator emits alike for every class: the forms of an operation that differ only in where the bytes go, and
// the encodings that a schema's field types stand for.
#ifndef ORVANE_EXAMPLES_ZYL_GENERATED_OBJECT_H
#define ORVANE_EXAMPLES_ZYL_GENERATED_OBJECT_H

#include <cstddef>

#include "Serializer/ZYL/IZylObject.h"
#include "Serializer/ZYL/ZylXmlReader.h"
#include "Serializer/ZYL/ZylXmlWriter.h"

namespace Example {

class GeneratedObject : public Quern::IZylObject {
public:
    int pack(Quern::ZylWriteBuf& dest, unsigned int cutVer) override = 0;
    int pack(char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer) override;
    int unpack(Quern::ZylReadBuf& src, unsigned int cutVer) override = 0;
    int unpack(const char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer) override;
    int visualize(Quern::ZylWriteBuf& dest, int indent, char separator) override = 0;
    int visualize(char* buffer, unsigned long size, unsigned long* usedSize, int indent, char separator) override;

    int fromXmlFile(const char* path, Quern::ZylXmlFormat format, unsigned int cutVer) override;
    int fromXmlBuffer(const char* buffer, unsigned long size, Quern::ZylXmlFormat format, unsigned int cutVer) override;
    int fromXmlString(char* text, Quern::ZylXmlFormat format, unsigned int cutVer) override;
    int toXmlFile(const char* path, Quern::ZylXmlFormat format, unsigned int cutVer) const override;
    int toXmlFile(FILE* file, Quern::ZylXmlFormat format, unsigned int cutVer) const override;
    int toXmlBuffer(char* buffer, unsigned long size, unsigned long* usedSize, Quern::ZylXmlFormat format,
                    unsigned int cutVer) override;

    // The fields, between the tags of the element that holds them.
    virtual int writeXmlFields(Quern::ZylXmlWriter& writer, unsigned int cutVer) const = 0;
    virtual int readXmlFields(Quern::ZylXmlReader& reader, unsigned int cutVer) = 0;
    // The name of the root element.
    virtual const char* xmlName() const = 0;

private:
    int writeXml(Quern::ZylXmlWriter& writer, unsigned int cutVer) const;
    int readXml(Quern::ZylXmlReader& reader, unsigned int cutVer);
};

// Binary text: its length with the terminator as 32 bits, then the characters and the terminator.
int PackText(Quern::ZylWriteBuf& dest, const char* text);
// -3 for a text longer than `size` holds, -4 for one without a terminator's place, -5 where the terminator is not where
// the length puts it.
int UnpackText(Quern::ZylReadBuf& src, char* text, size_t size);

// A simple field of the XML form: in the attribute form its value is the attribute "value" of its element.
template <typename PutValue>
int WriteEntry(Quern::ZylXmlWriter& writer, Quern::ZylName name, const PutValue& putValue) {
    const bool isAttribute = writer.format() == Quern::ZYL_XML_ATTRIBUTE;
    if (const int code = writer.openSimple(name)) return code;
    if (isAttribute && writer.join(" value=\"") != 0) return writer.ZylOutStream::state();
    if (const int code = putValue()) return code;
    if (isAttribute && writer.join("\"") != 0) return writer.ZylOutStream::state();
    return writer.closeSimple(name);
}
// The text of a field, empty if it is missing.
const char* ReadEntry(Quern::ZylXmlReader& reader, Quern::ZylName name);
// -3 for a text longer than `size` holds.
int ReadText(Quern::ZylXmlReader& reader, Quern::ZylName name, char* text, size_t size);

}  // namespace Example

#endif
