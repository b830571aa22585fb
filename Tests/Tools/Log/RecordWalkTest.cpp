#include "Log/RecordWalk.h"

#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using namespace OrvaneTest;

const std::string kTip = "----------- begin of mmap -----------\n";

// Bytes that hold many a byte of a magic, none of which is a record's.
std::string Garbage(size_t length, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::string garbage(length, '\0');
    for (char& byte : garbage)
        byte = static_cast<char>(random() % 4 == 0 ? 6 + random() % 4 : 1 + random() % 255);
    return garbage;
}

TEST(RecordWalk, ReadsEveryMagic) {
    TestKeys keys;
    const WriterKey& writer = keys.writer;
    const auto first = NumberedLines(0, 10), second = NumberedLines(10, 500);
    const RecordFields withKey{.magic = 6, .seq = 0, .publicKey = writer.publicKey, .payload = kTip};
    const std::string file = RecordBytes(withKey) + EncryptedRecord(1, first, writer) + PlainRecord(kTip) +
                             CompressedRecord(65535, second) + CompressedRecord(1, first);

    const Collected read = WalkRecords(file, keys.ring);
    EXPECT_EQ(read.text, kTip + Joined(first) + kTip + Joined(second) + Joined(first));
    EXPECT_EQ(read.Verdicts(), "sound sound sound sound sound");
    EXPECT_TRUE(read.gaps.empty());
    EXPECT_EQ(read.records[1].keyName, "test");
    EXPECT_EQ(read.records[3].header.seq, 65535);
    EXPECT_EQ(read.records[3].header.beginHour, 21);
    EXPECT_EQ(read.records[4].offset + read.records[4].size, file.size());

    const Collected without = WalkRecords(file);
    EXPECT_EQ(without.text, kTip + kTip + Joined(second) + Joined(first));
    EXPECT_EQ(without.Verdicts(), "sound encrypted sound sound sound");
}

TEST(RecordWalk, FindsTheKeyThatFits) {
    const ReaderKey one(1), two(2), three(3);
    const auto lines = NumberedLines(0, 40);
    // Every length of the plain tail.
    for (unsigned more = 0; more < 16; ++more) {
        auto longer = lines;
        longer.push_back(NumberedLine(7) + std::string(more, static_cast<char>('a' + more)));
        const std::string file = EncryptedRecord(1, longer, AgreeWith(two.publicKey, 1)) +
                                 EncryptedRecord(2, lines, AgreeWith(one.publicKey, 2)) +
                                 EncryptedRecord(1, {"x"}, AgreeWith(two.publicKey, 1));
        KeyRing keys;
        keys.Add(three.privateKey, "three");
        keys.Add(two.privateKey, "two");
        keys.Add(one.privateKey, "one");
        const Collected read = WalkRecords(file, keys);
        EXPECT_EQ(read.text, Joined(longer) + Joined(lines) + "x\n");
        ASSERT_EQ(read.records.size(), 3u);
        EXPECT_EQ(read.records[0].keyName + read.records[1].keyName, "twoone");

        KeyRing wrong;
        wrong.Add(three.privateKey, "three");
        EXPECT_EQ(WalkRecords(file, wrong).Verdicts(), "encrypted encrypted encrypted");
    }
}

// A wrong key deciphers some record in thousands to a stream that ends early, behind a printable byte or two.
TEST(RecordWalk, AFewPrintableBytesProveNoKey) {
    const ReaderKey wrong(3), right(2);
    const WriterKey writer = AgreeWith(right.publicKey);
    std::string file, text;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr unsigned kRecords = 1000;  // enough for memory and threads; chance needs more
#else
    constexpr unsigned kRecords = 20000;
#endif
    for (unsigned i = 0; i < kRecords; ++i) {
        file += EncryptedRecord(i + 1, {NumberedLine(i)}, writer);
        text += NumberedLine(i) + "\n";
    }
    KeyRing both, closed;
    both.Add(wrong.privateKey, "wrong");
    both.Add(right.privateKey, "right");
    closed.Add(wrong.privateKey, "wrong");
    EXPECT_EQ(WalkRecords(file, both).text, text);
    const Collected read = WalkRecords(file, closed);
    EXPECT_EQ(read.text, "");
    EXPECT_EQ(read.records.size(), kRecords);
    for (const RecordReport& record : read.records)
        ASSERT_EQ(record.verdict, Verdict::kEncrypted);
}

