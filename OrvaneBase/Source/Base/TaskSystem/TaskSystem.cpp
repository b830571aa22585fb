#include "Base/TaskSystem/TaskSystem.h"

#include "Base/MakeOnce.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "Orvane/RunTime.h"
#include "Orvane/TransceiverHelper.h"
#include "System/System/CSystem.h"

namespace Orvane {
namespace {

// The arguments of a run-time method are not const.
void* Argument(const char* text) {
    return const_cast<char*>(text);
}

}  // namespace

std::atomic<TaskSystem*> TaskSystem::s_pInstance{nullptr};

TaskSystem* TaskSystem::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new TaskSystem; });
}

void TaskSystem::Start() {
    const char* const openId = Quern::QuernCommon::GetInstance()->GetOpenID();
    const char* const bundleId = Quern::CSystem::GetBundleId();
    const char* const url = Quern::QuernCommon::GetInstance()->GetTransceiverUrl();
    ORVANE_LOG_INFO("HollinTransceiverHelper init openid %s, bundleid %s, url:%s", openId, bundleId, url);

    const orvane_class* const helper = orvane_class_lookup(ORVANE_TRANSCEIVER_HELPER);
    if (!helper) {
        ORVANE_LOG_ERROR("KTransceiverHelper class not exist");
        return;
    }
    if (!orvane_class_get_class_method(helper, ORVANE_TRANSCEIVER_INIT)) {
        ORVANE_LOG_ERROR("KTransceiverHelper: can not find init method in current project.");
        return;
    }
    void* const arguments[] = {Argument(openId), Argument(bundleId), Argument(url)};
    orvane_class_perform(helper, ORVANE_TRANSCEIVER_INIT, arguments);
    ORVANE_LOG_INFO("KTransceiverHelper: invoke init");

    if (!orvane_class_get_class_method(helper, ORVANE_TRANSCEIVER_START)) {
        ORVANE_LOG_ERROR("KTransceiverHelper: can not find start method in current project.");
        return;
    }
    orvane_class_perform(helper, ORVANE_TRANSCEIVER_START, nullptr);
    ORVANE_LOG_INFO("KTransceiverHelper: invoke start");
}

}  // namespace Orvane
