#include "PluginManager/InnerPlugin/Yarrow/LeftBehind.h"

namespace Orvane::Plugin {
namespace {

// What is lost is a block that leads to the span, so that the sanitizer finds the name of who left it in the block's
// history; all spans have the same.
struct Holder {
    ISpanContext* volatile context;
};

}  // namespace

void LeavePoppedSpanBehind(ISpanContext* context) {
    (new Holder)->context = context;
}

void LeaveReplacedSpanBehind(ISpanContext* context) {
    (new Holder)->context = context;
}

void LeaveLiveSpanBehind(ISpanContext* context) {
    (new Holder)->context = context;
}

}  // namespace Orvane::Plugin
