#include "GeneratedObject.h"

#include <cstring>

#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylXmlFile.h"

using Quern::ZylError;
using Quern::ZylReadBuf;
using Quern::ZylWriteBuf;
using Quern::ZylXmlFormat;
using Quern::ZylXmlReader;
using Quern::ZylXmlWriter;

namespace Example {

int GeneratedObject::pack(char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer) {
    if (buffer == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylWriteBuf dest(buffer, size);
    const int code = pack(dest, cutVer);
    if (usedSize != nullptr) *usedSize = dest.position;
    return code;
}

int GeneratedObject::unpack(const char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer) {
    if (buffer == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylReadBuf src(buffer, size);
    const int code = unpack(src, cutVer);
    if (usedSize != nullptr) *usedSize = src.position;
    return code;
}

int GeneratedObject::visualize(char* buffer, unsigned long size, unsigned long* usedSize, int indent, char separator) {
    if (buffer == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylWriteBuf dest(buffer, size);
    const int code = visualize(dest, indent, separator);
    if (usedSize != nullptr) *usedSize = dest.position;
    return code;
}

int GeneratedObject::fromXmlFile(const char* path, ZylXmlFormat format, unsigned int cutVer) {
    if (path == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    Quern::ZylXmlFile file;
    if (const int code = file.load(path)) return code;
    return fromXmlString(file.buffer, format, cutVer);
}

int GeneratedObject::fromXmlBuffer(const char* buffer, unsigned long size, ZylXmlFormat format, unsigned int cutVer) {
    if (buffer == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylXmlReader reader(buffer, size, format);
    return readXml(reader, cutVer);
}

int GeneratedObject::fromXmlString(char* text, ZylXmlFormat format, unsigned int cutVer) {
    if (text == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylXmlReader reader(text, format);
    return readXml(reader, cutVer);
}

int GeneratedObject::readXml(ZylXmlReader& reader, unsigned int cutVer) {
    if (reader.state() != ZylError::ZYL_NO_ERROR) return reader.state();
    if (reader.stepIn(xmlName()) != 0) return ZylError::ZYL_UNEXPECTED_XML_ROOT;
    if (const int code = readXmlFields(reader, cutVer)) return code;
    reader.stepOut(xmlName());
    return ZylError::ZYL_NO_ERROR;
}

int GeneratedObject::toXmlFile(const char* path, ZylXmlFormat format, unsigned int cutVer) const {
    if (path == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    FILE* const file = fopen(path, "wb");
    if (file == nullptr) return ZylError::ZYL_OPEN_TO_WRITE_FAILED;
    const int code = toXmlFile(file, format, cutVer);
    // What the last write left in the stream's buffer may fail only now.
    if (fclose(file) != 0 && code == ZylError::ZYL_NO_ERROR) return ZylError::ZYL_WRITE_FILE_FAILED;
    return code;
}

int GeneratedObject::toXmlFile(FILE* file, ZylXmlFormat format, unsigned int cutVer) const {
    if (file == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylXmlWriter writer(file, format);
    return writeXml(writer, cutVer);
}

int GeneratedObject::toXmlBuffer(char* buffer, unsigned long size, unsigned long* usedSize, ZylXmlFormat format,
                                 unsigned int cutVer) {
    if (buffer == nullptr) return ZylError::ZYL_PARAMETER_IS_NULL;
    ZylXmlWriter writer(buffer, size, format);
    const int code = writeXml(writer, cutVer);
    if (usedSize != nullptr) *usedSize = writer.buffer().position;
    return code;
}

int GeneratedObject::writeXml(ZylXmlWriter& writer, unsigned int cutVer) const {
    if (writer.state() != ZylError::ZYL_NO_ERROR) return writer.state();
    if (const int code = writer.openComplex(xmlName())) return code;
    if (const int code = writeXmlFields(writer, cutVer)) return code;
    return writer.closeComplex(xmlName());
}

int PackText(ZylWriteBuf& dest, const char* text) {
    const size_t size = strlen(text) + 1;
    if (const int code = dest.writeUInt32(static_cast<unsigned int>(size))) return code;
    return dest.writeBytes(text, size);
}

int UnpackText(ZylReadBuf& src, char* text, size_t size) {
    unsigned int length = 0;
    if (const int code = src.readUInt32(length)) return code;
    if (length > size) return ZylError::ZYL_STRING_TOO_LONG;
    if (length < 1) return ZylError::ZYL_STRING_TOO_SHORT;
    if (const int code = src.readBytes(text, length)) return code;
    const bool isConsistent = memchr(text, '\0', length) == text + length - 1;
    text[length - 1] = '\0';
    return isConsistent ? ZylError::ZYL_NO_ERROR : ZylError::ZYL_STRING_SIZE_CONFLICT;
}

const char* ReadEntry(ZylXmlReader& reader, Quern::ZylName name) {
    const char* text = nullptr;
    if (reader.format() != Quern::ZYL_XML_ATTRIBUTE) {
        text = reader.getEntryValue(name);
    } else if (reader.stepIn(name) == 0) {
        text = reader.getEntryValue("value");
        reader.stepOut(name);
    }
    return text == nullptr ? "" : text;
}

int ReadText(ZylXmlReader& reader, Quern::ZylName name, char* text, size_t size) {
    const char* const value = ReadEntry(reader, name);
    const size_t length = strlen(value);
    if (length >= size) return ZylError::ZYL_STRING_TOO_LONG;
    memcpy(text, value, length + 1);
    return ZylError::ZYL_NO_ERROR;
}

}  // namespace Example
