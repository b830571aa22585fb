#include "Support/LogWriter.h"

#include <secp256k1.h>
#include <secp256k1_ecdh.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace OrvaneTest {
namespace {

void AppendLittleEndian(std::string& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>(value >> 8 * i);
}

uint32_t Word(const void* at) {
    const auto* bytes = static_cast<const unsigned char*>(at);
    return bytes[0] + 256u * bytes[1] + 65536u * bytes[2] + 16777216u * bytes[3];
}

int TakeX(unsigned char* out, const unsigned char* x, const unsigned char*, void*) {
    memcpy(out, x, 32);
    return 1;
}

}  // namespace

std::string NumberedLine(unsigned number) {
    static constexpr const char* kLevels[] = {"Debug", "Info", "Warning", "Event", "Error"};
    char line[256];
    snprintf(line, sizeof line,
             "[2026-11-24 21:%02u:%02u %03u] | %s | [Sample] |4711| Source%u.cpp:%u|Run| line %u of %x",
             number / 60 % 60, number % 60, number % 1000, kLevels[number % 5], number % 7, number + 1, number,
             number * 2654435761u);
    return line;
}

std::vector<std::string> NumberedLines(unsigned first, unsigned count) {
    std::vector<std::string> lines;
    for (unsigned i = 0; i < count; ++i)
        lines.push_back(NumberedLine(first + i));
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

std::string DeflateLines(std::vector<std::string> lines) {
    for (std::string& line : lines)
        line += '\n';
    return DeflatePieces(lines);
}

std::string DeflatePieces(const std::vector<std::string>& pieces) {
    z_stream stream{};
    if (deflateInit2(&stream, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK) abort();
    std::string deflated;
    for (const std::string& piece : pieces) {
        std::string room(piece.size() + 1024, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
        stream.avail_in = static_cast<uInt>(piece.size());
        stream.next_out = reinterpret_cast<Bytef*>(room.data());
        stream.avail_out = static_cast<uInt>(room.size());
        if (deflate(&stream, Z_SYNC_FLUSH) != Z_OK || stream.avail_in != 0) abort();
        deflated.append(room, 0, room.size() - stream.avail_out);
    }
    deflateEnd(&stream);
    return deflated;
}

std::string RecordBytes(const RecordFields& fields, bool withEnd) {
    std::string record;
    AppendLittleEndian(record, static_cast<uint32_t>(fields.magic), 1);
    AppendLittleEndian(record, fields.seq, 2);
    AppendLittleEndian(record, static_cast<uint32_t>(fields.beginHour), 1);
    AppendLittleEndian(record, static_cast<uint32_t>(fields.endHour), 1);
    AppendLittleEndian(record, static_cast<uint32_t>(fields.payload.size()), 4);
    record += fields.publicKey;
    record += fields.payload;
    if (withEnd) record += '\0';
    return record;
}

std::string CompressedRecord(unsigned seq, const std::vector<std::string>& lines) {
    return RecordBytes({.seq = seq, .payload = DeflateLines(lines)});
}

std::string PlainRecord(const std::string& text, int magic) {
    return RecordBytes({.magic = magic, .seq = 0, .payload = text});
}

WriterKey AgreeWith(const std::string& readerPublicKey, unsigned number) {
    secp256k1_context* context = secp256k1_context_create(SECP256K1_CONTEXT_NONE);
    unsigned char privateKey[32] = {1, 2, 3};
    privateKey[31] = static_cast<unsigned char>(number);
    secp256k1_pubkey own, reader;
    unsigned char bytes[65] = {4}, secret[32];
    size_t length = sizeof bytes;
    memcpy(bytes + 1, readerPublicKey.data(), 64);
    if (!secp256k1_ec_pubkey_parse(context, &reader, bytes, sizeof bytes) ||
        !secp256k1_ec_pubkey_create(context, &own, privateKey) ||
        !secp256k1_ecdh(context, secret, &reader, privateKey, TakeX, nullptr))
        abort();
    secp256k1_ec_pubkey_serialize(context, bytes, &length, &own, SECP256K1_EC_UNCOMPRESSED);
    secp256k1_context_destroy(context);
    WriterKey key;
    key.publicKey.assign(reinterpret_cast<char*>(bytes) + 1, 64);
    memcpy(key.tea.data(), secret, key.tea.size());
    return key;
}

std::string EncryptGroups(std::string payload, const std::array<uint8_t, 16>& key) {
    for (size_t at = 0; at + 8 <= payload.size(); at += 8) {
        uint32_t first = Word(&payload[at]), second = Word(&payload[at + 4]), sum = 0;
        for (int round = 0; round < 16; ++round) {
            sum += 0x9E3779B9u;
            first += ((second << 4) + Word(&key[0])) ^ (second + sum) ^ ((second >> 5) + Word(&key[4]));
            second += ((first << 4) + Word(&key[8])) ^ (first + sum) ^ ((first >> 5) + Word(&key[12]));
        }
        std::string group;
        AppendLittleEndian(group, first, 4);
        AppendLittleEndian(group, second, 4);
        payload.replace(at, 8, group);
    }
    return payload;
}

std::string EncryptedRecord(unsigned seq, const std::vector<std::string>& lines, const WriterKey& key) {
    const std::string payload = EncryptGroups(DeflateLines(lines), key.tea);
    return RecordBytes({.magic = 7, .seq = seq, .publicKey = key.publicKey, .payload = payload});
}

std::string MappedBlock(const std::string& bytes) {
    return bytes + std::string(153600 - bytes.size(), '\0');
}

}  // namespace OrvaneTest
