// A game that traces over two runs, with the server on the desk in its strict mode: the ids that the first run asks for
// serve the second.

#include "Support/Container.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

TEST(TraceTest, TheIdsOfARefillServeTheNextRun) {
    const Container container;
    Process server({{ORVANE_DEVSERVER_PROGRAM, "--strict", "--port", "0", container.Outside() / "served"}, {}, ""});
    ASSERT_TRUE(OrvaneTest::WaitFor([&] { return server.Output().ends_with('\n'); }));
    const std::string address = server.Output().substr(6, server.Output().size() - 7);
    WriteFile(container.Outside() / "Info.plist",
              "<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key><string>30045</string></dict>"
              "<key>OrvaneCore</key><dict><key>YarrowEnable</key><string>true</string>"
              "<key>YarrowUrl</key><string>" +
                  address + "/traceids</string></dict></dict></plist>\n");
    for (const char* wanted : {"in trace [^\n]{31}2\n", "in trace [^\n]{31}[^2\n]\n"}) {
        Process host(container.Host({"--plugins", ORVANE_PLUGIN_FOLDER, "--info-plist", "Info.plist"}));
        host.Send("span Early\nlaunch\nspan Login attempt=2 none\n");
        ASSERT_TRUE(host.WaitForError("in trace ")) << host.Error();
        ASSERT_TRUE(server.WaitForError("traceids #1: 200, will add 30 ids to its stock")) << server.Error();
        ASSERT_TRUE(OrvaneTest::WaitFor([&] { return ReadFile(container.Caches() / "traceids.store").size() > 4; }));
        host.Send("quit\n");
        EXPECT_EQ(host.Wait().status, 1) << "for the word that is no tag";
        EXPECT_THAT(host.Error(), ContainsRegex(wanted));
        EXPECT_THAT(
            host.Error(),
            ContainsRegex(
                "no tracing\n(.*\n)*.*no tag, KEY=VALUE: none.*line 3: the span was not traced as told: Login"));
    }
    EXPECT_EQ(server.Error().find("breaks the protocol"), std::string::npos) << server.Error();
    EXPECT_EQ(server.Error().find("traceids #2"), std::string::npos) << "29 are left";
    EXPECT_THAT(
        ReadFile(container.EventsFile()),
        ContainsRegex("YarrowClient.*\"Login\".*\"tags\",\"text\":\"\\{\\\\\"attempt\\\\\":\\\\\"2\\\\\"\\}\""));
}

}  // namespace
}  // namespace EndToEnd
