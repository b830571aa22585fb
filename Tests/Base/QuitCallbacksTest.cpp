#include <gmock/gmock.h>

#include <string>

#include "Orvane/OrvaneCore.h"

namespace {

std::string g_calls;

void First() {
    g_calls += "1";
}
void Second() {
    g_calls += "2";
}
void AddsSecond() {
    g_calls += "a";
    AddApplicationQuitCallback(Second);
}

TEST(QuitCallbacks, RunOnceInOrderOfFirstRegistration) {
    AddApplicationQuitCallback(nullptr);
    AddApplicationQuitCallback(Second);
    AddApplicationQuitCallback(First);
    AddApplicationQuitCallback(Second);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "21");
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "21") << "the list is empty after a run";
    AddApplicationQuitCallback(First);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "211") << "a new list begins";
}

TEST(QuitCallbacks, OneAddedDuringTheRunIsRunInTheSamePass) {
    AddApplicationQuitCallback(First);
    AddApplicationQuitCallback(AddsSecond);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "1a2");
}

}  // namespace
