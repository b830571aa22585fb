#include "Base/Bridge/CPlatformObjectClass.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"
#include "Support/Test.h"

namespace {

using Quern::CPlatformObject;
using Quern::IPlatformObject;
using Quern::IPlatformObjectManager;

// The names and ids of the destroyed, in order.
std::vector<std::string> g_destroyed;
// What a dying half does besides.
std::function<void(CPlatformObject&)> g_lastWords;

class Half : public CPlatformObject {
public:
    ~Half() override {
        g_destroyed.push_back(std::string(GetObjectName() ? GetObjectName() : "") + std::to_string(GetObjectId()));
        if (g_lastWords) g_lastWords(*this);
    }
};

template <typename Made>
class Factory : public IPlatformObjectFactory {
public:
    IPlatformObject* Create() override { return last = new Made; }
    IPlatformObject* last = nullptr;
};

class NoFactory : public IPlatformObjectFactory {
public:
    IPlatformObject* Create() override { return nullptr; }
};

Factory<Half> g_halves;

void Register(std::initializer_list<const char*> names) {
    for (const char* name : names)
        ASSERT_TRUE(gs_OrvaneRegisterPlatformClass(name, &g_halves));
}

// Which of the managers hold the id: "P", "Q" (requests), "R" (responses).
std::string Holders(uint64_t id) {
    std::string holders;
    if (IPlatformObjectManager::GetInstance()->GetPlatformObject(id)) holders += 'P';
    if (IPlatformObjectManager::GetReqInstance()->GetPlatformObject(id)) holders += 'Q';
    if (IPlatformObjectManager::GetRespInstance()->GetPlatformObject(id)) holders += 'R';
    return holders;
}

TEST(PlatformObject, HasAHalfForEachRegisteredName) {
    Register({"Plain", "Both.REQ", "Both.RESP", "Answers.RESP", "All", "All.REQ", "All.RESP"});
    const uint64_t high = ~0ull;
    EXPECT_FALSE(CreatePlatformObject(nullptr, 1));
    EXPECT_FALSE(CreatePlatformObject("", 1));
    EXPECT_FALSE(CreatePlatformObject("Unknown", 1));
    EXPECT_EQ(Holders(1), "");
    EXPECT_FALSE(CreatePlatformObject("Plain", 1)) << "the plain half does not count";
    EXPECT_EQ(Holders(1), "P");
    EXPECT_TRUE(addPlatformObject(2, "Both"));
    EXPECT_EQ(Holders(2), "QR");
    EXPECT_TRUE(CreatePlatformObject("Answers", 3));
    EXPECT_EQ(Holders(3), "R");
    EXPECT_TRUE(CreatePlatformObject("All", high));
    EXPECT_EQ(Holders(high), "PQR");
    CPlatformObject* const request = IPlatformObjectManager::GetReqInstance()->GetPlatformObject(high);
    EXPECT_EQ(request->GetObjectId(), high);
    EXPECT_STREQ(request->GetObjectName(), "All.REQ");
    EXPECT_EQ(gs_GetOrvanePlatformBridge()->GetReqManager()->GetPlatformObject(high), request);
    EXPECT_EQ(quern_arbor_object_get_len(high), 0);
    EXPECT_EQ(quern_arbor_object_read_buffer(high, nullptr, 5), 0);

    removePlatformObject(99);
    removePlatformObject(high);
    EXPECT_EQ(Holders(high), "P") << "the plain half stays";
    const std::string id = std::to_string(high);
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"All.REQ" + id, "All.RESP" + id}));
    g_destroyed.clear();
    IPlatformObjectManager::DestroyAll();
    EXPECT_EQ(g_destroyed,
              (std::vector<std::string>{"Plain1", "All" + id, "Both.REQ2", "Both.RESP2", "Answers.RESP3"}));
    EXPECT_TRUE(CreatePlatformObject("Both", 4)) << "names outlive the take-down";
    removePlatformObject(4);
}

TEST(PlatformObject, IsMadeByWhatItsNameWasLastRegisteredFor) {
    CPlatformObjectClass& classes = *CPlatformObjectClass::GetInstance();
    NoFactory none;
    EXPECT_EQ(classes.Instance(nullptr), nullptr);
    EXPECT_EQ(classes.Instance(nullptr, "X"), nullptr);
    EXPECT_EQ(classes.Instance("X"), nullptr);
    classes.RegisterClassG("X", &none);
    classes.RegisterClassG(nullptr, &g_halves);
    EXPECT_EQ(classes.Instance("X"), nullptr);
    classes.RegisterClassG("X", &g_halves);
    classes.RegisterClassG("X", nullptr);
    const std::unique_ptr<IPlatformObject> made(classes.Instance("X", nullptr));
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->GetObjectName(), "X");
    made->SetObjectName(nullptr);
    EXPECT_STREQ(made->GetObjectName(), "X");

    IPlatformObject plain;  // no CPlatformObject
    Half fixed;
    classes.RegisterInstance("X", &plain);
    classes.RegisterInstance("X.RESP", &fixed);
    classes.RegisterInstance("X", nullptr);
    EXPECT_EQ(classes.Instance("X"), &plain) << "an instance goes before a factory";
    EXPECT_EQ(classes.Instance("X", ".RESP"), &fixed);
    EXPECT_EQ(fixed.GetObjectName(), nullptr);

    Factory<IPlatformObject> foreign;
    classes.RegisterClassG("X.REQ", &foreign);
    classes.RegisterInstance("X.RESP", &plain);
    EXPECT_FALSE(CreatePlatformObject("X", 5));
    EXPECT_EQ(Holders(5), "");
    EXPECT_EQ(plain.GetObjectId(), 0u);
    delete foreign.last;
}

TEST(PlatformObject, IsForgottenNotDeletedWhenItsIdIsTaken) {
    Register({"X.REQ"});
    CreatePlatformObject("X", 1);
    const std::unique_ptr<CPlatformObject> first(IPlatformObjectManager::GetReqInstance()->GetPlatformObject(1));
    CreatePlatformObject("X", 1);
    EXPECT_NE(IPlatformObjectManager::GetReqInstance()->GetPlatformObject(1), first.get());
    IPlatformObjectManager::GetReqInstance()->AddObject(1, nullptr);
    EXPECT_EQ(Holders(1), "Q");
    EXPECT_TRUE(g_destroyed.empty());
    IPlatformObjectManager::DestroyAll();
    EXPECT_EQ(g_destroyed.size(), 1u);
}

std::vector<uint64_t> g_senders;

TEST(PlatformObject, MaySendLookUpAndRemoveWhileItDies) {
    Register({"X.REQ"});
    setArborSendVoidMethodCallback([](uint64_t id, int) { g_senders.push_back(id); });
    for (uint64_t id : {3, 1, 2, 4})
        CreatePlatformObject("X", id);
    g_lastWords = [](CPlatformObject& half) {
        half.SendUnityMethod(0);
        EXPECT_EQ(Holders(half.GetObjectId()), "");
        removePlatformObject(half.GetObjectId());
        if (half.GetObjectId() == 2) removePlatformObject(3);
    };
    IPlatformObjectManager::DestroyAll();
    g_lastWords = nullptr;
    EXPECT_EQ(g_senders, (std::vector<uint64_t>{1, 2, 3, 4}));
    EXPECT_EQ(g_destroyed.size(), 4u);
    CPlatformObject::ClearEnvironment();
}

}  // namespace
