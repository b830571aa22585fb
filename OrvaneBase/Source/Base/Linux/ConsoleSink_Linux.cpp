#include "Base/ConsoleSink.h"
#include "Orvane/RunTime.h"

namespace Quern {
namespace {

// Standard error, through the call that sibling libraries use as well.
class RunTimeConsole final : public ConsoleSink {
public:
    void Write(const char* text, size_t length) override { orvane_console_write(text, length); }
};

}  // namespace

template <>
std::shared_ptr<ConsoleSink> Seam<ConsoleSink>::MakeBuiltIn() {
    return std::make_shared<RunTimeConsole>();
}

}  // namespace Quern
