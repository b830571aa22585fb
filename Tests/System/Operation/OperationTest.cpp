#include "Support/Test.h"
#include "System/Operation/ObjectOperation.h"
#include "System/Operation/StaticOperation.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

class Target : public OperationTargetBase {
public:
    explicit Target(std::vector<std::string>* record) : _record(record) {}
    ~Target() override { _record->push_back("target deleted"); }
    void DoOperation(ObjectOperation*, void*) override { _record->push_back("DoOperation"); }
    void Member(ObjectOperation* operation, void* data) {
        _record->push_back(std::string("member ") + static_cast<const char*>(data) + (IsRunning() ? " running" : ""));
        last = operation;
    }
    ObjectOperation* last = nullptr;

private:
    std::vector<std::string>* _record;
};

constexpr auto kMember = static_cast<ObjectOperation::Member>(&Target::Member);
char g_data[] = "data";

TEST(Operation, HasAnIdAndATimeOfItsOwn) {
    StaticOperation first(nullptr, nullptr, false);
    StaticOperation second(nullptr, nullptr, true);
    EXPECT_EQ(first.GetId(), 0);
    EXPECT_EQ(second.GetId(), 1);
    EXPECT_FALSE(first.IsRepeating());
    EXPECT_TRUE(second.IsRepeating());
    EXPECT_EQ(second.GetNextRun(), 0);
    second.Run();

    const long long before = CTime::GetTimeTick() / 1000;
    second.Sleep(500);
    EXPECT_GE(second.GetNextRun(), before + 500);
    EXPECT_LE(second.GetNextRun(), CTime::GetTimeTick() / 1000 + 500);

    const std::unique_ptr<Operation> copy(second.Duplicate());
    EXPECT_EQ(copy->GetId(), 1);
    EXPECT_EQ(copy->GetNextRun(), second.GetNextRun());
    EXPECT_TRUE(copy->IsRepeating());
    second.Cancel();
    EXPECT_FALSE(second.IsRepeating());
    EXPECT_TRUE(copy->IsRepeating());
    first = second;
    EXPECT_EQ(first.GetId(), 1);
    EXPECT_EQ(StaticOperation(nullptr, nullptr, false).GetId(), 2) << "a copy takes no number";
}

TEST(ObjectOperation, CallsItsTarget) {
    std::vector<std::string> record;
    Target target(&record);
    EXPECT_FALSE(target.IsRunning());
    {
        ObjectOperation operation(&target, kMember, g_data, false);
        operation.Run();
        EXPECT_EQ(target.last, &operation);
        EXPECT_TRUE(target.IsRunning());
        const std::unique_ptr<Operation> copy(operation.Duplicate());
        copy->Run();
        EXPECT_NE(target.last, &operation);
        target.Sleep(1000);
        EXPECT_NE(operation.GetNextRun(), 0) << "the target goes on to remember the original";
        EXPECT_EQ(copy->GetNextRun(), 0);
    }
    EXPECT_FALSE(target.IsRunning());
    ObjectOperation(&target, nullptr, nullptr, false).Run();
    ObjectOperation(nullptr, kMember, g_data, false).Run();
    EXPECT_THAT(record, ElementsAre("member data running", "member data running", "DoOperation"));
}

TEST(ObjectOperation, TheTargetKnowsTheLastOneOnlyAndAnyEndForgetsIt) {
    std::vector<std::string> record;
    Target target(&record);
    auto first = std::make_unique<ObjectOperation>(&target, kMember, g_data, true);
    ObjectOperation second(&target, kMember, g_data, true);
    target.Sleep(1000);
    EXPECT_EQ(first->GetNextRun(), 0);
    EXPECT_NE(second.GetNextRun(), 0);
    first.reset();
    target.Cancel(true);
    target.Sleep(1);
    EXPECT_TRUE(second.IsRepeating());
}

TEST(ObjectOperation, DeletesItsTargetIfAskedOnce) {
    std::vector<std::string> record;
    auto* const target = new Target(&record);
    auto operation = std::make_unique<ObjectOperation>(target, kMember, g_data, true);
    target->Cancel(true);
    operation->Cancel(false);
    EXPECT_FALSE(operation->IsRepeating());
    EXPECT_THAT(record, ElementsAre());
    operation.reset();
    EXPECT_THAT(record, ElementsAre("target deleted"));
}

}  // namespace
}  // namespace Quern
