#include "Orvane/RunTime.h"

#include "Support/Test.h"

namespace {

void* Number(uintptr_t value) {
    return reinterpret_cast<void*>(value);
}

template <uintptr_t Value>
void* Gives(orvane_object*, const char*, void* const*) {
    return Number(Value);
}
constexpr auto One = Gives<1>, Two = Gives<2>;

std::string g_called;  // "<data or class> <selector> <second argument>"

void* Tells(orvane_object* self, const char* selector, void* const* arguments) {
    g_called = self ? static_cast<char*>(self->data) : "class";
    g_called += std::string(" ") + selector + (arguments ? static_cast<char*>(arguments[1]) : "");
    return nullptr;
}

TEST(ClassTable, AClassIsFoundOnceItIsRegistered) {
    EXPECT_EQ(orvane_class_allocate(nullptr), nullptr);
    EXPECT_EQ(orvane_class_allocate(""), nullptr);
    orvane_class* cls = orvane_class_allocate("Class");
    EXPECT_STREQ(orvane_class_name(cls), "Class");
    EXPECT_EQ(orvane_class_lookup("Class"), nullptr);
    orvane_class* rival = orvane_class_allocate("Class");
    EXPECT_TRUE(orvane_class_register(cls));
    EXPECT_FALSE(orvane_class_register(cls));
    EXPECT_FALSE(orvane_class_register(rival));
    EXPECT_EQ(orvane_class_lookup("Class"), cls);
    EXPECT_EQ(orvane_class_lookup("class"), nullptr);
}

TEST(ClassTable, InstancesAndTheClassHaveMethodsOfTheirOwn) {
    orvane_class* cls = orvane_class_allocate("Class");
    EXPECT_TRUE(orvane_class_add_method(cls, "number", One));
    EXPECT_FALSE(orvane_class_add_method(cls, "number", Two)) << "nothing is replaced";
    EXPECT_TRUE(orvane_class_add_class_method(cls, "number", Two));
    EXPECT_FALSE(orvane_class_add_method(cls, "codeless", nullptr));
    orvane_class_add_method(cls, "a:b:", Tells);
    orvane_class_add_class_method(cls, "a:", Tells);

    char data[] = "data", argument[] = " argument";
    orvane_object object = {cls, data};
    EXPECT_EQ(orvane_object_perform(&object, "number", nullptr), Number(1));
    EXPECT_EQ(orvane_class_perform(cls, "number", nullptr), Number(2));
    void* arguments[] = {nullptr, argument};
    EXPECT_EQ(orvane_object_perform(&object, "a:b", arguments), nullptr);
    EXPECT_EQ(g_called, "");
    orvane_object_perform(&object, "a:b:", arguments);
    EXPECT_EQ(g_called, "data a:b: argument");
    orvane_class_perform(cls, "a:", nullptr);
    EXPECT_EQ(g_called, "class a:") << "a class method has no self";
    EXPECT_FALSE(orvane_object_responds(&object, "codeless"));
}

TEST(ClassTable, ExchangeSwapsTwoMethodsOrNothing) {
    orvane_class* cls = orvane_class_allocate("Class");
    orvane_class_add_method(cls, "one", One);
    orvane_class_add_method(cls, "two", Two);
    EXPECT_FALSE(orvane_class_exchange_methods(cls, "one", "three"));
    EXPECT_EQ(orvane_class_get_method(cls, "one"), One);
    EXPECT_TRUE(orvane_class_exchange_methods(cls, "one", "two"));
    EXPECT_EQ(orvane_class_get_method(cls, "one"), Two);
    EXPECT_EQ(orvane_class_get_method(cls, "two"), One);
    EXPECT_TRUE(orvane_class_exchange_methods(cls, "one", "one"));
    EXPECT_EQ(orvane_class_get_method(cls, "one"), Two);
}

TEST(ClassTable, ProtocolsAreDeclaredOnce) {
    orvane_class* cls = orvane_class_allocate("Class");
    EXPECT_FALSE(orvane_class_conforms(cls, "P"));
    EXPECT_TRUE(orvane_class_add_protocol(cls, "P"));
    EXPECT_FALSE(orvane_class_add_protocol(cls, "P"));
    EXPECT_TRUE(orvane_class_conforms(cls, "P"));
    EXPECT_FALSE(orvane_class_conforms(cls, "Q"));
}

std::string g_life;

TEST(ClassTable, InstancesBeginWithInitAndEndWithDealloc) {
    orvane_class* cls = orvane_class_allocate("Class");
    orvane_class_add_method(cls, "init", [](orvane_object* self, const char*, void* const*) -> void* {
        g_life += self->data ? "?" : "i";
        self->data = &g_life;
        return nullptr;
    });
    orvane_class_add_method(cls, "dealloc", [](orvane_object* self, const char*, void* const*) -> void* {
        g_life += self->data == &g_life ? "d" : "?";
        return nullptr;
    });
    orvane_object* object = orvane_object_create(cls);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->isa, cls);
    orvane_object_release(object);
    EXPECT_EQ(g_life, "id");
    orvane_object_release(orvane_object_create(orvane_class_allocate("Plain")));
}

TEST(ClassTable, NullGivesTheNeutralValue) {
    orvane_class* cls = orvane_class_allocate("Class");
    orvane_object object = {cls, nullptr};
    EXPECT_FALSE(orvane_class_register(nullptr) || orvane_class_lookup(nullptr) || orvane_class_name(nullptr));
    EXPECT_FALSE(orvane_class_add_method(nullptr, "s", One) || orvane_class_add_method(cls, nullptr, One) ||
                 orvane_class_add_class_method(nullptr, "s", One));
    EXPECT_FALSE(orvane_class_get_method(nullptr, "s") || orvane_class_get_method(cls, nullptr) ||
                 orvane_class_get_class_method(nullptr, "s"));
    EXPECT_FALSE(orvane_class_exchange_methods(nullptr, "s", "t") || orvane_class_exchange_methods(cls, nullptr, "t"));
    EXPECT_FALSE(orvane_class_add_protocol(cls, nullptr) || orvane_class_conforms(nullptr, "P"));
    EXPECT_FALSE(orvane_class_perform(nullptr, "s", nullptr) || orvane_object_create(nullptr));
    orvane_object_release(nullptr);
    EXPECT_FALSE(orvane_object_responds(nullptr, "s") || orvane_object_responds(&object, nullptr));
    EXPECT_FALSE(orvane_object_perform(nullptr, "s", nullptr) || orvane_object_perform(&object, nullptr, nullptr));
}

// Of several threads that bring the same class and methods, one succeeds with each.
TEST(ClassTable, IsSafeUnderManyThreads) {
    constexpr int kThreads = 4, kRounds = 200;
    std::atomic<int> registered{0}, added{0}, performed{0};
    std::vector<std::jthread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kRounds; ++i) {
                const std::string name = "Class" + std::to_string(i);
                registered += orvane_class_register(orvane_class_allocate(name.c_str()));
                orvane_class* cls = orvane_class_lookup(name.c_str());
                added += orvane_class_add_method(cls, "one", One);
                orvane_class_add_method(cls, "two", Two);
                orvane_class_exchange_methods(cls, "one", "two");
                orvane_object* object = orvane_object_create(cls);
                performed += orvane_object_perform(object, "one", nullptr) != nullptr;
                orvane_object_release(object);
            }
        });
    threads.clear();
    EXPECT_EQ(registered, kRounds);
    EXPECT_EQ(added, kRounds);
    EXPECT_EQ(performed, kThreads * kRounds);
}

}  // namespace
