/// \file RecordReader.h
/// Reads the bytes in which the library's records cross to other libraries. Header-only, C++11.
///
/// Integers are signed, big-endian and of 4 bytes; a text is its length, an integer, and its bytes without a
/// terminator; a list is its count, an integer, and its entries. Nothing in the bytes tells which of these comes next:
/// a reader asks for the fields in the order in which they were written.
///
///     Quern::RecordReader reader(bytes, size);
///     std::vector<std::string> names;
///     for (int32_t left = reader.Count(); left > 0; --left) names.push_back(reader.Text());
///     if (!reader.IsWhole()) names.clear();  // the record was damaged or cut short
#ifndef ORVANE_RECORD_READER_H
#define ORVANE_RECORD_READER_H

#include <cstdint>
#include <string>

namespace Quern {

/// Walks over bytes that stay the caller's and must outlive the reader. The bytes are not trusted: nothing is read
/// beyond their end, and what is not there is 0 or empty. From the first such field on every further one is 0 or empty
/// too, so it is enough to ask IsWhole once, behind the last. Belongs to one thread.
class RecordReader {
public:
    /// \param bytes the record; null counts as no bytes
    /// \param size  how many bytes there are; below 1 counts as none
    RecordReader(const char* bytes, int size) : _at(bytes), _left(bytes && size > 0 ? size : 0), _isWhole(true) {}

    /// \return the next integer
    int32_t Integer() {
        if (!Has(4)) return 0;
        uint32_t bits = 0;
        for (int i = 0; i < 4; ++i)
            bits = bits << 8 | static_cast<unsigned char>(*_at++);
        _left -= 4;
        return static_cast<int32_t>(bits);
    }
    /// \return the next text, copied; it may hold zero bytes. Empty for a length below 0 or beyond the end
    std::string Text() {
        const int32_t length = Integer();
        if (!Has(length)) return std::string();
        const std::string text(_at, static_cast<size_t>(length));
        _at += length;
        _left -= length;
        return text;
    }
    /// \return how many entries of a list follow; never more than there are bytes left, so that a damaged count
    ///         reserves no memory out of proportion
    int32_t Count() {
        const int32_t count = Integer();
        return Has(count) ? count : 0;
    }
    /// \return false once something was not there. Bytes that were left over are no fault
    bool IsWhole() const { return _isWhole; }

private:
    // Whether that many bytes are left; once they were not, no more are handed out.
    bool Has(int32_t count) {
        if (count < 0 || count > _left) _isWhole = false;
        return _isWhole;
    }

    const char* _at;
    int32_t _left;
    bool _isWhole;
};

}  // namespace Quern

#endif
