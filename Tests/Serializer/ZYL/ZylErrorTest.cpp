#include "Serializer/ZYL/ZylError.h"

#include <gtest/gtest.h>

#include <climits>

#include "Serializer/ZYL/IZylObject.h"

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
    EXPECT_STREQ(ZylError::getErrorString(-3), "string length surpass defined size");
    EXPECT_STREQ(ZylError::getErrorString(-21), "string-formated value underflow or overflow");
    EXPECT_STREQ(ZylError::getErrorString(-37), "null array shouldn't be packed");
    for (int above : {0, 1, INT_MAX})
        EXPECT_STREQ(ZylError::getErrorString(above), "no error");
    for (int below : {-38, INT_MIN})
        EXPECT_STREQ(ZylError::getErrorString(below), "unknown error");
}

class Plain : public IZylObject {};

TEST(IZylObjectTest, LeavesOutWhatAClassDoesNotImplement) {
    Plain object;
    ZylWriteBuf dest;
    ZylReadBuf src;
    char text[] = "<a/>";
    EXPECT_EQ(object.getVersion(), 1u);
    EXPECT_EQ(object.typeID(), 0u);
    EXPECT_STREQ(object.typeName(), "arbor.IZylObject");
    EXPECT_EQ(object.getLastLostRequiredFields(text, sizeof text), 0);
    const int codes[] = {
        object.pack(dest, 0),
        object.pack(text, sizeof text, nullptr, 0),
        object.unpack(src, 0),
        object.unpack(text, sizeof text, nullptr, 0),
        object.visualize(dest, 0, '\n'),
        object.visualize(text, sizeof text, nullptr, 0, '\n'),
        object.fromXmlFile("a", ZYL_XML_NODE, 0),
        object.fromXmlBuffer(text, 4, ZYL_XML_NODE, 0),
        object.fromXmlString(text, ZYL_XML_NODE, 0),
        object.toXmlFile("a", ZYL_XML_NODE, 0),
        object.toXmlFile(stderr, ZYL_XML_NODE, 0),
        object.toXmlBuffer(text, sizeof text, nullptr, ZYL_XML_NODE, 0),
        object.packTLV(text, sizeof text, nullptr, true),
        object.unpackTLV(text, sizeof text, nullptr),
    };
    for (int code : codes)
        EXPECT_EQ(code, -31);
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
