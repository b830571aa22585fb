#include "PlayerRecord.h"

#include "Serializer/ZYL/ZylBufUtil.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

using Quern::ZylBufUtil;
using Quern::ZylError;
using Quern::ZylTypeUtil;

namespace Example {

int PlayerRecord::checkItemCount() const {
    if (itemCount < 0) return ZylError::ZYL_REFER_IS_MINUS;
    return itemCount > kMaxItems ? ZylError::ZYL_REFER_TOO_BIG : ZylError::ZYL_NO_ERROR;
}

int PlayerRecord::pack(Quern::ZylWriteBuf& dest, unsigned int cutVer) {
    if (cutVer == 0 || cutVer > kCurrentVersion) cutVer = kCurrentVersion;
    if (cutVer < kBaseVersion) return ZylError::ZYL_CUT_VERSION_TOO_SMALL;
    if (const int code = checkItemCount()) return code;
    if (const int code = dest.writeUInt32(cutVer)) return code;
    if (const int code = dest.writeUInt64(uid)) return code;
    if (const int code = PackText(dest, name)) return code;
    if (const int code = dest.writeInt32(level)) return code;
    if (const int code = dest.writeUInt32(birthday)) return code;
    if (const int code = dest.writeUInt32(played)) return code;
    if (const int code = dest.writeUInt64(lastLogin)) return code;
    if (const int code = dest.writeBytes(&lastIp, sizeof lastIp)) return code;  // is in network byte order
    const auto titleSize = static_cast<unsigned char>(ZylTypeUtil::wstrlen(title));
    if (const int code = dest.writeUInt8(titleSize)) return code;
    for (unsigned int i = 0; i < titleSize; ++i) {
        if (const int code = dest.writeUInt16(title[i])) return code;
    }
    if (const int code = dest.writeInt16(itemCount)) return code;
    for (int i = 0; i < itemCount; ++i) {
        if (const int code = items[i].pack(dest, cutVer)) return code;
    }
    return cutVer < kRatingVersion ? ZylError::ZYL_NO_ERROR : dest.writeDouble(rating);
}

int PlayerRecord::unpack(Quern::ZylReadBuf& src, unsigned int cutVer) {
    if (cutVer != 0 && cutVer < kBaseVersion) return ZylError::ZYL_CUT_VERSION_TOO_SMALL;
    unsigned int version = 0;
    if (const int code = src.readUInt32(version)) return code;
    if (version < kBaseVersion || version > kCurrentVersion) return ZylError::ZYL_NET_CUT_VERSION_INVALID;
    if (const int code = src.readUInt64(uid)) return code;
    if (const int code = UnpackText(src, name, sizeof name)) return code;
    if (const int code = src.readInt32(level)) return code;
    if (const int code = src.readUInt32(birthday)) return code;
    if (const int code = src.readUInt32(played)) return code;
    if (const int code = src.readUInt64(lastLogin)) return code;
    if (const int code = src.readBytes(&lastIp, sizeof lastIp)) return code;
    unsigned char titleSize = 0;
    if (const int code = src.readUInt8(titleSize)) return code;
    if (titleSize >= kMaxTitle) return ZylError::ZYL_STRING_TOO_LONG;
    for (unsigned int i = 0; i < titleSize; ++i) {
        if (const int code = src.readUInt16(title[i])) return code;
    }
    title[titleSize] = 0;
    if (const int code = src.readInt16(itemCount)) return code;
    if (const int code = checkItemCount()) {
        itemCount = 0;
        return code;
    }
    for (int i = 0; i < itemCount; ++i) {
        if (const int code = items[i].unpack(src, version)) return code;
    }
    rating = 0;
    return version < kRatingVersion ? ZylError::ZYL_NO_ERROR : src.readDouble(rating);
}

int PlayerRecord::visualize(Quern::ZylWriteBuf& dest, int indent, char separator) {
    if (const int code = checkItemCount()) return code;
    if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "uid", "%llu", uid)) return code;
    if (const int code = ZylBufUtil::printString(dest, indent, separator, "name", name)) return code;
    if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "level", "%d", level)) return code;
    if (const int code = ZylBufUtil::printZylDate(dest, indent, separator, "birthday", birthday)) return code;
    if (const int code = ZylBufUtil::printZylTime(dest, indent, separator, "played", played)) return code;
    if (const int code = ZylBufUtil::printZylDateTime(dest, indent, separator, "lastLogin", lastLogin)) return code;
    if (const int code = ZylBufUtil::printZylIP(dest, indent, separator, "lastIp", lastIp)) return code;
    if (const int code = ZylBufUtil::printWString(dest, indent, separator, "title", title)) return code;
    if (const int code = ZylBufUtil::printArray(dest, indent, separator, "items", itemCount)) return code;
    if (const int code = dest.writeCharWithNull(separator)) return code;
    for (int i = 0; i < itemCount; ++i) {
        const auto index = static_cast<unsigned int>(i);
        if (const int code = ZylBufUtil::printVariable(dest, indent, separator, "items", index, true)) return code;
        if (const int code = items[i].visualize(dest, indent + 1, separator)) return code;
    }
    return ZylBufUtil::printVariable(dest, indent, separator, "rating", "%.17g", rating);
}

}  // namespace Example
