// Tracing's interfaces from declarations of the test's own: every slot is called, and its effect seen. Nothing here but
// the making of the objects comes from the product's headers.
#include "Orvane/IOneTraceService.h"
#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceFixture.h"

namespace {

using testing::Contains;

namespace Contract {

struct Span {
    virtual ~Span() {}
    virtual bool Put(const char* key, const char* value) = 0;
    virtual const char* Get(const char* key) = 0;
    virtual bool PutTag(const char* key, const char* value) = 0;
    virtual const char* GetTag(const char* key) = 0;
    virtual const char* Text() = 0;
    virtual const char* Tags() = 0;
    virtual bool Read(const char* text) = 0;
};

struct Service {
    virtual ~Service() {}
    virtual const char* Name() const = 0;
    virtual const char* PluginName() const = 0;
    virtual bool IsOn() const = 0;
    virtual const char* TraceId() = 0;
    virtual bool Wants(const char* type) = 0;
    virtual const char* Make(const char* parent, const char* type, const char* kind) = 0;
    virtual bool Put(const char* span, int what, const char* key, const char* value) = 0;
    virtual bool Send(const char* span) = 0;
    virtual bool Unmake(const char* span) = 0;
};

struct FiveCalls {
    virtual ~FiveCalls() {}
    virtual const char* TraceId() = 0;
    virtual const char* Make(const char* parent, const char* kind) = 0;
    virtual void Start(const char* span, const char* name, const char* here, const char* there) = 0;
    virtual void Tag(const char* span, const char* key, const char* value) = 0;
    virtual void Finish(const char* span, const char* code, const char* message) = 0;
};

template <typename T>
T* As(void* object) {
    return static_cast<T*>(object);
}

}  // namespace Contract

using TracingContract = OrvaneTest::TraceFixture;

TEST_F(TracingContract, EverySlotWorks) {
    Orvane::Plugin::ISpanContext* const made = new Orvane::Plugin::SpanContext("t", "s", "p");
    auto* const span = Contract::As<Contract::Span>(made);
    EXPECT_TRUE(span->Put("k", "field") && span->PutTag("k", "tag"));
    EXPECT_EQ(span->Get("k") + std::string(span->GetTag("k")), "fieldtag");
    EXPECT_EQ(span->Text() + std::string(span->Tags()), "t-p-s-1{\"k\":\"tag\"}");
    EXPECT_TRUE(span->Read("a-b-c-1"));
    EXPECT_STREQ(span->Get("sid"), "c");
    delete span;

    Set("YarrowTargetMode", "3");
    Set("YarrowBlackList", "no");
    Orvane::Plugin::IPluginService* const found =
        Orvane::Plugin::PluginManager::GetInstance()->GetPluginByName("OrvaneCore")->GetServiceByName("YARROW");
    auto* const service = Contract::As<Contract::Service>(found);
    EXPECT_EQ(service->PluginName() + std::string(service->Name()), "OrvaneCoreYARROW");
    EXPECT_TRUE(service->IsOn() && service->Wants("yes") && !service->Wants("no"));
    const char* const context = service->Make(nullptr, "type", "kind");
    EXPECT_TRUE(service->Put(context, 1, "name", "n") && service->Put(context, 2, "tag", "t"));
    EXPECT_TRUE(journal.empty() && service->Send(context));
    EXPECT_THAT(journal, Contains("add 'pritype'='kind'"));
    const std::string copy = context;
    EXPECT_TRUE(service->Unmake(context) && !service->Send(copy.c_str()));

    auto* const calls = Contract::As<Contract::FiveCalls>(Orvane::IOneTraceService::GetInstance());
    EXPECT_STREQ(calls->TraceId(), service->TraceId());
    const char* const child = calls->Make("trace-up-above-1", "kind 2");
    calls->Start(child, "name 2", "here", "there");
    calls->Tag(child, "key", "value");
    calls->Finish(child, "5", "message");
    for (const char* field : {"'pid'='above'", "'pritype'='kind 2'", "'name'='name 2'", "'rmtname'='there'",
                              "'tags'='{\"key\":\"value\"}'", "'errmsg'='message'"})
        EXPECT_THAT(journal, Contains(std::string("add ") + field));
    Orvane::IOneTraceService::ReleaseInstance();
    Orvane::IOneTraceService::ReleaseInstance();  // there is none any more
    EXPECT_STREQ(Orvane::IOneTraceService::GetInstance()->GetTraceId(), service->TraceId());
}

}  // namespace
