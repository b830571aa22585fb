// The configuration's client as the game's script layer calls it.
#include "Base/Configure/Configure.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"

int orvanecore_configure_seturl(const char* url) {
    ORVANE_LOG_INFO("orvanecore_configure_seturl");
    Orvane::Configure::GetInstance()->SetUrl(url);
    return 1;
}

int orvanecore_configure_clear() {
    ORVANE_LOG_INFO("orvanecore_configure_clear");
    Orvane::Configure::GetInstance()->Clear();
    return 1;
}
