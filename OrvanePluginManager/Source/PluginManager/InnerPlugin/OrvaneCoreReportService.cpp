#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"

#include <cstring>

#include "Base/Configure/Configure.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/XLog.h"
#include "Orvane/RavelAccount.h"
#include "PluginManager/PluginManager.h"

namespace Orvane::Plugin {
namespace {

constexpr int kAlwaysReported = 2;  // the bit of a data type that passes whatever the setting

// Numbered fields that every event bears; the account's two only with a login.
constexpr int kFieldChannel = 100000;
constexpr int kFieldDataTypes = 100001;
constexpr int kFieldCommonType = 100002;
constexpr int kFieldOpenId = 110002;

// Asks the login plugin to fill the account. False without a login, which keeps no event back.
bool ReadLogin(Ravel::RavelAccount& account) {
    IPlugin* plugin = PluginManager::GetInstance()->GetPluginByName("RAVEL");
    if (!plugin) {
        ORVANE_LOG_DEBUG("ICadmoPlugin is null");
        return false;
    }
    auto* service = static_cast<Ravel::IAccountService*>(plugin->GetServiceByName("ACCOUNT"));
    if (!service) {
        ORVANE_LOG_ERROR("Account Service is null");
        return false;
    }
    if (!service->GetLoginRet(account)) {
        ORVANE_LOG_DEBUG("Get LoginRet fail!");
        return false;
    }
    return true;
}

}  // namespace

IReportService* FindReportService(const char* missingPluginLine) {
    IPlugin* plugin = PluginManager::GetInstance()->GetPluginByName("PELL");
    if (!plugin) {
        if (missingPluginLine) ORVANE_LOG_ERROR("%s", missingPluginLine);
        return nullptr;
    }
    auto* service = static_cast<IReportService*>(plugin->GetServiceByName("REPORT"));
    if (!service && missingPluginLine) ORVANE_LOG_ERROR("pReportService is null");
    return service;
}

std::atomic<OrvaneCoreReportSerivce*> OrvaneCoreReportSerivce::s_pInstance{nullptr};

OrvaneCoreReportSerivce* OrvaneCoreReportSerivce::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new OrvaneCoreReportSerivce; });
}

void OrvaneCoreReportSerivce::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr);
}

const char* OrvaneCoreReportSerivce::GetName() const {
    return "COREREPORT";
}

const char* OrvaneCoreReportSerivce::GetPluginName() const {
    return Quern::kCoreModule;
}

int OrvaneCoreReportSerivce::ReportDataType() {
    int type = _reportDataType.load(std::memory_order_relaxed);
    if (type == -1) {
        type = Configure::GetInstance()->GetInt("Orvane", "ReportDataType", 2);
        _reportDataType.store(type, std::memory_order_relaxed);
    }
    return type;
}

IEvent* OrvaneCoreReportSerivce::CreateEvent(int dataType, int srcID, const char* eventName) {
    ORVANE_LOG_DEBUG("OrvaneCoreReportSerivce::CreateEvent, dataType : %d, srcID : %d, eventName : %s", dataType, srcID,
                     eventName ? eventName : "null");
    if (!eventName) {
        ORVANE_LOG_ERROR("eventName is null");
        return nullptr;
    }
    const int reportDataType = ReportDataType();
    ORVANE_LOG_DEBUG("ReportDataType : %d, currentDataType : %d", reportDataType, dataType);
    if (!(dataType & kAlwaysReported) && !(dataType & reportDataType)) {
        ORVANE_LOG_INFO("do not report, ReportDataType : %d, currentDataType : %d", reportDataType, dataType);
        return nullptr;
    }

    Ravel::RavelAccount account;
    const bool hasLogin = ReadLogin(account);

    IReportService* service = FindReportService("PELL plugin is null");
    if (!service) return nullptr;
    IEvent* event = service->CreateEvent(srcID, eventName);
    if (!event) {
        ORVANE_LOG_ERROR("Report event is null");
        return nullptr;
    }
    event->Add(kFieldDataTypes, reportDataType | dataType);
    event->Add(kFieldCommonType, reportDataType & dataType & 1);
    if (hasLogin) {
        // The login plugin may have filled the buffer to its last byte, without a terminator.
        const char* openId = account.openID ? account.openID : "";
        const size_t length = strnlen(openId, Ravel::RavelAccount::kOpenIDSize);
        event->Add(kFieldChannel, account.channelID);
        event->Add(kFieldOpenId, openId, static_cast<int>(length));
    }
    return event;
}

void OrvaneCoreReportSerivce::DestroyEvent(IEvent** event) {
    ORVANE_LOG_DEBUG("OrvaneCoreReportSerivce::DestroyEvent");
    if (IReportService* service = FindReportService("plugin is null")) service->DestroyEvent(event);
}

}  // namespace Orvane::Plugin
