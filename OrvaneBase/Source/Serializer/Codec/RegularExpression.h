// A small backtracking matcher of regular expressions over bytes. Allocates nothing; no state between calls; any
// thread.
//
// The language, and no more:
//   ^ $                at the start of a branch's text, at the subject's end
//   .                  any byte
//   ( )  |             capturing groups, which may nest; alternatives, tried left to right
//   [a-z_]  [^a-z]     sets of bytes, escapes and ranges; a "-" first or last is itself. "." in a set is any byte
//   * + ?  *? +?       greedy and lazy repetition of the item, set or group in front
//   \d \s \S           a digit, white space, no white space
//   \b \f \n \r \t \v  the control characters (\b is 0x08), \xHH the byte of two hexadecimal digits
//   \ and one of ^$().[]*+?|\  that character
// There are no counts such as {8}, no \D, \w or \W, no word boundary.
//
// Differences from larger engines that a pattern's author should know:
// - "?" does not backtrack: what it matched stays matched. "*?" takes its item at least once where it can.
// - Where what follows matches in front of as well as inside what a "*" could take, but not behind it, the "*" takes
//   nothing: "a*[ab]" on "aa" ends at 1.
// - The first alternative that takes at least one byte is taken for good.
// - A group that holds groups and does not stand first ("(a)(b(c)d)") is not closed where it looks closed: nest groups
//   only in the first group of a pattern.
#ifndef ORVANE_SERIALIZER_CODEC_REGULAR_EXPRESSION_H
#define ORVANE_SERIALIZER_CODEC_REGULAR_EXPRESSION_H

namespace Quern {

// One capture: a piece of the subject, which is never copied.
struct slre_cap {
    const char* ptr;
    int len;
};

constexpr int kSlreIgnoreCase = 1;

constexpr int kSlreNoMatch = -1;  // also a pattern with "()", and a negative subject length
constexpr int kSlreUnexpectedQuantifier = -2;
constexpr int kSlreUnbalancedBrackets = -3;
constexpr int kSlreInternalError = -4;  // also a "|" inside a set or in a branch that was cut wrongly
constexpr int kSlreInvalidCharacterSet = -5;
constexpr int kSlreInvalidMetacharacter = -6;
constexpr int kSlreCapsTooSmall = -7;
constexpr int kSlreTooManyBranches = -8;  // over 100 "|"
constexpr int kSlreTooManyBrackets = -9;  // over 99 pairs

// Finds the first place in the subject at which the pattern matches.
//
// `regexp` ends with a NUL; the subject is counted, may hold NUL bytes, and no byte behind it is read. Bit 0 of `flags`
// ignores the case of literals and of the ends of ranges (not of escapes). Returns the offset of the byte behind the
// match, counted from the subject's start, or one of the negative codes above.
//
// caps[n - 1] receives what the n-th opening bracket matched, if that is not empty; a capture that was not reached
// keeps its old content, and one reached only on a path that failed later may have been written. `caps` may be null. A
// positive `numCaps` is the room in `caps`, and a pattern with more brackets gives kSlreCapsTooSmall; with 0 the
// pattern is not limited and `caps` must have room for all its brackets.
//
// A pattern that ends inside an escape within a set, such as "[\" or "[\x4", never returns.
//
// Cost: 4 KB of stack, and a recursion that goes as deep as the pattern has groups and quantifiers, some 350 bytes for
// each: a pattern of a thousand "a*" can exhaust the stack of a thread. The time over a subject of n bytes grows with n
// to the power of the number of items of varying length (".*", "(a*)") that follow or hold one another, where the match
// fails in the end. Over 64 bytes three groups in groups ("(((.*)b)b)b") cost 2 ms, four repetitions in a row
// ("a*a*a*a*b") 8 ms, and each one more multiplies that by 20 to 60. File names and patterns written for them take
// microseconds; patterns from outside belong into slre_match_bounded. Benchmarks/Codec measures all this.
int slre_match(const char* regexp, const char* subject, int subjectLength, slre_cap* caps, int numCaps, int flags);

// A pattern of slre_match_bounded that is longer matches nothing: with it grows the stack that matching takes.
constexpr int kSlreLongestBoundedPattern = 1024;

// slre_match without captures, for patterns from outside: always returns, and takes no more than 400 KB of stack.
// `steps` is the budget and receives what is left of it, 0 if it was too small: then, and for a pattern that is too
// long, the result is kSlreNoMatch. A million steps take some milliseconds; file names and patterns written for them
// need a thousand.
int slre_match_bounded(const char* regexp, const char* subject, int subjectLength, int flags, long long& steps);

}  // namespace Quern

#endif
