// The core plugin's stages, and what they queue.
#include <string>

#include "Base/Configure/Configure.h"
#include "Base/Configure/FileUploader.h"
#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/QuernCommon.h"
#include "Base/TaskSystem/TaskSystem.h"
#include "Base/XLog.h"
#include "Orvane/RavelAccount.h"
#include "PluginManager/InnerPlugin/CrashReportEntry.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"
#include "PluginManager/PluginManager.h"
#include "Storage/Bundle/BundleFactory.h"
#include "System/Application/Alert.h"
#include "System/Application/MainRunLoop.h"
#include "System/Operation/OperationQueue.h"

namespace Orvane::Plugin {
namespace {

// The public type of the library's own spans.
constexpr char kCoreSpanType[] = "100";

// What a channel id or an open id may measure, in bytes.
constexpr int kLongestUserText = 128;

void AlertAboutGameId() {
    // Posted, so that it comes after the launch callback has returned.
    Quern::MainRunLoop::Current().Post([] {
        Quern::Alert::Current().Present(
            {"OrvaneSDK提示", "GameID为0，请确认Info.plist中是否正确配置GameId和GameKey。", "确定"});
    });
}

// The test is for an empty id, whatever the message says: a game may have the id "0".
void CheckGameId() {
    const std::string gameId = Quern::QuernCommon::GetInstance()->GetGameID();
    if (!gameId.empty()) return;
    ORVANE_LOG_ERROR(
        "OrvaneCoreInnerPlugin::OnStartup InitCheck: Error: Orvane GameID == 0, Not properly configured in config "
        "files!!!");
    AlertAboutGameId();
}

void TakeUserFromLogin(IPlugin& login) {
    auto* const service = static_cast<Ravel::IAccountService*>(login.GetServiceByName("ACCOUNT"));
    if (!service) return;
    Ravel::RavelAccount account;
    if (!service->GetLoginRet(account)) return;
    if (!account.HasOpenID()) {
        ORVANE_LOG_ERROR("cRavelAccount.openID is NULL or len is invalid");
        return;
    }
    Quern::QuernCommon::GetInstance()->SetUserInfo(std::to_string(account.channelID).c_str(), account.openID);
}

// A game without the login plugin leaves its user in the section "Config". Who the user was the last time is kept in
// another one, that of the library.
void TakeUserFromBundle() {
    Quern::BundleImpl& bundle = *Quern::BundleFactory::GetInstance()->GetDefaultBundle();
    const Quern::AString channelId = bundle.Get("Config", "channelid", "");
    const Quern::AString openId = bundle.Get("Config", "openid", "");
    if (channelId.length() == 0 || openId.length() == 0) return;
    if (channelId.length() > kLongestUserText || openId.length() > kLongestUserText) {
        ORVANE_LOG_WARNING("bundle get openid or channelid is invalid!");
        return;
    }
    Quern::QuernCommon::GetInstance()->SetUserInfo(channelId.c_str(), openId.c_str());
}

// The span that tells of this launch. Each step asks for the service again, and does nothing without it.
void TraceLaunch(PluginBase* core) {
    const char* const context = sg_create_context(core, nullptr, nullptr, kCoreSpanType);
    if (!context) return;
    sg_span_start(core, context, "OrvaneCore_OnStartup", "game_client", kCoreModule, kCoreSpanType);
    for (const auto& [name, plugin] : PluginManager::GetInstance()->CopyPlugins())
        sg_span_flush(core, context, plugin.pluginName.c_str(), plugin.pluginVersion.c_str(), kCoreSpanType);
    sg_span_finish(core, context, "0", "OrvaneCore OnStartup Success", kCoreSpanType);
}

void StartYarrowClient(PluginBase* core) {
    TraceService* const tracing = TraceService::GetInstance();
    if (!tracing->IsEnabled()) {
        ORVANE_LOG_EVENT("[Yarrow] onStartYarrowClient YarrowClient is disabled");
        return;
    }
    const char* const traceId = tracing->GetTraceId();  // takes one from the stock, whatever the log's level
    ORVANE_LOG_EVENT("[Yarrow] onStartYarrowClient traceid:%s", traceId);
    TraceLaunch(core);
}

void Queue(OrvaneCoreInnerPlugin* plugin,
           void (OrvaneCoreInnerPlugin::*start)(Quern::ObjectOperation* operation, void* data)) {
    Quern::OperationQueue::GetInstance()->AddOperation(plugin, static_cast<Quern::ObjectOperation::Member>(start),
                                                       nullptr, false);
}

}  // namespace

void OrvaneCoreInnerPlugin::OnStartup(IServiceRegister* services) {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnStartup");
    if (services) {
        // A declaration for the host's record; look-ups never ask it, and not every service is in it.
        for (const char* name : {"COREREPORT", "YARROW", "REMOTECONFIG", "CONFIGFILE"})
            services->Register(name);
    }
    CheckGameId();
    Queue(this, &OrvaneCoreInnerPlugin::onStartYarrowClient);
}

void OrvaneCoreInnerPlugin::OnPostStartup() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnPostStartup");
    if (IPlugin* const login = PluginManager::GetInstance()->GetPluginByName("RAVEL"))
        TakeUserFromLogin(*login);
    else
        TakeUserFromBundle();
    Queue(this, &OrvaneCoreInnerPlugin::onStartConfigure);
    registerFennel();
}

void OrvaneCoreInnerPlugin::OnPreShutdown() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnPreShutdown");
}

void OrvaneCoreInnerPlugin::OnShutdown() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnShutdown");
}

void OrvaneCoreInnerPlugin::onStartYarrowClient(Quern::ObjectOperation* operation, void* data) {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::onStartYarrowClient begin");
    if (operation) StartYarrowClient(this);
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::onStartYarrowClient end");
}

void OrvaneCoreInnerPlugin::onStartConfigure(Quern::ObjectOperation* operation, void* data) {
    if (!operation) return;
    Configure::GetInstance()->AddObserver("Upload", FileUploader::GetInstance());
    Configure::GetInstance()->Start();
    if (!OrvaneCoreRemoteConfig::GetInstance()->GetBool("TaskSystemEnable", false)) return;
    ORVANE_LOG_INFO("TaskSystem start");
    TaskSystem::GetInstance()->Start();
}

}  // namespace Orvane::Plugin
