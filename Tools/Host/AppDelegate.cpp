#include "AppDelegate.h"

#include <cstring>

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

constexpr char kClassName[] = "HostAppDelegate";
constexpr char kDidFinishLaunching[] = "application:didFinishLaunchingWithOptions:";
constexpr char kOpenUrl[] = "application:openURL:options:";
constexpr char kSupportedOrientations[] = "application:supportedInterfaceOrientationsForWindow:";
constexpr uintptr_t kPortrait = 2;

// Stands for the platform's application object; nobody looks into it.
int g_application;

void* Yes() {
    return reinterpret_cast<void*>(uintptr_t{1});
}

// Once hooked, the delegate's own code runs under its selector with this in front.
const char* WithoutHookPrefix(const char* selector) {
    constexpr char kPrefix[] = "orvane_";
    return strncmp(selector, kPrefix, strlen(kPrefix)) == 0 ? selector + strlen(kPrefix) : selector;
}

void* OnEvent(orvane_object*, const char* selector, void* const*) {
    orvane_console_log("HostAppDelegate %s", WithoutHookPrefix(selector));
    return Yes();
}

void* OnOpenUrl(orvane_object*, const char* selector, void* const* arguments) {
    orvane_console_log("HostAppDelegate %s %s", WithoutHookPrefix(selector), static_cast<const char*>(arguments[1]));
    return Yes();
}

void* OnSupportedOrientations(orvane_object*, const char* selector, void* const*) {
    orvane_console_log("HostAppDelegate %s portrait", WithoutHookPrefix(selector));
    return reinterpret_cast<void*>(kPortrait);
}

orvane_class* RegisterDelegateClass() {
    orvane_class* cls = orvane_class_allocate(kClassName);
    for (const char* selector :
         {kDidFinishLaunching, AppDelegate::kDidEnterBackground, AppDelegate::kWillEnterForeground,
          AppDelegate::kWillResignActive, AppDelegate::kDidBecomeActive, AppDelegate::kDidReceiveMemoryWarning,
          AppDelegate::kWillTerminate}) {
        orvane_class_add_method(cls, selector, OnEvent);
    }
    orvane_class_add_method(cls, kOpenUrl, OnOpenUrl);
    orvane_class_add_method(cls, kSupportedOrientations, OnSupportedOrientations);
    orvane_class_register(cls);
    return cls;
}

}  // namespace

AppDelegate::AppDelegate() {
    orvane_class* cls = RegisterDelegateClass();
    g_OrvaneCoreManualHook(kClassName);
    _delegate = orvane_object_create(cls);
}

AppDelegate::~AppDelegate() {
    orvane_object_release(_delegate);
}

void AppDelegate::DidFinishLaunching() {
    void* arguments[] = {&g_application, nullptr};
    orvane_object_perform(_delegate, kDidFinishLaunching, arguments);
}

void AppDelegate::Send(const char* selector) {
    void* arguments[] = {&g_application};
    orvane_object_perform(_delegate, selector, arguments);
}

void AppDelegate::OpenUrl(const std::string& url) {
    std::string copy = url;
    void* arguments[] = {&g_application, copy.data(), nullptr};
    orvane_object_perform(_delegate, kOpenUrl, arguments);
}

uintptr_t AppDelegate::SupportedOrientations() {
    void* arguments[] = {&g_application, nullptr};
    return reinterpret_cast<uintptr_t>(orvane_object_perform(_delegate, kSupportedOrientations, arguments));
}

}  // namespace OrvaneHost
