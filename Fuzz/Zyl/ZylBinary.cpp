// The buffers under generated code: any bytes are refused or read, a record that was read comes back from its own bytes
// and can be shown, and any bytes come back from their hexadecimal text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "PlayerRecord.h"

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

std::string Pack(Example::PlayerRecord& record) {
    char bytes[4096];
    unsigned long size = 0;
    Require(record.pack(bytes, sizeof bytes, &size, 0) == 0);
    return {bytes, size};
}

void CheckRecord(const char* data, size_t size) {
    Example::PlayerRecord record;
    unsigned long used = 0;
    const int code = record.unpack(data, size, &used, 0);
    Require(used <= size);
    if (code != 0) return;
    const std::string bytes = Pack(record);
    Example::PlayerRecord back;
    Require(back.unpack(bytes.data(), bytes.size(), &used, 0) == 0 && used == bytes.size());
    Require(Pack(back) == bytes);
    char text[16384];
    Require(record.visualize(text, sizeof text, nullptr, 0, '\n') == 0);
}

void CheckHex(const char* data, size_t size) {
    std::string text(2 * size + 1, '\0');
    unsigned long used = 0;
    Require(Quern::ZylReadBuf(data, size).toHexStr(text.data(), text.size(), &used) == 0 && used == text.size());
    std::string memory(size, '\0');
    Quern::ZylReadBuf back(memory.data(), memory.size());
    Require(back.fromHexStr(text.data(), 2 * size, &used) == 0 && used == 2 * size);
    Require(back.length == size && memory == std::string(data, size));

    std::string half(size / 2, '\0');
    Quern::ZylReadBuf any(half.data(), half.size());
    any.fromHexStr(data, size, &used);
    Require(any.position <= any.length && any.length <= half.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto* const bytes = reinterpret_cast<const char*>(data);
    CheckRecord(bytes, size);
    CheckHex(bytes, size);
    return 0;
}
