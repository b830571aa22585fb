// The inside of slre_match: what compiling finds in a pattern, and the routines that compile and match.
#ifndef ORVANE_SERIALIZER_CODEC_REGULAR_EXPRESSION_INTERNAL_H
#define ORVANE_SERIALIZER_CODEC_REGULAR_EXPRESSION_INTERNAL_H

#include <cstdint>

#include "Serializer/Codec/RegularExpression.h"

namespace Quern {
namespace Slre {

constexpr int kMaxBrackets = 100;  // the whole pattern is the first
constexpr int kMaxBranches = 100;

struct BracketRecord {
    const char* ptr;  // the first byte of the bracket's body
    int len;          // of the body; -1 until its closing bracket is met
    int first_branch;
    int branch_count;
};

struct BranchRecord {
    int bracket_index;
    const char* bar_ptr;  // the "|"
};

// One call of slre_match. The brackets stand in the order in which they open.
struct regex_info {
    BracketRecord brackets[kMaxBrackets];
    int num_brackets;
    BranchRecord branches[kMaxBranches];
    int num_branches;
    slre_cap* caps;
    int num_caps;
    int flags;
    // The furthest place of the subject at which a byte, or whether the subject ends there, has been looked at.
    // Matching again over a subject that ends behind this place would give the same.
    const char* furthest;
    // What is left of the budget; below 0 everything ends without a match. Costs about as much as the work that it
    // counts: an item of the pattern tried, a byte of the subject compared.
    long long steps = INT64_MAX;
};

// Compiling. foo records brackets and branches, checks the pattern, and then matches.
int foo(const char* re, int reLength, const char* subject, int subjectLength, regex_info* info);
void setup_branch_points(regex_info* info);
// Tries the offsets of the subject one after the other.
int baz(const char* subject, int subjectLength, regex_info* info);

// Matching at the start of the given text. All return the number of bytes taken, or a negative code.
// doh tries a bracket's branches; bar matches one branch, which lies in the bracket of index `bracket`.
int doh(const char* subject, int subjectLength, regex_info* info, int bracket);
int bar(const char* re, int reLength, const char* subject, int subjectLength, regex_info* info, int bracket);
// match_set and match_op look at one byte. `re` is behind the set's "[" and reaches to the set's end.
int match_set(const char* re, int reLength, const char* subject, const regex_info* info);
int match_op(const char* re, const char* subject, const regex_info* info);

// The length of the item at `re`: a set, an escape or a byte. 0 for a set that the pattern's end cuts inside an escape.
int get_op_len(const char* re, int reLength);
int op_len(const char* re);
int set_len(const char* re, int reLength);

bool is_quantifier(const char* re);
// Whether the character may stand behind a backslash ("x" apart).
bool is_metacharacter(const char* re);
// The value of the two hexadecimal digits; -1 if one of them is none.
int hextoi(const char* digits);
int toi(char digit);

}  // namespace Slre
}  // namespace Quern

#endif
