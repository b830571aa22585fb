// The INI text against its plainest form, lines that are searched anew at every call. The first two lines of the input
// are a section and a key; of the others those that begin with a byte of 1 to 4 are edits, the rest are lines of the
// text.
#include "Storage/Bundle/IniText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Base/Container/TrimBlanks.h"

namespace {

using std::string_view;
using Lines = std::vector<std::string>;

class PlainText {
public:
    bool Find(string_view section, string_view key, string_view& value) const {
        for (size_t header = 0; header < lines.size(); ++header) {
            if (!IsHeaderOf(header, section)) continue;
            for (size_t at = header + 1; at < lines.size() && lines[at][0] != '['; ++at) {
                const size_t assignment = AssignmentOf(at, key);
                if (assignment == string_view::npos) continue;
                const string_view rest = string_view(lines[at]).substr(assignment + 1);
                value = Quern::TrimBlanks(rest.substr(0, rest.find('#')));
                return !rest.empty();
            }
        }
        return false;
    }
    void Write(string_view section, string_view key, string_view value) {
        const std::string line = std::string(key) + "=" + std::string(value);
        size_t at = Header(section);
        if (at == lines.size()) {
            lines.insert(lines.end(), {"", "[" + std::string(section) + "]", line});
            return;
        }
        for (++at; at < lines.size() && lines[at][0] != '['; ++at) {
            const size_t assignment = AssignmentOf(at, key);
            if (assignment == string_view::npos) continue;
            const size_t comment = lines[at].find('#', assignment);
            lines[at] = lines[at].substr(0, assignment + 1) + std::string(value) +
                        (comment == string_view::npos ? "" : lines[at].substr(comment));
            return;
        }
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at < lines.size() ? at - 1 : at), line);
    }
    Lines Keys(string_view section) const {
        Lines keys;
        for (size_t at = Header(section) + 1; at < lines.size() && lines[at][0] != '['; ++at) {
            const size_t assignment = lines[at].find('=');
            if (assignment != string_view::npos)
                keys.emplace_back(Quern::TrimBlanks(string_view(lines[at]).substr(0, assignment)));
        }
        return keys;
    }
    bool RemoveLine(string_view section, string_view prefix) {
        for (size_t at = Header(section) + 1; at < lines.size(); ++at) {
            if (!lines[at].starts_with(prefix)) continue;
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at));
            return true;
        }
        return false;
    }
    bool RemoveSection(string_view section) {
        const size_t begin = Header(section);
        size_t end = begin + 1;
        while (end < lines.size() && lines[end][0] != '[')
            ++end;
        if (begin == lines.size()) return false;
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(begin),
                    lines.begin() + static_cast<std::ptrdiff_t>(end));
        return true;
    }
    std::string Join() const {
        std::string text;
        for (const std::string& line : lines)
            text += (&line == &lines.front() ? "" : "\n") + line;
        return text;
    }

    Lines lines;

private:
    bool IsHeaderOf(size_t at, string_view section) const {
        const string_view line = lines[at];
        const size_t end = line.find(']');
        return line.starts_with('[') && end != line.npos && Quern::TrimBlanks(line.substr(1, end - 1)) == section;
    }
    size_t Header(string_view section) const {
        size_t at = 0;
        while (at < lines.size() && !IsHeaderOf(at, section))
            ++at;
        return at;
    }
    size_t AssignmentOf(size_t at, string_view key) const {
        const string_view line = lines[at];
        const size_t found = line.find(key);
        const size_t assignment = found == line.npos ? line.npos : line.find('=', found);
        const bool isOfKey = assignment != line.npos && Quern::TrimBlanks(line.substr(0, assignment)) == key;
        return isOfKey ? assignment : line.npos;
    }
};

string_view TakeLine(string_view& rest) {
    const string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    return line;
}

void Require(bool condition) {
    if (!condition) abort();
}

void RequireSame(const Quern::IniText& text, const PlainText& plain, string_view section, string_view key) {
    Require(text.Join('\n') == plain.Join() && text.Empty() == plain.lines.empty());
    string_view value, plainValue;
    Require(text.Find(section, key, value) == plain.Find(section, key, plainValue) && value == plainValue);
    const auto keys = text.Keys(section);
    Require(Lines(keys.begin(), keys.end()) == plain.Keys(section));
    PlainText copy = plain;
    Require(text.HasLine(section, key) == copy.RemoveLine(section, key));
    Quern::IniText other = text;
    other.IndexRepeatedSections();
    const bool isFound = text.Find(section, key, plainValue);
    Require(other.Find(section, key, value) == isFound && (!isFound || value == plainValue));
    Require(text.IsSameInFile(other));
    other.AddLine("another");
    Require(!text.IsSameInFile(other) && !other.IsSameInFile(text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    string_view rest(reinterpret_cast<const char*>(data), size);
    const string_view section = TakeLine(rest);
    const string_view key = TakeLine(rest);
    Quern::IniText text;
    PlainText plain;
    while (!rest.empty()) {
        const string_view line = TakeLine(rest);
        if (line.empty()) continue;
        const string_view operand = line.substr(1);
        const Quern::IniText before = text;
        const std::string joined = plain.Join();
        if (line[0] == 1) {
            text.Write(section, key, operand);
            plain.Write(section, key, operand);
        } else if (line[0] == 2) {
            text.Write(operand, key, "value");
            plain.Write(operand, key, "value");
        } else if (line[0] == 3) {
            Require(text.RemoveLine(section, operand) == plain.RemoveLine(section, operand));
        } else if (line[0] == 4) {
            Require(text.RemoveSection(operand) == plain.RemoveSection(operand));
        } else {
            text.AddLine(line);
            plain.lines.emplace_back(line);
            continue;
        }
        RequireSame(text, plain, section, key);
        Require(before.Join('\n') == joined);  // an edit leaves the copies alone
    }
    RequireSame(text, plain, section, key);
    for (const string_view name : text.Sections())
        RequireSame(text, plain, name, key);
    return 0;
}
