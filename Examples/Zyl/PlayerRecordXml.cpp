#include "PlayerRecord.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylParse.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

using Quern::ZylError;
using Quern::ZylParse;
using Quern::ZylTypeUtil;

namespace Example {
namespace {

// A wide text is the list of its units.
int WriteTitle(Quern::ZylXmlWriter& writer, const unsigned short* title) {
    return WriteEntry(writer, "title", [&]() -> int {
        for (; *title != 0; ++title) {
            if (const int code = writer.textizeUInt(*title, true)) return code;
        }
        return ZylError::ZYL_NO_ERROR;
    });
}

// The default of the schema. A date of all zeros would do in the binary form, but no text can be read as one.
constexpr char kDefaultDate[] = "1970-01-01";

int ReadDateTime(unsigned long long& dateTime, const char* text) {
    return ZylTypeUtil::str2ZylDateTime(dateTime, *text != '\0' ? text : "1970-01-01 00:00:00");
}

}  // namespace

int PlayerRecord::writeXmlFields(Quern::ZylXmlWriter& writer, unsigned int cutVer) const {
    if (cutVer != 0 && cutVer < kBaseVersion) return ZylError::ZYL_CUT_VERSION_TOO_SMALL;
    if (const int code = checkItemCount()) return code;
    if (const int code = WriteEntry(writer, "uid", [&] { return writer.textizeUInt(uid, false); })) return code;
    if (const int code = WriteEntry(writer, "name", [&] { return writer.textizeStr(name, false); })) return code;
    if (const int code = WriteEntry(writer, "level", [&] { return writer.textizeInt(level, false); })) return code;
    if (const int code = WriteEntry(writer, "birthday", [&] { return writer.textizeDate(birthday, false); }))
        return code;
    if (const int code = WriteEntry(writer, "played", [&] { return writer.textizeTime(played, false); })) return code;
    if (const int code = WriteEntry(writer, "lastLogin", [&] { return writer.textizeDateTime(lastLogin, false); }))
        return code;
    if (const int code = WriteEntry(writer, "lastIp", [&] { return writer.textizeIP(lastIp, false); })) return code;
    if (const int code = WriteTitle(writer, title)) return code;
    for (int i = 0; i < itemCount; ++i) {
        if (const int code = writer.openComplex("items")) return code;
        if (const int code = items[i].writeXmlFields(writer, cutVer)) return code;
        if (const int code = writer.closeComplex("items")) return code;
    }
    if (cutVer != 0 && cutVer < kRatingVersion) return ZylError::ZYL_NO_ERROR;
    return WriteEntry(writer, "rating", [&] { return writer.textizeDouble(rating, false); });
}

int PlayerRecord::readXmlFields(Quern::ZylXmlReader& reader, unsigned int) {
    if (const int code = ZylParse::parseUInt64(uid, ReadEntry(reader, "uid"), nullptr, 0)) return code;
    if (const int code = ReadText(reader, "name", name, sizeof name)) return code;
    if (const int code = ZylParse::parseInt32(level, ReadEntry(reader, "level"), nullptr, 0)) return code;
    if (const int code = ZylParse::parseDate(birthday, ReadEntry(reader, "birthday"), nullptr, kDefaultDate))
        return code;
    if (const int code = ZylParse::parseTime(played, ReadEntry(reader, "played"), nullptr, nullptr)) return code;
    if (const int code = ReadDateTime(lastLogin, ReadEntry(reader, "lastLogin"))) return code;
    if (const int code = ZylParse::parseIP(lastIp, ReadEntry(reader, "lastIp"), nullptr, nullptr)) return code;
    // The missing places become the terminator.
    if (const int code = ZylParse::parseUInt16(title, kMaxTitle - 1, ReadEntry(reader, "title"), nullptr, 0))
        return code;
    title[kMaxTitle - 1] = 0;
    for (itemCount = 0; reader.stepIn("items") == 0; ++itemCount) {
        if (itemCount == kMaxItems) return ZylError::ZYL_REFER_TOO_BIG;
        if (const int code = items[itemCount].readXmlFields(reader, 0)) return code;
        reader.stepOut("items");
    }
    return ZylParse::parseDouble(rating, ReadEntry(reader, "rating"), nullptr, 0);
}

}  // namespace Example
