// What generated classes implement.
#ifndef ORVANE_SERIALIZER_ZYL_I_ZYL_OBJECT_H
#define ORVANE_SERIALIZER_ZYL_I_ZYL_OBJECT_H

#include <cstdio>

#include "Serializer/ZYL/ZylBuf.h"
#include "Serializer/ZYL/ZylXmlFormat.h"

namespace Quern {

// The order of the virtual operations is a binary contract with generated code. A class may implement a part of them:
// what it leaves out returns -31. The results are codes of ZylError, 0 for success, unless stated otherwise. Pointers
// to a used size may be null.
class IZylObject {
public:
    virtual ~IZylObject() = default;

    // 1 unless overridden.
    virtual unsigned int getVersion();
    // 0 unless overridden.
    virtual unsigned int typeID();
    // "arbor.IZylObject" unless overridden. Static storage.
    virtual const char* typeName();

    // Binary form, cut down to what version `cutVer` knows; 0 stands for the current version.
    virtual int pack(ZylWriteBuf& dest, unsigned int cutVer);
    virtual int pack(char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer);
    virtual int unpack(ZylReadBuf& src, unsigned int cutVer);
    virtual int unpack(const char* buffer, unsigned long size, unsigned long* usedSize, unsigned int cutVer);

    // A dump for people, `indent` levels deep, each line ended by `separator`.
    virtual int visualize(ZylWriteBuf& dest, int indent, char separator);
    virtual int visualize(char* buffer, unsigned long size, unsigned long* usedSize, int indent, char separator);

    // XML form. fromXmlString parses in place: it changes the text, which must end in a zero.
    virtual int fromXmlFile(const char* path, ZylXmlFormat format, unsigned int cutVer);
    virtual int fromXmlBuffer(const char* buffer, unsigned long size, ZylXmlFormat format, unsigned int cutVer);
    virtual int fromXmlString(char* text, ZylXmlFormat format, unsigned int cutVer);
    virtual int toXmlFile(const char* path, ZylXmlFormat format, unsigned int cutVer) const;
    virtual int toXmlFile(FILE* file, ZylXmlFormat format, unsigned int cutVer) const;
    virtual int toXmlBuffer(char* buffer, unsigned long size, unsigned long* usedSize, ZylXmlFormat format,
                            unsigned int cutVer);

    // Tagged form: defined by the generated classes alone.
    virtual int packTLV(char* buffer, unsigned long size, unsigned long* usedSize, bool useVarInt) const;
    virtual int unpackTLV(const char* buffer, unsigned long size, unsigned long* usedSize);
    // Names the required fields that the last unpackTLV has missed. 0 unless overridden.
    virtual int getLastLostRequiredFields(char* buffer, unsigned long size) const;
};

}  // namespace Quern

#endif
