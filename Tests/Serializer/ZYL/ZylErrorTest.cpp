#include "Serializer/ZYL/ZylError.h"

#include <gtest/gtest.h>

#include <climits>

#include "Serializer/ZYL/IZylObject.h"

namespace Quern {
namespace {

// The texts are an interface: they stand here a second time, so that no slip in the table goes unseen.
TEST(ZylErrorTest, EveryCodeHasItsText) {
    const char* const texts[] = {
        "no error",
        "available free space in buffer is not enough",
        "available data in buffer is not enough",
        "string length surpass defined size",
        "string length smaller than min string length",
        "string sizeinfo inconsistent with real length",
        "reffer value can not be minus",
        "reffer value bigger than count or size",
        "pointer-type argument is NULL",
        "cut-version is smaller than base-version",
        "cut-version not covers entry refered by versionindicator",
        "inet_ntoa failed when parse zyl_ip_t",
        "value variable of zyl_ip_t is invalid",
        "value variable of zyl_time_t is invalid",
        "value variable of zyl_date_t is invalid",
        "value variable of zyl_datetime_t is invalid",
        "function 'localtime' or 'localtime_r' failed",
        "invalid hex-string length, must be an even number",
        "invalid hex-string format, each character must be a hex-digit",
        "NULL pointer as parameter",
        "cutVer from net-msg not in [BASEVERSION, CURRVERSION]",
        "string-formated value underflow or overflow",
        "failed to open file with read-mode",
        "failed to open file with write-mode",
        "failed to read data from file",
        "failed to write data into file",
        "failed to allocate heap memory",
        "failed to parse XML-formated data",
        "XML root-node is NOT what expected",
        "failed to parse integer or float from string",
        "specified macro name has NOT been defined",
        "function has NOT been implemented by derived class",
        "bad tlv encode magic",
        "invalid selector",
        "unmatched length",
        "unknown type id",
        "at least 1 required field been lost",
        "null array shouldn't be packed",
    };
    ASSERT_EQ(std::size(texts), 38u);
    for (int i = 0; i < 38; ++i)
        EXPECT_STREQ(ZylError::getErrorString(-i), texts[i]) << -i;
    EXPECT_EQ(ZylError::ZYL_NO_ERROR, 0);
    EXPECT_STREQ(ZylError::getErrorString(1), "no error");
    EXPECT_STREQ(ZylError::getErrorString(INT_MAX), "no error");
    EXPECT_STREQ(ZylError::getErrorString(-38), "unknown error");
    EXPECT_STREQ(ZylError::getErrorString(INT_MIN), "unknown error");
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
    for (int code : {
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
         }) {
        EXPECT_EQ(code, -31);
    }
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
