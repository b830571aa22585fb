// The configuration server's answer: what is refused changes nothing, and what is taken is an object of objects of
// texts and numbers, or nothing at all.
#include "Base/Configure/AnswerReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Base/XLog.h"

namespace Quern {

// The lines are nobody's here.
void XLog(ALogPriority, const char*, unsigned int, const char*, const char*, ...) {}
const std::atomic<int32_t> g_none{kLogNone};
std::atomic<const std::atomic<int32_t>*> g_coreLogThreshold{&g_none};

}  // namespace Quern

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Quern::Value modules(true);
    int32_t ruleID = -7;
    const int result = Orvane::AnswerReader::_ParseJsonObject(reinterpret_cast<const char*>(data), size, modules, ruleID);
    if (result != 0) {
        if (result < -2 || result > 0 || ruleID != -7 || modules.type() != Quern::BoolValue) abort();
        return 0;
    }
    if (!modules.isNull() && !modules.isObject()) abort();
    for (Quern::ValueConstIterator module = modules.begin(), end = modules.end(); module != end; ++module) {
        const Quern::Value& keys = *module;
        if (!keys.isObject() || !module.memberName()) abort();
        for (Quern::ValueConstIterator key = keys.begin(), last = keys.end(); key != last; ++key)
            if (!(*key).isString() && !(*key).isNumeric()) abort();
    }
    return 0;
}
