// A value of the application's manifest, with the conversions of the home platform's numbers and texts.
#ifndef ORVANE_STORAGE_BUNDLE_INFO_VALUE_H
#define ORVANE_STORAGE_BUNDLE_INFO_VALUE_H

#include <string>
#include <variant>
#include <vector>

namespace Quern {

struct InfoValue {
    struct Entry;
    using Dictionary = std::vector<Entry>;  // in the manifest's order
    // What is none of these (dates, data, lists) has no value here.
    std::variant<std::monostate, bool, long long, double, std::string, Dictionary> value;

    bool IsDictionary() const { return std::holds_alternative<Dictionary>(value); }
    // A boolean is a number too.
    bool IsNumber() const;
    // Null unless it is a text.
    const std::string* Text() const { return std::get_if<std::string>(&value); }
    // The entry of a dictionary; null if there is none, or if this is no dictionary.
    const InfoValue* Find(const char* key) const;

    // A number, cut to 32 bits; a real is cut at the point and kept within the type's range. 0 for anything else.
    int IntValue() const;
    // The same for 64 bits. A text is read as blanks, a sign and digits, and kept within the type's range.
    long long LongLongValue() const;
    // Whether a number is not 0, or whether a text, behind blanks, a sign and zeros, goes on with Y, y, T, t or 1 to 9.
    bool BoolValue() const;
    // Whether the conversions have a meaning: it is a number or a text.
    bool IsConvertible() const { return IsNumber() || Text(); }
};

struct InfoValue::Entry {
    std::string key;
    InfoValue value;
};

}  // namespace Quern

#endif
