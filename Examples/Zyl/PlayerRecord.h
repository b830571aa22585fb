// A player, as a generator would emit it from:
//
//   struct PlayerRecord (baseversion 2, version 3) {
//       uint64 uid; string name<32>; int32 level; date birthday = 1970-01-01; time played;
//       datetime lastLogin = 1970-01-01 00:00:00; ip lastIp;
//       wstring title<16>; int16 itemCount; PlayerItem items[8] (refer itemCount); double rating (since 3);
//   }
#ifndef ORVANE_EXAMPLES_ZYL_PLAYER_RECORD_H
#define ORVANE_EXAMPLES_ZYL_PLAYER_RECORD_H

#include "GeneratedObject.h"
#include "PlayerItem.h"
#include "Serializer/ZYL/ZylTime.h"

namespace Example {

// The two operations of its XML form are in PlayerRecordXml.cpp, all others in PlayerRecord.cpp.
class PlayerRecord : public GeneratedObject {
public:
    static constexpr unsigned int kBaseVersion = 2;
    static constexpr unsigned int kCurrentVersion = 3;
    static constexpr unsigned int kRatingVersion = 3;
    static constexpr int kMaxItems = 8;
    static constexpr unsigned int kMaxTitle = 16;

    unsigned long long uid = 0;
    char name[32] = "";
    int level = 0;
    unsigned int birthday = Quern::ZylDate(1970, 1, 1);
    unsigned int played = 0;  // ZylTime, a span; one beyond what a clock shows can be written as XML, but not read back
    unsigned long long lastLogin = Quern::ZylDateTime(Quern::ZylDate(1970, 1, 1), Quern::ZylTime());
    unsigned int lastIp = 0;  // zyl_ip_t
    unsigned short title[kMaxTitle] = {};
    short itemCount = 0;
    PlayerItem items[kMaxItems];
    double rating = 0;

    using GeneratedObject::pack;
    using GeneratedObject::unpack;
    using GeneratedObject::visualize;
    unsigned int getVersion() override { return kCurrentVersion; }
    unsigned int typeID() override { return 17; }
    const char* typeName() override { return "example.PlayerRecord"; }
    // -9 for a version before the base. The bytes start with the version that they are cut to.
    int pack(Quern::ZylWriteBuf& dest, unsigned int cutVer) override;
    // -20 where the bytes name a version outside base and current; -6 or -7 for an impossible count of items.
    int unpack(Quern::ZylReadBuf& src, unsigned int cutVer) override;
    int visualize(Quern::ZylWriteBuf& dest, int indent, char separator) override;
    int writeXmlFields(Quern::ZylXmlWriter& writer, unsigned int cutVer) const override;
    int readXmlFields(Quern::ZylXmlReader& reader, unsigned int cutVer) override;
    const char* xmlName() const override { return "PlayerRecord"; }

private:
    // 0, or the code for a count that does not fit the array.
    int checkItemCount() const;
};

}  // namespace Example

#endif