// Damage that inflates all the same shows in the ends of the lines.
TEST(RecordWalk, ALineForEachFlush) {
    const std::string line = NumberedLine(1) + "\n";
    const std::string marker = "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 130000\n";
    const struct {
        std::vector<std::string> flushed;
        const char* why;  // null: sound
    } rows[] = {
        {{line, line + "more of it\n", marker, line}, nullptr},
        {{"no head\n", line, "none either\n"}, nullptr},
        {{line, "no head\n", line}, "has lost its head"},
        {{line, NumberedLine(1), line}, "has lost its end"},
        {{"x", "y\n"}, "has lost its end"},
    };
    for (const auto& row : rows) {
        const Collected read = WalkRecords(RecordBytes({.payload = DeflatePieces(row.flushed)}));
        EXPECT_EQ(read.text, std::accumulate(row.flushed.begin(), row.flushed.end(), std::string()));
        ASSERT_EQ(read.Verdicts(), row.why ? "damaged" : "sound") << row.flushed[1];
        EXPECT_TRUE(read.records[0].why.ends_with(row.why ? row.why : "")) << read.records[0].why;
    }
    // Only a record that has filled the block may end within a line.
    const std::string full = DeflateLines(NumberedLines(0, 5000)).substr(0, kBlockSize - 74);
    EXPECT_EQ(WalkRecords(RecordBytes({.payload = full})).Verdicts(), "sound");
    std::string cut = DeflateLines(NumberedLines(0, 5)) + DeflatePieces({NumberedLine(5)});
    cut.resize(cut.size() - 20);
    const std::string next = CompressedRecord(2, NumberedLines(0, 2));
    EXPECT_EQ(WalkRecords(RecordBytes({.payload = cut}) + next).Verdicts(), "damaged sound");
}

// Whatever is cut off, all before it is read, and of the record that was hit the lines that are whole.
TEST(RecordWalk, TruncationAtEveryByte) {
    TestKeys keys;
    const WriterKey& writer = keys.writer;
    const auto lines = NumberedLines(0, 6);
    for (const std::string& last : {CompressedRecord(2, lines), EncryptedRecord(2, lines, writer), PlainRecord(kTip)}) {
        const std::string before =
            EncryptedRecord(1, NumberedLines(100, 3), writer) + CompressedRecord(1, NumberedLines(50, 2));
        const std::string whole = WalkRecords(before + last, keys.ring).text;
        size_t saved = 0;
        for (size_t length = 0; length <= last.size(); ++length) {
            const Collected read = WalkRecords(before + last.substr(0, length), keys.ring);
            EXPECT_EQ(read.text, whole.substr(0, read.text.size())) << length;
            EXPECT_GE(read.text.size(), WalkRecords(before, keys.ring).text.size());
            EXPECT_GE(read.text.size(), saved) << "a longer file gives no less";
            saved = read.text.size();
            EXPECT_EQ(read.records.size() == 3 && read.records[2].verdict == Verdict::kSound, length == last.size());
            EXPECT_EQ(read.gaps.empty() && read.Verdicts().find("torn") == std::string::npos,
                      length == 0 || length == last.size());
        }
        // All but the end byte is all the text.
        EXPECT_EQ(WalkRecords(before + last.substr(0, last.size() - 1), keys.ring).text, whole);
        for (size_t length = 0; length < before.size(); ++length)
            WalkRecords(before.substr(0, length), keys.ring);
    }
}

