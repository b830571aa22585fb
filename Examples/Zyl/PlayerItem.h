// One thing that a player owns, as a generator would emit it from:
//
//   macro  SWORD = 1, SHIELD = 2, POTION = 3
//   struct PlayerItem { uint32 id; uint16 amount; uint8 kind; string name<24>; }
#ifndef ORVANE_EXAMPLES_ZYL_PLAYER_ITEM_H
#define ORVANE_EXAMPLES_ZYL_PLAYER_ITEM_H

#include "GeneratedObject.h"

namespace Example {

class PlayerItem : public GeneratedObject {
public:
    unsigned int id = 0;
    unsigned short amount = 0;
    unsigned char kind = 0;
    char name[24] = "";

    using GeneratedObject::pack;
    using GeneratedObject::unpack;
    using GeneratedObject::visualize;
    const char* typeName() override { return "example.PlayerItem"; }
    int pack(Quern::ZylWriteBuf& dest, unsigned int cutVer) override;
    int unpack(Quern::ZylReadBuf& src, unsigned int cutVer) override;
    int visualize(Quern::ZylWriteBuf& dest, int indent, char separator) override;
    int writeXmlFields(Quern::ZylXmlWriter& writer, unsigned int cutVer) const override;
    int readXmlFields(Quern::ZylXmlReader& reader, unsigned int cutVer) override;
    const char* xmlName() const override { return "PlayerItem"; }
};

}  // namespace Example

#endif
