// The short texts of which the text forms are made: names, printed numbers, dates and addresses; a copy and a
// comparison that suit them.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_SHORT_TEXT_H
#define ORVANE_SERIALIZER_ZYL_ZYL_SHORT_TEXT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Quern {

// Enough for any printed number, address, date or date and time.
constexpr size_t kMaxShortText = 32;

// Copies a text of sizeof(Word) to 2 * sizeof(Word) bytes as two words, its first and its last. The shorter the text,
// the more they overlap. The words go through variables, since no address here need be aligned.
template <typename Word>
inline void CopyEnds(char* target, std::string_view text) {
    Word head;
    Word tail;
    memcpy(&head, text.data(), sizeof head);
    memcpy(&tail, text.data() + text.size() - sizeof tail, sizeof tail);
    memcpy(target, &head, sizeof head);
    memcpy(target + text.size() - sizeof tail, &tail, sizeof tail);
}

// Copies the text, without a terminator, and returns the place behind the copy. The two must not overlap. Up to 16
// bytes the call of memcpy would cost more than the copy, unless the compiler knows the size.
inline char* CopyText(char* target, std::string_view text) {
    const size_t size = text.size();
    if (size > 16 || __builtin_constant_p(size)) {
        memcpy(target, text.data(), size);
    } else if (size >= 8) {
        CopyEnds<uint64_t>(target, text);
    } else if (size >= 4) {
        CopyEnds<uint32_t>(target, text);
    } else if (size >= 2) {
        CopyEnds<uint16_t>(target, text);
    } else if (size == 1) {
        *target = text[0];
    }
    return target + size;
}

// Compares two texts of sizeof(Word) to 2 * sizeof(Word) bytes by their first and their last word, as CopyEnds copies.
template <typename Word>
inline bool HasSameEnds(const char* left, const char* right, size_t size) {
    Word heads[2];
    Word tails[2];
    memcpy(&heads[0], left, sizeof(Word));
    memcpy(&heads[1], right, sizeof(Word));
    memcpy(&tails[0], left + size - sizeof(Word), sizeof(Word));
    memcpy(&tails[1], right + size - sizeof(Word), sizeof(Word));
    return heads[0] == heads[1] && tails[0] == tails[1];
}

// Whether the first `size` characters are the same. Up to 16 the call of memcmp would cost more than the comparison.
inline bool IsSameText(const char* left, const char* right, size_t size) {
    if (size > 16) return memcmp(left, right, size) == 0;
    if (size >= 8) return HasSameEnds<uint64_t>(left, right, size);
    if (size >= 4) return HasSameEnds<uint32_t>(left, right, size);
    if (size >= 2) return HasSameEnds<uint16_t>(left, right, size);
    return size == 0 || *left == *right;
}

}  // namespace Quern

#endif
