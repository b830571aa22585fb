#include "Serializer/Codec/RegularExpression.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "Serializer/Codec/RegularExpressionInternal.h"

namespace Quern {
namespace Slre {

int op_len(const char* re) {
    if (re[0] != '\\') return 1;
    return re[1] == 'x' ? 4 : 2;
}

int set_len(const char* re, int reLength) {
    int length = 0;
    while (length < reLength && re[length] != ']')
        length += op_len(re + length);
    return length <= reLength ? length + 1 : -1;
}

int get_op_len(const char* re, int reLength) {
    return re[0] == '[' ? set_len(re + 1, reLength - 1) + 1 : op_len(re);
}

bool is_quantifier(const char* re) {
    return re[0] == '*' || re[0] == '+' || re[0] == '?';
}

bool is_metacharacter(const char* re) {
    static const char kMetacharacters[] = "^$().[]*+?|\\Ssdbfnrtv";
    return memchr(kMetacharacters, re[0], sizeof kMetacharacters) != nullptr;
}

int toi(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

int hextoi(const char* digits) {
    const int high = toi(digits[0]);
    if (high < 0) return -1;
    const int low = toi(digits[1]);
    return low < 0 ? -1 : high << 4 | low;
}

namespace {

// The bracket that a "|" or ")" belongs to. Where an earlier group of the same depth had groups inside, this takes that
// earlier group for the one that is open.
int OpenBracket(const regex_info* info, int depth) {
    const int last = info->num_brackets - 1;
    return info->brackets[last].len == -1 ? last : depth;
}

int OpenGroup(const char* body, int* depth, regex_info* info) {
    if (info->num_brackets >= kMaxBrackets) return kSlreTooManyBrackets;
    ++*depth;
    const int before = info->num_brackets;
    info->brackets[info->num_brackets++] = {body, -1, 0, 0};
    return info->num_caps > 0 && before > info->num_caps ? kSlreCapsTooSmall : 0;
}

int CloseGroup(const char* closing, int* depth, regex_info* info) {
    BracketRecord& bracket = info->brackets[OpenBracket(info, *depth)];
    bracket.len = static_cast<int>(closing - bracket.ptr);
    if (*depth < 1) return kSlreUnbalancedBrackets;
    --*depth;
    return closing[-1] == '(' ? kSlreNoMatch : 0;
}

int CheckEscape(const char* escape, int restLength) {
    if (restLength < 2) return kSlreInvalidMetacharacter;
    const bool valid = escape[1] == 'x' ? hextoi(escape + 2) >= 0 : is_metacharacter(escape + 1);
    return valid ? 0 : kSlreInvalidMetacharacter;
}

int AddBranch(const char* bar, int depth, regex_info* info) {
    if (info->num_branches >= kMaxBranches) return kSlreTooManyBranches;
    info->branches[info->num_branches++] = {OpenBracket(info, depth), bar};
    return 0;
}

}  // namespace

int foo(const char* re, int reLength, const char* subject, int subjectLength, regex_info* info) {
    info->brackets[0] = {re, reLength, 0, 0};
    info->num_brackets = 1;

    int depth = 0;
    for (int i = 0; i < reLength; i += get_op_len(re + i, reLength - i)) {
        if (--info->steps < 0) return kSlreNoMatch;
        int error = 0;
        switch (re[i]) {
            case '(':
                error = OpenGroup(re + i + 1, &depth, info);
                break;
            case ')':
                error = CloseGroup(re + i, &depth, info);
                break;
            case '\\':
                error = CheckEscape(re + i, reLength - i);
                break;
            case '|':
                error = AddBranch(re + i, depth, info);
                break;
            default:
                break;
        }
        if (error < 0) return error;
    }
    if (depth != 0) return kSlreUnbalancedBrackets;

    setup_branch_points(info);
    return baz(subject, subjectLength, info);
}

void setup_branch_points(regex_info* info) {
    // This sort may turn round the branches of one bracket where brackets are mixed; patterns rely on the outcome.
    for (int i = 0; i < info->num_branches; ++i) {
        for (int j = i + 1; j < info->num_branches; ++j) {
            if (info->branches[i].bracket_index > info->branches[j].bracket_index) {
                std::swap(info->branches[i], info->branches[j]);
            }
        }
    }
    int branch = 0;
    for (int i = 0; i < info->num_brackets; ++i) {
        info->brackets[i].first_branch = branch;
        while (branch < info->num_branches && info->branches[branch].bracket_index == i)
            ++branch;
        info->brackets[i].branch_count = branch - info->brackets[i].first_branch;
    }
}

int baz(const char* subject, int subjectLength, regex_info* info) {
    if (subjectLength < 0) return kSlreNoMatch;
    const int last = info->brackets[0].ptr[0] == '^' ? 0 : subjectLength;
    for (int offset = 0;; ++offset) {
        const int result = doh(subject + offset, subjectLength - offset, info, 0);
        if (result >= 0) return offset + result;
        if (offset == last) return result;
    }
}

}  // namespace Slre

namespace {

int Match(const char* regexp, int length, const char* subject, int subjectLength, slre_cap* caps, int numCaps,
          int flags, long long& steps) {
    Slre::regex_info info;  // the records are written before they are read: no need to clear 4 KB at each call
    info.num_brackets = 0;
    info.num_branches = 0;
    info.caps = caps;
    info.num_caps = numCaps;
    info.flags = flags;
    info.furthest = subject;
    info.steps = steps;
    const int result = Slre::foo(regexp, length, subject, subjectLength, &info);
    steps = info.steps;
    return result;
}

}  // namespace

int slre_match(const char* regexp, const char* subject, int subjectLength, slre_cap* caps, int numCaps, int flags) {
    long long steps = INT64_MAX;  // more than a life has
    return Match(regexp, static_cast<int>(strlen(regexp)), subject, subjectLength, caps, numCaps, flags, steps);
}

int slre_match_bounded(const char* regexp, const char* subject, int subjectLength, int flags, long long& steps) {
    const size_t length = strlen(regexp);
    if (length > kSlreLongestBoundedPattern) return kSlreNoMatch;
    const int result = Match(regexp, static_cast<int>(length), subject, subjectLength, nullptr, 0, flags, steps);
    if (steps >= 0) return result;
    steps = 0;
    return kSlreNoMatch;
}

}  // namespace Quern
