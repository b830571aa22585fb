#include "Storage/Log/LogTea.h"

#include "Storage/Log/LogRecord.h"

namespace Quern {
namespace {

constexpr uint32_t kDelta = 0x9E3779B9u;
constexpr int kRounds = 16;
// Groups are independent of each other: working on several at once lets the compiler use vector instructions.
constexpr size_t kLanes = 4;

struct Key {
    explicit Key(const LogTeaKey& key) {
        for (size_t i = 0; i < 4; ++i)
            word[i] = LogRecord::LoadU32(key.data() + 4 * i);
    }
    uint32_t word[4];
};

template <size_t Lanes>
struct Groups {
    uint32_t first[Lanes], second[Lanes];

    void Load(const uint8_t* data) {
        for (size_t i = 0; i < Lanes; ++i) {
            first[i] = LogRecord::LoadU32(data + kLogTeaGroup * i);
            second[i] = LogRecord::LoadU32(data + kLogTeaGroup * i + 4);
        }
    }
    void Store(uint8_t* data) const {
        for (size_t i = 0; i < Lanes; ++i) {
            LogRecord::StoreU32(data + kLogTeaGroup * i, first[i]);
            LogRecord::StoreU32(data + kLogTeaGroup * i + 4, second[i]);
        }
    }
    void Encrypt(const Key& key) {
        uint32_t sum = kDelta;
        for (int round = 0; round < kRounds; ++round, sum += kDelta) {
            for (size_t i = 0; i < Lanes; ++i)
                first[i] += ((second[i] << 4) + key.word[0]) ^ (second[i] + sum) ^ ((second[i] >> 5) + key.word[1]);
            for (size_t i = 0; i < Lanes; ++i)
                second[i] += ((first[i] << 4) + key.word[2]) ^ (first[i] + sum) ^ ((first[i] >> 5) + key.word[3]);
        }
    }
    void Decrypt(const Key& key) {
        uint32_t sum = kDelta * kRounds;
        for (int round = 0; round < kRounds; ++round, sum -= kDelta) {
            for (size_t i = 0; i < Lanes; ++i)
                second[i] -= ((first[i] << 4) + key.word[2]) ^ (first[i] + sum) ^ ((first[i] >> 5) + key.word[3]);
            for (size_t i = 0; i < Lanes; ++i)
                first[i] -= ((second[i] << 4) + key.word[0]) ^ (second[i] + sum) ^ ((second[i] >> 5) + key.word[1]);
        }
    }
};

template <typename Step>
void ForEachRun(uint8_t* data, size_t length, Step step) {
    size_t groups = length / kLogTeaGroup;
    for (; groups >= kLanes; groups -= kLanes, data += kLanes * kLogTeaGroup) {
        Groups<kLanes> run;
        run.Load(data);
        step(run);
        run.Store(data);
    }
    for (; groups > 0; --groups, data += kLogTeaGroup) {
        Groups<1> run;
        run.Load(data);
        step(run);
        run.Store(data);
    }
}

}  // namespace

void LogTeaEncrypt(uint8_t* data, size_t length, const LogTeaKey& key) {
    const Key words(key);
    ForEachRun(data, length, [&words](auto& run) { run.Encrypt(words); });
}

void LogTeaDecrypt(uint8_t* data, size_t length, const LogTeaKey& key) {
    const Key words(key);
    ForEachRun(data, length, [&words](auto& run) { run.Decrypt(words); });
}

}  // namespace Quern
