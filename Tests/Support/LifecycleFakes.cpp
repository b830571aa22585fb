#include "Support/LifecycleFakes.h"

#include "Orvane/AppLifecycle.h"
#include "Support/Test.h"

namespace OrvaneTest {
namespace {

std::vector<std::string> g_journal;
bool g_recordArguments = false;
std::map<std::pair<orvane_class*, std::string>, uintptr_t> g_answers;
std::map<std::pair<orvane_class*, std::string>, std::function<void()>> g_actions;

void* OnSelector(orvane_object* self, const char* selector, void* const* arguments) {
    std::string entry = std::string(static_cast<const char*>(self->data)) + " " + selector;
    if (g_recordArguments) {
        const std::string text = selector;
        const auto count = std::count(text.begin(), text.end(), ':');
        for (long i = 0; i < count; ++i)
            entry += Format(" %p", arguments[i]);
    }
    g_journal.push_back(entry);
    // A hooked class reaches its own method under a longer selector.
    std::string own = selector;
    if (own.rfind("orvane_", 0) == 0) own = own.substr(7);
    return reinterpret_cast<void*>(g_answers[{self->isa, own}]);
}

void* OnAction(orvane_object* self, const char* selector, void* const*) {
    g_actions[{self->isa, selector}]();
    return nullptr;
}

}  // namespace

LifecycleClass::LifecycleClass(const char* name, bool followsProtocol) : _class(orvane_class_allocate(name)) {
    if (followsProtocol) orvane_class_add_protocol(_class, ORVANE_APP_LIFECYCLE_OBSERVER);
    orvane_class_register(_class);
}

void LifecycleClass::Answer(const char* selector, uintptr_t answer) {
    g_answers[{_class, selector}] = answer;
    orvane_class_add_method(_class, selector, OnSelector);
}

void LifecycleClass::Act(const char* selector, std::function<void()> action) {
    g_actions[{_class, selector}] = std::move(action);
    orvane_class_add_method(_class, selector, OnAction);
}

orvane_object LifecycleClass::Make(const char* name) {
    return {_class, const_cast<char*>(name)};
}

std::vector<std::string> LifecycleClass::Heard() {
    return std::exchange(g_journal, {});
}

void LifecycleClass::Note(const std::string& entry) {
    g_journal.push_back(entry);
}

void LifecycleClass::RecordArguments(bool isOn) {
    g_recordArguments = isOn;
}

}  // namespace OrvaneTest
