#include "Serializer/ZYL/ZylXmlFile.h"

#include "Support/Test.h"

namespace Quern {
namespace {

TEST(ZylXmlFileTest, LoadsTheWholeFile) {
    const OrvaneTest::TemporaryFolder folder;
    for (const std::string& content : {std::string(), std::string("<a/>\n"), std::string("a\0b", 3)}) {
        const std::string path = folder.Write("file", content);
        ZylXmlFile file;
        EXPECT_EQ(file.load(path.c_str()), 0);
        EXPECT_EQ(file.state, 0);
        EXPECT_EQ(std::string(file.buffer, content.size() + 1), content + '\0');
        EXPECT_DEATH(file.load(path.c_str()), "Assertion failed") << "loads once";
    }
}

TEST(ZylXmlFileTest, SaysWhatFailed) {
    ZylXmlFile missing;
    EXPECT_EQ(missing.load("/nonexistent/file.xml"), -22);
    EXPECT_EQ(missing.state, -22);
    EXPECT_DEATH(missing.load("/dev/null"), "Assertion failed") << "a failed load is not fresh either";
    EXPECT_DEATH(ZylXmlFile().load(nullptr), "NULL != path");

    const OrvaneTest::TemporaryFolder folder;
    const std::string path = folder / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int held = open(path.c_str(), O_RDWR);  // or the load would wait for a writer
    EXPECT_EQ(ZylXmlFile().load(path.c_str()), -24) << "cannot be measured";
    close(held);
    const char* const kAttribute = "/sys/devices/system/cpu/online";  // claims a page, gives a line
    ZylXmlFile shorter;
    EXPECT_TRUE(access(kAttribute, R_OK) != 0 || shorter.load(kAttribute) == -24);
    EXPECT_EQ(shorter.buffer, nullptr);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // whose allocators end the process instead
    EXPECT_EQ(ZylXmlFile().load("/"), -26) << "a directory claims the largest size of all";
#endif
}

}  // namespace
}  // namespace Quern
