#include "System/Application/Alert.h"

#include "Base/ConsoleSink.h"
#include "Orvane/Alert.h"
#include "Orvane/RunTime.h"

namespace Quern {
namespace {

// A host that has windows registers a run-time class that shows the alert. Without one nobody would see it, so the
// console gets the text.
class HostAlert final : public Alert {
public:
    void Present(const AlertText& text) override {
        const orvane_class* const host = orvane_class_lookup(ORVANE_ALERT_CLASS);
        if (!orvane_class_get_class_method(host, ORVANE_ALERT_PRESENT)) {
            PlatformLog("%s: %s", text.title, text.message);
            return;
        }
        void* const arguments[] = {const_cast<char*>(text.title), const_cast<char*>(text.message),
                                   const_cast<char*>(text.action)};
        orvane_class_perform(host, ORVANE_ALERT_PRESENT, arguments);
    }
};

}  // namespace

template <>
std::shared_ptr<Alert> Seam<Alert>::MakeBuiltIn() {
    return std::make_shared<HostAlert>();
}

}  // namespace Quern
