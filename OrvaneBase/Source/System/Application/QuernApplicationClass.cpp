// QuernApplication as its host and observers in other libraries reach it: by the name of a run-time class.
#include "Base/RunTimeClass.h"
#include "System/Application/AppLifecycleEvents.h"
#include "System/Application/QuernApplication.h"

namespace Quern {
namespace {

void* Answer(bool answer) {
    return reinterpret_cast<void*>(static_cast<uintptr_t>(answer));
}

// Makes a run-time method of a member: one pointer of the array for each argument.
template <auto Member>
struct Method;

template <typename Result, typename... Arguments, Result (QuernApplication::*Member)(Arguments...)>
struct Method<Member> {
    static void* Perform(orvane_object*, const char*, void* const* arguments) {
        arguments = Orvane::AppEventArgumentsOrNulls(arguments);
        return Call(arguments, std::index_sequence_for<Arguments...>());
    }
    template <size_t... Index>
    static void* Call([[maybe_unused]] void* const* arguments, std::index_sequence<Index...>) {
        QuernApplication* const application = QuernApplication::sharedInstance();
        if constexpr (std::is_same_v<Result, bool>) {
            return Answer((application->*Member)(static_cast<Arguments>(arguments[Index])...));
        } else {
            (application->*Member)(static_cast<Arguments>(arguments[Index])...);
            return nullptr;
        }
    }
};

void* RootVC(orvane_object*, const char*, void* const*) {
    return QuernApplication::sharedInstance()->rootVC();
}

void* SharedInstance(orvane_object*, const char*, void* const*) {
    static orvane_object shared = {orvane_class_lookup("QuernApplication"), nullptr};
    return &shared;
}

}  // namespace

void RegisterQuernApplicationClass() {
    using Application = QuernApplication;
    RegisterRunTimeClass(
        "QuernApplication",
        {
            {"addObserver:", Method<&Application::addObserver>::Perform},
            {"removeObserver:", Method<&Application::removeObserver>::Perform},
            {"rootVC", RootVC},
            {"setRootVC:", Method<&Application::setRootVC>::Perform},
            {"handleOpenURL:", Method<&Application::handleOpenURL>::Perform},
            {"applicationDidEnterBackground:", Method<&Application::applicationDidEnterBackground>::Perform},
            {"applicationWillEnterForeground:", Method<&Application::applicationWillEnterForeground>::Perform},
            {"applicationDidBecomeActive:", Method<&Application::applicationDidBecomeActive>::Perform},
            {"applicationWillResignActive:", Method<&Application::applicationWillResignActive>::Perform},
            {"applicationWillTerminate:", Method<&Application::applicationWillTerminate>::Perform},
            {"applicationContinueUserActivity:Activity:",
             Method<&Application::applicationContinueUserActivity_Activity>::Perform},
            {"application:didFinishLaunchingWithOptions:",
             Method<&Application::application_didFinishLaunchingWithOptions>::Perform},
            {"application:didRegisterForRemoteNotificationsWithDeviceToken:",
             Method<&Application::application_didRegisterForRemoteNotificationsWithDeviceToken>::Perform},
            {"application:didFailToRegisterForRemoteNotificationsWithError:",
             Method<&Application::application_didFailToRegisterForRemoteNotificationsWithError>::Perform},
            {"application:didReceiveRemoteNotification:",
             Method<&Application::application_didReceiveRemoteNotification>::Perform},
            {"application:handleEventsForBackgroundURLSession:completionHandler:",
             Method<&Application::application_handleEventsForBackgroundURLSession_completionHandler>::Perform},
        },
        {{"sharedInstance", SharedInstance}});
}

}  // namespace Quern
