#include <algorithm>
#include <cctype>
#include <cstring>

#include "Serializer/Codec/RegularExpressionInternal.h"

namespace Quern {
namespace Slre {
namespace {

int Lower(char byte) {
    return tolower(static_cast<unsigned char>(byte));
}
bool IsSpace(char byte) {
    return isspace(static_cast<unsigned char>(byte)) != 0;
}
bool IsDigit(char byte) {
    return isdigit(static_cast<unsigned char>(byte)) != 0;
}

// `re` is at the backslash. An escape inside a set is not checked by compiling: an \x without digits matches nothing,
// any other character behind the backslash itself.
bool MatchesEscape(const char* re, char byte) {
    switch (re[1]) {
        case 'd':
            return IsDigit(byte);
        case 's':
            return IsSpace(byte);
        case 'S':
            return !IsSpace(byte);
        case 'b':
            return byte == '\b';
        case 'f':
            return byte == '\f';
        case 'n':
            return byte == '\n';
        case 'r':
            return byte == '\r';
        case 't':
            return byte == '\t';
        case 'v':
            return byte == '\v';
        case 'x':
            return hextoi(re + 2) == static_cast<unsigned char>(byte);
        default:
            return byte == re[1];
    }
}

// The first bracket that opens at or behind `at`, which lies in the bracket of index `bracket`.
// Counting on by one would not do: groups within a group, repeated groups and other alternatives stand between, and the
// n-th opening bracket has the n-th capture.
int NextBracket(const char* at, const regex_info* info, int bracket) {
    do {
        ++bracket;
    } while (bracket < info->num_brackets && info->brackets[bracket].ptr <= at);
    return bracket;
}

void LookAt(const char* place, regex_info* info) {
    if (place > info->furthest) info->furthest = place;
}

// The item in front of a "*" or "+" and what stands behind it, to the branch's end.
struct Repeat {
    const char* item;
    int itemLength;
    bool oneOrMore;
    bool lazy;
    const char* rest;
    int restLength;
};

// Takes the item as often as it goes and keeps the last place (the first, if lazy) from which the rest matches too.
int MatchRepeat(const Repeat& repeat, const char* subject, int subjectLength, regex_info* info, int bracket) {
    int scan = 0, best = 0, item, rest = kSlreNoMatch;
    bool restTried = false;
    do {
        item = bar(repeat.item, repeat.itemLength, subject + scan, subjectLength - scan, info, bracket);
        if (item < 0 && repeat.oneOrMore) break;
        if (item > 0) scan += item;
        if (repeat.restLength <= 0) {
            best = scan;
        } else if (item > 0 || !restTried) {  // else the rest would be tried at the same place again
            rest = bar(repeat.rest, repeat.restLength, subject + scan, subjectLength - scan, info, bracket);
            restTried = true;
            if (rest >= 0) best = scan + rest;
        }
    } while (item > 0 && !(repeat.lazy && best > 0));

    if (item < 0 && rest < 0 && !repeat.oneOrMore && scan > 0) {
        const int none = bar(repeat.rest, repeat.restLength, subject, subjectLength, info, bracket);
        if (none > 0) best = none;
    }
    if (best == 0 && (repeat.oneOrMore || (repeat.restLength > 0 && rest < 0))) return kSlreNoMatch;
    return best;
}

// Whether the item takes exactly one byte whenever it matches.
bool IsByteItem(const char* item) {
    return item[0] != '(' && item[0] != '^' && item[0] != '$';
}

// A set (`itemLength` ends with its end) or an escape or a byte, at a byte of the subject.
int MatchByte(const char* item, int itemLength, const char* subject, const regex_info* info) {
    return item[0] == '[' ? match_set(item + 1, itemLength - 1, subject, info) : match_op(item, subject, info);
}

// MatchRepeat, where it is greedy and the item takes one byte: the same outcome with the rest tried from the far end,
// most often once. Not for a rest that fills captures: which of its tries came last shows in them.
int MatchByteRepeat(const Repeat& repeat, const char* subject, int subjectLength, regex_info* info, int bracket) {
    int count = 0;
    while (count < subjectLength && MatchByte(repeat.item, repeat.itemLength, subject + count, info) > 0)
        ++count;
    info->steps -= static_cast<long long>(count) * repeat.itemLength;
    LookAt(subject + count, info);
    if (repeat.oneOrMore && count == 0) return kSlreNoMatch;
    if (repeat.restLength <= 0) return count;

    const auto tryRest = [&](int at) {
        return bar(repeat.rest, repeat.restLength, subject + at, subjectLength - at, info, bracket);
    };
    const int behindAll = tryRest(count);
    if (behindAll >= 0) return count + behindAll;
    if (!repeat.oneOrMore && count > 0) {
        const int none = tryRest(0);
        if (none > 0) return none;
    }
    for (int at = count - 1; at > 0; --at) {
        const int rest = tryRest(at);
        if (rest >= 0) return at + rest;
    }
    return kSlreNoMatch;
}

// Whether there is a "^" that is no part of a set or an escape.
bool HasStartAnchor(const char* re, int reLength) {
    for (int i = 0, step; i < reLength; i += step) {
        step = get_op_len(re + i, reLength - i);
        if (re[i] == '^' || step < 1) return true;
    }
    return false;
}

// What a group took of the subject, and what the rest of its branch took behind it; negative where it did not match.
struct GroupMatch {
    int taken;
    int rest;
};

// Matches the group and, behind it, the rest of the branch, giving the group ever less of the subject until both match.
GroupMatch MatchGroup(int group, const char* rest, int restLength, const char* subject, int subjectLength,
                      regex_info* info) {
    if (restLength <= 0) return {doh(subject, subjectLength, info, group), 0};
    GroupMatch match = {kSlreNoMatch, kSlreNoMatch};
    const char* furthest = info->furthest;
    int failed = -1;  // what the group took when the rest last failed: the same again would fail again
    for (int end = subjectLength; end >= 0;) {
        info->furthest = subject;
        match.taken = doh(subject, end, info, group);
        // Any end behind what was looked at gives the same.
        end = std::min(end - 1, static_cast<int>(info->furthest - subject));
        if (match.taken >= 0 && match.taken != failed) {
            match.rest = bar(rest, restLength, subject + match.taken, subjectLength - match.taken, info, group);
            failed = match.taken;
        }
        furthest = std::max(furthest, info->furthest);
        if (match.rest >= 0) break;
    }
    info->furthest = furthest;
    return match;
}

}  // namespace

int doh(const char* subject, int subjectLength, regex_info* info, int bracket) {
    const BracketRecord& group = info->brackets[bracket];
    const BranchRecord* bars = info->branches + group.first_branch;
    const char* start = group.ptr;
    for (int i = 0;; ++i) {
        const bool isLast = i == group.branch_count;
        const char* end = isLast ? group.ptr + group.len : bars[i].bar_ptr;
        const int result = bar(start, static_cast<int>(end - start), subject, subjectLength, info, bracket);
        if (result > 0 || isLast) return result;
        start = end + 1;
    }
}

int bar(const char* re, int reLength, const char* subject, int subjectLength, regex_info* info, int bracket) {
    int j = 0;
    for (int i = 0, step; i < reLength && j <= subjectLength; i += step) {
        if (--info->steps < 0) return kSlreNoMatch;
        const bool isGroup = re[i] == '(';
        const int next = isGroup ? NextBracket(re + i, info, bracket) : bracket;
        if (next >= info->num_brackets) return kSlreInternalError;
        step = isGroup ? info->brackets[next].len + 2 : get_op_len(re + i, reLength - i);
        if (re[i] == '[') info->steps -= step;
        if (is_quantifier(re + i)) return kSlreUnexpectedQuantifier;
        if (step < 1) return kSlreInvalidCharacterSet;

        const int behind = i + step;
        if (behind < reLength && re[behind] == '?') {
            const int taken = bar(re + i, step, subject + j, subjectLength - j, info, bracket);
            if (taken > 0) j += taken;
            ++i;
            continue;
        }
        if (behind < reLength && is_quantifier(re + behind)) {
            const bool lazy = behind + 1 < reLength && re[behind + 1] == '?';
            const int rest = behind + (lazy ? 2 : 1);
            const Repeat repeat = {re + i, step, re[behind] == '+', lazy, re + rest, reLength - rest};
            const bool fillsCaptures =
                info->caps && repeat.restLength > 0 && memchr(repeat.rest, '(', repeat.restLength);
            const auto match = lazy || fillsCaptures || !IsByteItem(re + i) ? MatchRepeat : MatchByteRepeat;
            const int taken = match(repeat, subject + j, subjectLength - j, info, bracket);
            return taken < 0 ? taken : j + taken;
        }

        if (re[i] == '^') {
            if (j != 0) return kSlreNoMatch;
        } else if (re[i] == '$') {
            LookAt(subject + j, info);
            if (j != subjectLength) return kSlreNoMatch;
        } else if (isGroup) {
            const int restLength = reLength - behind;
            const GroupMatch match = MatchGroup(next, re + behind, restLength, subject + j, subjectLength - j, info);
            if (match.taken < 0) return match.taken;
            if (info->caps && match.taken > 0) info->caps[next - 1] = {subject + j, match.taken};
            j += match.taken;
            // Going on would find the same again, at twice the cost for each group of the branch. Only a "^", which
            // looks at j, may then see another thing than it did at the start of the rest.
            info->steps -= std::max(restLength, 0);
            const bool known = restLength > 0 && match.rest >= 0 && !HasStartAnchor(re + behind, restLength);
            if (known) return j + match.rest;
        } else {
            LookAt(subject + j, info);
            if (j == subjectLength) return kSlreNoMatch;
            // A set that the pattern's end closes counts one more than there is.
            const int taken = MatchByte(re + i, std::min(step, reLength - i), subject + j, info);
            if (taken < 1) return taken;
            ++j;
        }
    }
    return j;
}

int match_set(const char* re, int reLength, const char* subject, const regex_info* info) {
    int i = 0;
    const bool inverted = re[0] == '^';
    if (inverted) ++i;
    const bool ignoreCase = info->flags & kSlreIgnoreCase;
    int result = kSlreNoMatch;
    while (i < reLength && re[i] != ']' && result < 1) {
        if (re[i] != '-' && re[i + 1] == '-' && re[i + 2] != ']' && re[i + 2] != '\0') {
            const signed char from = static_cast<signed char>(re[i]), to = static_cast<signed char>(re[i + 2]);
            const signed char byte = static_cast<signed char>(*subject);
            const bool inside = ignoreCase ? Lower(*subject) >= Lower(re[i]) && Lower(*subject) <= Lower(re[i + 2])
                                           : byte >= from && byte <= to;
            result = inside ? 1 : kSlreNoMatch;
            i += 3;
        } else {
            result = match_op(re + i, subject, info);
            i += op_len(re + i);
        }
    }
    return (result > 0) != inverted ? 1 : kSlreNoMatch;
}

int match_op(const char* re, const char* subject, const regex_info* info) {
    bool matches;
    switch (re[0]) {
        case '.':
            return 1;
        case '$':
            return kSlreNoMatch;
        case '|':
            return kSlreInternalError;
        case '\\':
            matches = MatchesEscape(re, *subject);
            break;
        default:
            matches = re[0] == *subject || (info->flags & kSlreIgnoreCase && Lower(re[0]) == Lower(*subject));
            break;
    }
    return matches ? 1 : kSlreNoMatch;
}

}  // namespace Slre
}  // namespace Quern
