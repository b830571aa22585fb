#include "Serializer/ZYL/IZylObject.h"

#include "Serializer/ZYL/ZylError.h"

// Here and not in the header, so that the table of the virtual operations is made in this file, and not in every one
// that includes the header.
namespace Quern {
namespace {

constexpr int kLeftOut = ZylError::ZYL_NOT_IMPLEMENTED;

}  // namespace

unsigned int IZylObject::getVersion() {
    return 1;
}
unsigned int IZylObject::typeID() {
    return 0;
}
const char* IZylObject::typeName() {
    return "arbor.IZylObject";
}

int IZylObject::pack(ZylWriteBuf&, unsigned int) {
    return kLeftOut;
}
int IZylObject::pack(char*, unsigned long, unsigned long*, unsigned int) {
    return kLeftOut;
}
int IZylObject::unpack(ZylReadBuf&, unsigned int) {
    return kLeftOut;
}
int IZylObject::unpack(const char*, unsigned long, unsigned long*, unsigned int) {
    return kLeftOut;
}
int IZylObject::visualize(ZylWriteBuf&, int, char) {
    return kLeftOut;
}
int IZylObject::visualize(char*, unsigned long, unsigned long*, int, char) {
    return kLeftOut;
}
int IZylObject::fromXmlFile(const char*, ZylXmlFormat, unsigned int) {
    return kLeftOut;
}
int IZylObject::fromXmlBuffer(const char*, unsigned long, ZylXmlFormat, unsigned int) {
    return kLeftOut;
}
int IZylObject::fromXmlString(char*, ZylXmlFormat, unsigned int) {
    return kLeftOut;
}
int IZylObject::toXmlFile(const char*, ZylXmlFormat, unsigned int) const {
    return kLeftOut;
}
int IZylObject::toXmlFile(FILE*, ZylXmlFormat, unsigned int) const {
    return kLeftOut;
}
int IZylObject::toXmlBuffer(char*, unsigned long, unsigned long*, ZylXmlFormat, unsigned int) {
    return kLeftOut;
}
int IZylObject::packTLV(char*, unsigned long, unsigned long*, bool) const {
    return kLeftOut;
}
int IZylObject::unpackTLV(const char*, unsigned long, unsigned long*) {
    return kLeftOut;
}
int IZylObject::getLastLostRequiredFields(char*, unsigned long) const {
    return 0;
}

}  // namespace Quern
