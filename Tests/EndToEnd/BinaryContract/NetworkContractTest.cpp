// Calls every slot of the network, from declarations that share nothing with the product, on a cable that is plugged in
// and pulled out.
#include "NetworkContract.h"
#include "Product.h"
#include "Support/NetworkNamespace.h"
#include "Support/Test.h"

namespace {

std::string g_told;

struct Listener final : Contract::NetworkListener {
    ~Listener() override { g_told += "gone"; }
    void Changed(int state) override { g_told += "listener" + std::to_string(state) + " "; }
};

std::string Await(const std::string& wanted) {
    OrvaneTest::WaitFor([&] {
        orvane_class_perform(orvane_class_lookup("OrvaneMainRunLoop"), "runPending", nullptr);
        return g_told.size() >= wanted.size();
    });
    return std::exchange(g_told, {});
}

std::string EncodedBy(const Contract::Record& record) {
    char bytes[200];
    int size = sizeof bytes;
    return record.Encode(bytes, size) ? std::string(bytes, static_cast<size_t>(size)) : "not encoded";
}

TEST(BinaryContract, TheNetworkIsCalledByItsSlots) {
    if (!OrvaneTest::EnterOwnNetwork()) GTEST_SKIP() << "needs the right to make network namespaces";
    void* const core = Contract::Load(CORE_LIBRARY);
    auto* const network = Contract::Get<Contract::Network>("OrvaneNetwork", "getNativeNetwork");
    ASSERT_TRUE(network);
    EXPECT_EQ(network->State(), 0);
    Listener listener;
    network->Add(&listener);
    network->Callback([](int state) { g_told += "callback" + std::to_string(state) + " "; });
    ASSERT_TRUE(OrvaneTest::RunIp(OrvaneTest::Cable("eth0", 1) + OrvaneTest::DefaultRoute("eth0", 1, 9)));
    EXPECT_EQ(Await("listener2 callback2 "), "listener2 callback2 ");
    EXPECT_EQ(network->State(), 2);
    network->Remove(&listener);
    ASSERT_TRUE(OrvaneTest::RunIp("link set eth0far down\n"));
    EXPECT_EQ(Await("callback0 "), "callback0 ");

    // The record, made by the library in our room and destroyed by its own slot; its texts serve the exported
    // functions.
    Contract::DetailRoom room = network->Detail();
    EXPECT_EQ(EncodedBy(*room.get()), std::string(24, '\0'));
    const std::string bytes("\0\0\0\5\0\0\0\1\0\0\0\1c\0\0\0\1s\0\0\0\1b\0\0\0\0", 27);
    EXPECT_TRUE(room.get()->Decode(bytes.data(), 27));
    Contract::Record* const copy = room.get()->Clone();
    const auto parse = Contract::Symbol<bool (*)(const char*, void*, void*, unsigned short&)>(
        core, "_Z8ParseURIPKcRN5Quern7AStringES3_Rt");
    const auto convert = Contract::Symbol<bool (*)(const char*, void*)>(core, "_Z14ConvertIpV4To6PKcRN5Quern7AStringE");
    ASSERT_TRUE(parse && convert);
    unsigned short port = 0;
    EXPECT_TRUE(parse("ws://h:7", room.Text(0), room.Text(1), port));
    EXPECT_EQ(port, 7);
    EXPECT_TRUE(convert("9", room.Text(2)));
    EXPECT_EQ(EncodedBy(*room.get()), std::string("\0\0\0\5\0\0\0\1\0\0\0\2ws\0\0\0\1h\0\0\0\x0a"
                                                  "64::ff9b:9\0\0\0\0",
                                                  37));
    EXPECT_EQ(EncodedBy(*copy), bytes);
    EXPECT_TRUE(copy->IsEqual(copy) && !copy->IsEqual(room.get()));
    EXPECT_TRUE(room.get()->EncodeText(room.Text(0)) && copy->DecodeText(room.Text(0)));
    EXPECT_EQ(EncodedBy(*copy).substr(8), std::string("\0\0\0\2ws\0\0\0\1h\0\0\0\x0a"
                                                      "64::ff9b:9\0\0\0\0",
                                                      29));
    delete copy;
}

}  // namespace
