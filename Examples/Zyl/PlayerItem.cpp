#include "PlayerItem.h"

#include <cstring>
#include <utility>

#include "Serializer/ZYL/ZylBufUtil.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylParse.h"

using Quern::ZylBufUtil;
using Quern::ZylError;
using Quern::ZylParse;

namespace Example {
namespace {

int LookUpMacro(const char* name, long long& value, void*) {
    constexpr std::pair<const char*, int> kMacros[] = {{"SWORD", 1}, {"SHIELD", 2}, {"POTION", 3}};
    for (const auto& [macro, number] : kMacros) {
        if (strcmp(macro, name) != 0) continue;
        value = number;
        return ZylError::ZYL_NO_ERROR;
    }
    return ZylError::ZYL_UNDEFINED_MACRO;
}

}  // namespace

// The bytes hold no names: the order of the calls is the format, and must be the same in both.
int PlayerItem::pack(Quern::ZylWriteBuf& dest, unsigned int) {
    if (const int code = dest.writeUInt32(id)) return code;
    if (const int code = dest.writeUInt16(amount)) return code;
    if (const int code = dest.writeUInt8(kind)) return code;
    return PackText(dest, name);
}

int PlayerItem::unpack(Quern::ZylReadBuf& src, unsigned int) {
    if (const int code = src.readUInt32(id)) return code;
    if (const int code = src.readUInt16(amount)) return code;
    if (const int code = src.readUInt8(kind)) return code;
    return UnpackText(src, name, sizeof name);
}

int PlayerItem::visualize(Quern::ZylWriteBuf& dest, int indent, char separator) {
    if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "id", "%u", id)) return code;
    if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "amount", "%u", amount)) return code;
    if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "kind", "%u", kind)) return code;
    return ZylBufUtil::printString(dest, indent, separator, "name", name);
}

int PlayerItem::writeXmlFields(Quern::ZylXmlWriter& writer, unsigned int) const {
    if (const int code = WriteEntry(writer, "id", [&] { return writer.textizeUInt(id, false); })) return code;
    if (const int code = WriteEntry(writer, "amount", [&] { return writer.textizeUInt(amount, false); })) return code;
    if (const int code = WriteEntry(writer, "kind", [&] { return writer.textizeUInt(kind, false); })) return code;
    return WriteEntry(writer, "name", [&] { return writer.textizeStr(name, false); });
}

int PlayerItem::readXmlFields(Quern::ZylXmlReader& reader, unsigned int) {
    if (const int code = ZylParse::parseUInt32(id, ReadEntry(reader, "id"), nullptr, 0)) return code;
    if (const int code = ZylParse::parseUInt16(amount, ReadEntry(reader, "amount"), nullptr, 0)) return code;
    if (const int code = ZylParse::parseUInt8(kind, ReadEntry(reader, "kind"), nullptr, 0, LookUpMacro)) return code;
    return ReadText(reader, "name", name, sizeof name);
}

}  // namespace Example
