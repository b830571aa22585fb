#include "SampleRecord.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Serializer/ZYL/ZylTypeUtil.h"

using Quern::ZylDate;
using Quern::ZylDateTime;
using Quern::ZylTime;

Example::PlayerRecord SampleRecord() {
    Example::PlayerRecord record;
    record.uid = 76561198000000001ULL;
    strcpy(record.name, "Fen & Moor <of the marsh>");
    record.level = -42;
    record.birthday = ZylDate(1999, 12, 31);
    record.played = ZylTime(17, 5, 9);
    record.lastLogin = ZylDateTime(ZylDate(2024, 3, 5), ZylTime(20, 15, 0));
    Quern::ZylTypeUtil::str2ZylIP(record.lastIp, "192.168.100.217");
    for (unsigned short i = 0; i < 10; ++i)
        record.title[i] = static_cast<unsigned short>(0x6F00 + 7 * i);
    record.itemCount = 4;
    for (int i = 0; i < record.itemCount; ++i) {
        Example::PlayerItem& item = record.items[i];
        item.id = 1000000u + 77u * static_cast<unsigned>(i);
        item.amount = static_cast<unsigned short>(1 + 100 * i);
        item.kind = static_cast<unsigned char>(1 + i % 3);
        snprintf(item.name, sizeof item.name, "Blade of the marsh %d", i);
    }
    record.rating = 1520.25;
    return record;
}

std::string SampleText(Quern::ZylXmlFormat format) {
    char text[8192];
    unsigned long size = 0;
    if (SampleRecord().toXmlBuffer(text, sizeof text, &size, format, 0) != 0) abort();
    return {text, size};
}
