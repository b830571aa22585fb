// The network checker, driven through its slots by one who knows them, the run-time class and the bytes of the results
// from a second declaration alone.
#include "Product.h"
#include "Support/Test.h"

// In a namespace with a name: of a class that no other unit can know, the compiler sees that nothing implements it.
namespace NetworkCheckerContract {

struct Record;  // opaque

struct Checker {  // no destructor in its table
    virtual void First(const char* host, int id, void (*heard)(Record&), unsigned char seconds,
                       unsigned char count) = 0;
    virtual void Second(const char* host, int id, void (*heard)(Record&), unsigned char hops) = 0;
    virtual void Third(const char* host, int id, void (*heard)(Record&)) = 0;
};

}  // namespace NetworkCheckerContract

namespace {

using NetworkCheckerContract::Checker;
using NetworkCheckerContract::Record;

std::string g_bytes;

void Encode(const char* selector, Record& record) {
    char buffer[4096];
    int size = sizeof buffer;
    void* arguments[] = {&record, buffer, &size};
    const orvane_class* const cls = orvane_class_lookup("OrvaneNetworkChecker");
    if (orvane_class_perform(cls, selector, arguments)) g_bytes.assign(buffer, static_cast<size_t>(size));
    size = static_cast<int>(g_bytes.size());
    EXPECT_EQ(orvane_class_perform(cls, selector, arguments), nullptr) << "one byte more is needed";
}

void RunUntilHeard() {
    g_bytes.clear();
    const orvane_class* const loop = orvane_class_lookup("OrvaneMainRunLoop");
    OrvaneTest::WaitFor([&] { return orvane_class_perform(loop, "runPending", nullptr), !g_bytes.empty(); });
}

std::string Number(int value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

std::string Text(const std::string& text) {
    return Number(static_cast<int>(text.size())) + text;
}

TEST(BinaryContract, TheNetworkCheckerIsCalledByItsSlots) {
    Contract::Load(CORE_LIBRARY);
    const orvane_class* const cls = orvane_class_lookup("OrvaneNetworkChecker");
    auto* const checker = static_cast<Checker*>(orvane_class_perform(cls, "getNativeNetworkChecker", nullptr));
    ASSERT_NE(checker, nullptr);

    checker->Third("127.0.0.1", 9, [](Record& record) { Encode("encodeNSLookupResult:buffer:size:", record); });
    RunUntilHeard();
    EXPECT_EQ(g_bytes, Number(9) + Text("127.0.0.1") + Number(2) + Text("127.0.0.1") + Text("0") + Number(0));

    void* const isIPv6[] = {nullptr};
    const auto refusal = reinterpret_cast<intptr_t>(orvane_class_perform(cls, "checkIcmp:", isIPv6));
    if (refusal != 0) GTEST_SKIP() << "needs ping sockets (net.ipv4.ping_group_range) or CAP_NET_RAW";
    checker->First(
        "127.0.0.1", 7, [](Record& record) { Encode("encodePingResult:buffer:size:", record); }, 2, 3);
    RunUntilHeard();
    ASSERT_EQ(g_bytes.size(), 4u + 4 + 7 * 4);
    EXPECT_EQ(g_bytes.substr(0, 20), Number(7) + Text("") + Number(0) + Number(3) + Number(3));

    checker->Second(
        "127.0.0.1", 8, [](Record& record) { Encode("encodeTraceRouteResult:buffer:size:", record); }, 4);
    RunUntilHeard();
    const std::string head = Number(8) + Text("127.0.0.1") + Number(1) + Number(1) + Text("127.0.0.1") + Text("0");
    EXPECT_EQ(g_bytes, head + Number(0));
}

}  // namespace