// A header whose length is wrong, with a zero byte by chance where the end byte would be.
TEST(RecordWalk, AFalseLengthHidesNoRecord) {
    const auto lines = NumberedLines(0, 30), more = NumberedLines(30, 30);
    const std::string good = CompressedRecord(1, lines), next = CompressedRecord(2, more);
    for (const int magic : {6, 7, 8, 9}) {
        const RecordFields fields{.magic = magic,
                                  .seq = magic == 6 || magic == 8 ? 0u : 5u,
                                  .payload = Garbage(300) + good + next + Garbage(20)};
        const Collected read = WalkRecords(RecordBytes(fields) + next);
        EXPECT_TRUE(read.text.ends_with(Joined(lines) + Joined(more) + Joined(more))) << magic;
        EXPECT_FALSE(read.gaps.empty() && read.Verdicts().find("damaged") == std::string::npos) << magic;
    }
    // A good record whose length was damaged gives its text all the same, once.
    for (const uint32_t length : {0u, 1u, 100u, 5000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        std::string lied = good;
        for (int i = 0; i < 4; ++i)
            lied[static_cast<size_t>(5 + i)] = static_cast<char>(length >> 8 * i);
        const Collected read = WalkRecords(next + lied + next);
        EXPECT_EQ(read.text, Joined(more) + Joined(lines) + Joined(more)) << length;
        EXPECT_EQ(read.Verdicts(), "sound torn sound") << length;
        EXPECT_TRUE(read.gaps.empty()) << read.Told();
    }
}

TEST(RecordWalk, ADamagedPayloadGivesWhatInflates) {
    const auto lines = NumberedLines(0, 200);
    const std::string good = CompressedRecord(1, lines);
    std::string damaged = good;
    // A deflate block of the reserved type, where a line's flush ended.
    const size_t flush = damaged.find(std::string("\0\0\xFF\xFF", 4), damaged.size() / 2);
    damaged[flush + 4] = '\x07';
    const Collected read = WalkRecords(damaged + good);
    EXPECT_EQ(read.Verdicts(), "damaged sound");
    EXPECT_TRUE(read.gaps.empty());
    ASSERT_TRUE(read.text.ends_with(Joined(lines)));
    const std::string saved = read.text.substr(0, read.text.size() - Joined(lines).size());
    EXPECT_TRUE(Joined(lines).starts_with(saved));
    EXPECT_GT(saved.size(), Joined(lines).size() / 3);

    // Damaged at its very start it gives nothing, and is still told of as the record that it was.
    damaged = good;
    damaged[73] = '\x07';
    const Collected nothing = WalkRecords(good + damaged + good);
    EXPECT_EQ(nothing.Verdicts(), "sound damaged sound");
    EXPECT_EQ(nothing.text, Joined(lines) + Joined(lines));

    // A stream that says it has ended is taken up to there.
    const std::string ended = DeflateLines(lines) + std::string("\x03\x00", 2);
    EXPECT_EQ(WalkRecords(RecordBytes({.payload = ended})).Verdicts(), "sound");
    const Collected early = WalkRecords(RecordBytes({.payload = ended + "more"}) + good);
    EXPECT_EQ(early.Verdicts(), "damaged sound");
    EXPECT_EQ(early.text, Joined(lines) + Joined(lines));
}

TEST(RecordWalk, AnEncryptedRecordNeedsAPointOfTheCurve) {
    const auto lines = NumberedLines(0, 30);
    std::string record = EncryptedRecord(1, lines, TestKeys().writer);
    record[20] = static_cast<char>(record[20] ^ 1);
    const std::string next = CompressedRecord(2, lines);
    const Collected read = WalkRecords(record + next);
    EXPECT_EQ(read.Verdicts(), "damaged sound");
    EXPECT_EQ(read.text, Joined(lines));
    record[3] = 99;  // not even a header any more
    EXPECT_EQ(WalkRecords(record + next).gaps.size(), 1u);
}

TEST(RecordWalk, ForeignFilesAreNoLogs) {
    for (unsigned seed = 0; seed < 8; ++seed) {
        const Collected read = WalkRecords(Garbage(200000, seed));
        EXPECT_TRUE(read.records.empty()) << seed;
        EXPECT_EQ(read.gaps.size(), 1u);
    }
    for (const char byte : {'\0', '\6', '\7', '\x08', '\x09', '\xFF'}) {
        const Collected read = WalkRecords(std::string(300000, byte));
        EXPECT_TRUE(read.records.empty()) << int(byte);
    }
    EXPECT_TRUE(WalkRecords("").gaps.empty());
    EXPECT_EQ(WalkRecords("x").gaps.size(), 1u);
}

// A file that is being written: what is incomplete is waited for, and given once.
TEST(RecordWalk, WaitsForWhatIsStillBeingWritten) {
    const auto lines = NumberedLines(0, 20);
    const std::string file = PlainRecord(kTip) + CompressedRecord(1, lines) + CompressedRecord(2, lines);
    struct Growing : ByteSource {
        std::string bytes;
        size_t ReadAt(uint64_t offset, uint8_t* out, size_t least, size_t most) override {
            return MemorySource(Bytes(bytes)).ReadAt(offset, out, least, most);
        }
    } source;
    KeyRing none;
    Collected read;
    const auto walk = MakeWalk(SourceKind::kRecords, source, none, read);
    for (size_t length = 0; length <= file.size(); ++length) {
        source.bytes = file.substr(0, length);
        walk->Advance(true);
        EXPECT_TRUE(read.gaps.empty());
    }
    EXPECT_EQ(read.Verdicts(), "sound sound sound");
    EXPECT_EQ(read.text, kTip + Joined(lines) + Joined(lines));
    source.bytes += "\x09torn";
    walk->Advance(true);
    EXPECT_TRUE(read.gaps.empty());
    walk->Advance(false);
    EXPECT_EQ(read.gaps.size(), 1u);
}

struct DamagedFile {
    std::string bytes;
    std::vector<unsigned> whole;  // numbers of the records that were not hit
};

// Puts records together, and hits some places: a flipped bit, a stretch overwritten, cut out or put in.
DamagedFile DamageSomewhere(const std::vector<std::string>& records, std::mt19937& random) {
    std::vector<std::string> pieces = records;
    std::vector<bool> hit(records.size());
    for (unsigned hits = 1 + random() % 8; hits > 0; --hits) {
        const size_t which = random() % pieces.size();
        std::string& piece = pieces[which];
        if (piece.empty()) continue;
        const size_t at = random() % piece.size(), length = std::min<size_t>(1 + random() % 300, piece.size() - at);
        switch (random() % 5) {
            case 0:
                piece[at] = static_cast<char>(piece[at] ^ 1 << random() % 8);
                break;
            case 1:
                piece.replace(at, length, Garbage(length, random()));
                break;
            case 2:
                piece.replace(at, length, std::string(length, '\0'));
                break;
            case 3:
                piece.erase(at, length);
                break;
            case 4:
                piece.insert(at, Garbage(length, random()));
                break;
        }
        hit[which] = true;
    }
    DamagedFile file;
    for (size_t i = 0; i < pieces.size(); ++i) {
        file.bytes += pieces[i];
        if (!hit[i]) file.whole.push_back(static_cast<unsigned>(i));
    }
    return file;
}

// No damage to some records hides another one.
TEST(RecordWalk, RandomDamageHidesNoWholeRecord) {
    TestKeys keys;
    const WriterKey& writer = keys.writer;
    std::vector<std::string> records, texts;
    for (unsigned i = 0; i < 12; ++i) {
        const auto lines = NumberedLines(1000 * i, 5 + i * 7);
        texts.push_back(i % 4 == 3 ? "tip number " + std::to_string(i) + " ------------\n" : Joined(lines));
        records.push_back(i % 4 == 3   ? PlainRecord(texts.back())
                          : i % 4 == 1 ? EncryptedRecord(i + 1, lines, writer)
                                       : CompressedRecord(i + 1, lines));
    }
    for (unsigned seed = 0; seed < 1500; ++seed) {
        std::mt19937 random(seed);
        const DamagedFile file = DamageSomewhere(records, random);
        const Collected read = WalkRecords(file.bytes, keys.ring);
        size_t from = 0;
        for (const unsigned number : file.whole) {
            const size_t found = read.text.find(texts[number], from);
            ASSERT_NE(found, std::string::npos) << "record " << number << " of seed " << seed << ": " << read.Told();
            from = found + texts[number].size();
        }
    }
}

}  // namespace
}  // namespace OrvaneLog
