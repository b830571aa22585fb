// Prints a player record in every form that its class has.
#include <cstdio>
#include <cstring>

#include "PlayerRecord.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace {

Example::PlayerRecord MakePlayer() {
    Example::PlayerRecord player;
    player.uid = 76561198000000001ULL;
    strcpy(player.name, "Fen & Moor");
    player.level = 42;
    player.birthday = Quern::ZylDate(1999, 12, 31);
    player.played = Quern::ZylTime(17, 5, 9);
    player.lastLogin = Quern::ZylDateTime(Quern::ZylDate(2024, 3, 5), Quern::ZylTime(20, 15, 0));
    Quern::ZylTypeUtil::str2ZylIP(player.lastIp, "192.0.2.17");
    player.title[0] = 0x6F22;
    player.itemCount = 2;
    player.items[0].id = 1001;
    player.items[0].amount = 1;
    player.items[0].kind = 1;
    strcpy(player.items[0].name, "Ash blade");
    player.items[1].id = 2002;
    player.items[1].amount = 12;
    player.items[1].kind = 3;
    strcpy(player.items[1].name, "<Tonic>");
    player.rating = 1520.25;
    return player;
}

int Show(const char* title, const char* text, int code) {
    printf("%s: %s\n%s\n", title, Quern::ZylError::getErrorString(code), code == 0 ? text : "");
    return code;
}

}  // namespace

int main() {
    Example::PlayerRecord player = MakePlayer();
    char text[4096];
    char packed[1024];
    unsigned long size = 0;
    int failed = 0;

    int code = player.pack(packed, sizeof packed, &size, 0);
    if (code == 0) code = Quern::ZylReadBuf(packed, size).toHexStr(text, sizeof text, nullptr);
    failed |= Show("binary", text, code);
    code = player.toXmlBuffer(text, sizeof text, nullptr, Quern::ZYL_XML_NODE, 0);
    failed |= Show("XML, node form", text, code);
    code = player.toXmlBuffer(text, sizeof text, nullptr, Quern::ZYL_XML_ATTRIBUTE, 0);
    failed |= Show("XML, attribute form", text, code);
    code = player.visualize(text, sizeof text, nullptr, 0, '\n');
    failed |= Show("visualize", text, code);
    return failed == 0 ? 0 : 1;
}
