#include "Serializer/ZYL/ZylError.h"

#include "Serializer/ZYL/IZylObject.h"
#include "Support/Test.h"

namespace Quern {
namespace {

// The texts are an interface, misspellings and all: a digest over them sees any slip in the table.
TEST(ZylErrorTest, EveryCodeHasItsText) {
    unsigned digest = 2166136261u;  // FNV-1a
    for (int code = 0; code >= -37; --code) {
        for (const char* text = ZylError::getErrorString(code); *text != '\0'; ++text)
            digest = (digest ^ static_cast<unsigned char>(*text)) * 16777619u;
        digest = (digest ^ '\n') * 16777619u;
    }
    EXPECT_EQ(digest, 0x293D220Du);
    for (int above : {0, 1, INT_MAX})
        EXPECT_STREQ(ZylError::getErrorString(above), "no error");
    for (int below : {-38, INT_MIN})
        EXPECT_STREQ(ZylError::getErrorString(below), "unknown error");
}

class Plain : public IZylObject {};

TEST(IZylObjectTest, LeavesOutWhatAClassDoesNotImplement) {
    Plain object;
    char text[] = "<a/>";
    EXPECT_EQ(object.getVersion(), 1u);
    EXPECT_STREQ(object.typeName(), "arbor.IZylObject");
    EXPECT_EQ(object.pack(text, sizeof text, nullptr, 0), -31);
    EXPECT_EQ(object.fromXmlBuffer(text, 4, ZYL_XML_NODE, 0), -31);
    EXPECT_EQ(object.unpackTLV(text, sizeof text, nullptr), -31);
}

// The slot of a virtual operation, as this ABI writes it into a pointer to member: its offset in the table, plus one.
template <typename Member>
size_t SlotOf(Member member) {
    size_t words[2];
    static_assert(sizeof words == sizeof member);
    memcpy(words, &member, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

TEST(IZylObjectTest, SlotsStandInTheirOrderBehindTheDestructor) {
    using O = IZylObject;
    const size_t slots[] = {
        SlotOf(&O::getVersion),
        SlotOf(&O::typeID),
        SlotOf(&O::typeName),
        SlotOf<int (O::*)(ZylWriteBuf&, unsigned)>(&O::pack),
        SlotOf<int (O::*)(char*, unsigned long, unsigned long*, unsigned)>(&O::pack),
        SlotOf<int (O::*)(ZylReadBuf&, unsigned)>(&O::unpack),
        SlotOf<int (O::*)(const char*, unsigned long, unsigned long*, unsigned)>(&O::unpack),
        SlotOf<int (O::*)(ZylWriteBuf&, int, char)>(&O::visualize),
        SlotOf<int (O::*)(char*, unsigned long, unsigned long*, int, char)>(&O::visualize),
        SlotOf(&O::fromXmlFile),
        SlotOf(&O::fromXmlBuffer),
        SlotOf(&O::fromXmlString),
        SlotOf<int (O::*)(const char*, ZylXmlFormat, unsigned) const>(&O::toXmlFile),
        SlotOf<int (O::*)(FILE*, ZylXmlFormat, unsigned) const>(&O::toXmlFile),
        SlotOf(&O::toXmlBuffer),
        SlotOf(&O::packTLV),
        SlotOf(&O::unpackTLV),
        SlotOf(&O::getLastLostRequiredFields),
    };
    constexpr size_t kBehindDestructor = 2;  // its two entries
    for (size_t i = 0; i < std::size(slots); ++i)
        EXPECT_EQ(slots[i], kBehindDestructor + i);
}

}  // namespace
}  // namespace Quern
