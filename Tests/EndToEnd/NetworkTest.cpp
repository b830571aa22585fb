// The host on links that really come and go: what a game sees of its network, and of its way through the background.

#include "Support/Container.h"
#include "Support/NetworkNamespace.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;

TEST(NetworkTest, AGameHearsOfItsNetwork) {
    if (!EnterOwnNetwork()) GTEST_SKIP() << "needs the right to make network namespaces";
    const Container container;
    Process host(container.Host({}));
    host.Send("launch\nnetwork\n");
    ASSERT_TRUE(host.WaitForError("network 0, detail 0, carrier 0 '', wifi '' at ''")) << host.Error();
    ASSERT_TRUE(RunIp(Cable("wlan0", 1) + DefaultRoute("wlan0", 1, 100)));
    ASSERT_TRUE(host.WaitForError("network changed to 2")) << host.Error();
    ASSERT_TRUE(RunIp(Cable("wwan0", 2) + DefaultRoute("wwan0", 2, 50)));
    ASSERT_TRUE(host.WaitForError("network changed to 1")) << host.Error();
    host.Send("network\nmodem LTE 460 00\nnetwork\nmodem GPRS\n");
    ASSERT_TRUE(host.WaitForError("network 1, detail 4, carrier 0 ''")) << host.Error();
    ASSERT_TRUE(host.WaitForError("network 1, detail 7, carrier 2 '46000'")) << host.Error();
    ASSERT_TRUE(host.WaitForError("no such modem: GPRS")) << host.Error();
    host.Send("background\nforeground\ndestroy\nmodem NR 460 01\nnetwork\n");
    ASSERT_TRUE(host.WaitForError("network 1, detail 8, carrier 3 '46001'")) << host.Error();
    ASSERT_TRUE(RunIp("link delete wwan0\nlink delete wlan0\n"));
    EXPECT_TRUE(WaitFor([&] {
        const std::string said = host.Error();
        return said.rfind("network changed to 0") > said.find("network changed to 1");
    })) << "the network was made anew, and its observer hears: "
        << host.Error();
    host.Send("release\nnetwork\nquit\n");
    EXPECT_EQ(host.Wait().status, 1) << "for the modem without a carrier: " << host.Error();
    EXPECT_TRUE(host.Error().find("network changed to 0") < host.Error().find("network changed to 1"));
}

}  // namespace
}  // namespace EndToEnd
