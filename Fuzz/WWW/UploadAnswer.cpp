// The upload server's answer: what is taken has an address and a position, and what is refused says why.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "System/WWW/Task/SorrelUploadAnswer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SorrelUploadAnswer answer;
    std::string error;
    const bool isTaken = answer.Read({reinterpret_cast<const char*>(data), size}, error);
    if (isTaken != error.empty()) abort();
    if (answer.nextPos < 0 || (answer.ret != 0 && (answer.nextPos != 0 || !answer.uploadUrl.empty()))) abort();
    return 0;
}
