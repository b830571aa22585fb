// Notes what a walk tells, and checks what holds of every walk.
#ifndef ORVANE_TESTS_TOOLS_LOG_COLLECTED_H
#define ORVANE_TESTS_TOOLS_LOG_COLLECTED_H

#include "Log/LogWalk.h"
#include "Support/LogWriter.h"

#include "Support/Test.h"

namespace OrvaneLog {

class Collected : public ReadEvents {
public:
    struct Gap {
        uint64_t offset, size;
        std::string why;
    };

    void OnRecord(const RecordHeader&, std::span<const uint8_t>) override {
        EXPECT_FALSE(_open) << "a record within a record";
        _open = true;
        _textOfRecord = 0;
    }
    void OnText(std::string_view piece) override {
        EXPECT_FALSE(piece.empty());
        EXPECT_LE(piece.size(), 256u << 10) << "pieces are of bounded size";
        text += piece;
        _textOfRecord += piece.size();
    }
    void OnRecordEnd(const RecordReport& report) override {
        EXPECT_TRUE(_open);
        EXPECT_EQ(report.textSize, _textOfRecord);
        EXPECT_EQ(report.verdict == Verdict::kDamaged || report.verdict == Verdict::kTorn, !report.why.empty());
        _open = false;
        records.push_back(report);
        _covered = std::max(_covered, report.offset + report.size);
    }
    void OnSkipped(uint64_t offset, uint64_t size, const std::string& why) override {
        EXPECT_FALSE(_open);
        EXPECT_TRUE(isText || offset == _covered) << "a gap begins where what was told of ends";
        EXPECT_GT(size, 0u);
        EXPECT_FALSE(why.empty());
        gaps.push_back({offset, size, why});
        _covered = offset + size;
    }

    std::string Verdicts() const {
        std::string words;
        for (const RecordReport& record : records)
            words += std::string(words.empty() ? "" : " ") + VerdictWord(record.verdict);
        return words;
    }
    // All that was told, for the message of a failing test.
    std::string Told() const {
        std::string all;
        for (const RecordReport& record : records)
            all += std::to_string(record.offset) + "+" + std::to_string(record.size) + " magic " +
                   std::to_string(record.header.magic) + " " + VerdictWord(record.verdict) + ", " +
                   std::to_string(record.textSize) + " bytes of text " + record.why + "; ";
        for (const Gap& gap : gaps)
            all += std::to_string(gap.offset) + "+" + std::to_string(gap.size) + " " + gap.why + "; ";
        return all;
    }
    uint64_t Covered() const { return _covered; }

    std::string text;
    bool isText = false;  // of a plain-text source, whose text is in no record
    std::vector<RecordReport> records;
    std::vector<Gap> gaps;

private:
    bool _open = false;
    uint64_t _textOfRecord = 0;
    uint64_t _covered = 0;
};

inline std::span<const uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// Walks over the bytes from end to end. Every byte must be told of, in a record or a gap.
inline Collected WalkRecords(const std::string& bytes, KeyRing& keys) {
    Collected collected;
    MemorySource source(Bytes(bytes));
    MakeWalk(SourceKind::kRecords, source, keys, collected)->Advance(false);
    EXPECT_EQ(collected.Covered(), bytes.size());
    return collected;
}
inline Collected WalkRecords(const std::string& bytes) {
    KeyRing none;
    return WalkRecords(bytes, none);
}

// The key pair that the tests encrypt for.
struct ReaderKey {
    Quern::CurvePrivateKey privateKey{};
    std::string publicKey;  // 64 bytes

    explicit ReaderKey(uint8_t number = 77) {
        privateKey[5] = privateKey[31] = number;
        Quern::CurvePublicKey bytes;
        EXPECT_TRUE(Quern::CurvePublicFromPrivate(privateKey, bytes));
        publicKey.assign(bytes.begin(), bytes.end());
    }
};

// A reader with a key, and a writer who encrypts for it.
struct TestKeys {
    TestKeys() { ring.Add(reader.privateKey, "test"); }

    const ReaderKey reader;
    const OrvaneTest::WriterKey writer = OrvaneTest::AgreeWith(reader.publicKey);
    KeyRing ring;
};

}  // namespace OrvaneLog

#endif
