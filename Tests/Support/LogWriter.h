// Writes logs byte by byte from their description: shares no code with the library's writer or reader, so that both can
// be measured by it.
#ifndef ORVANE_TESTS_SUPPORT_LOG_WRITER_H
#define ORVANE_TESTS_SUPPORT_LOG_WRITER_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace OrvaneTest {

// A line of the logger's format without its newline; different for each number.
std::string NumberedLine(unsigned number);
// So many of them, from `first` on.
std::vector<std::string> NumberedLines(unsigned first, unsigned count);
// The lines as a reader shows them.
std::string Joined(const std::vector<std::string>& lines);

// The raw deflate stream of a block: each line and its newline flushed, never finished.
std::string DeflateLines(std::vector<std::string> lines);
// The same of pieces that are what they are.
std::string DeflatePieces(const std::vector<std::string>& pieces);

struct RecordFields {
    int magic = 9;
    unsigned seq = 1;
    int beginHour = 21, endHour = 21;
    std::string publicKey = std::string(64, '\0');
    std::string payload = {};
};
// Header, payload, and the end byte if wanted.
std::string RecordBytes(const RecordFields& fields, bool withEnd = true);

std::string CompressedRecord(unsigned seq, const std::vector<std::string>& lines);
std::string PlainRecord(const std::string& text, int magic = 8);

// A writer's side of the key agreement: its public key and what it agreed on with a reader.
struct WriterKey {
    std::string publicKey;
    std::array<uint8_t, 16> tea;
};
// `readerPublicKey`: 64 bytes. Different for each `number`.
WriterKey AgreeWith(const std::string& readerPublicKey, unsigned number = 1);
// Sixteen rounds on each whole group of eight bytes.
std::string EncryptGroups(std::string payload, const std::array<uint8_t, 16>& key);
std::string EncryptedRecord(unsigned seq, const std::vector<std::string>& lines, const WriterKey& key);

// A mapped file that holds these bytes and zeros behind them.
std::string MappedBlock(const std::string& bytes);

}  // namespace OrvaneTest

#endif
