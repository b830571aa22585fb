#include "Storage/Bundle/Linux/PropertyListShape.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Quern {
namespace {

using std::string_view;

// Goes through the tags of an XML list. It refuses what the format does not know and a parser could see in another way
// than this scan, so that no nesting stays hidden: quotes and angles inside a tag, an end inside quotes, a declaration
// that holds others or that stands behind the first element.
class XmlScan {
public:
    XmlScan(string_view text, const PropertyListLimits& limits) : _rest(text), _limits(limits) {}

    bool IsWithin() {
        if (_rest.find('\0') != string_view::npos) return false;
        for (size_t open; (open = _rest.find('<')) != string_view::npos;) {
            _rest.remove_prefix(open + 1);
            if (!TakeMarkup()) return false;
        }
        return true;
    }

private:
    bool TakeMarkup() {
        string_view passed;
        if (TakeStart("!--")) return TakeUpTo("-->", passed);
        if (TakeStart("![CDATA[")) return TakeUpTo("]]>", passed);
        const bool isInstruction = _rest.starts_with('?');
        // A parser may pass over an end that stands in quotes.
        if (!TakeUpTo(isInstruction ? "?>" : ">", passed) || std::ranges::count(passed, '"') % 2 != 0) return false;
        if (isInstruction) return true;
        if (passed.starts_with('!')) return _depth == 0 && passed.find('[') == string_view::npos;
        return TakeTag(passed);
    }

    bool TakeTag(string_view tag) {
        const string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/", 1));  // a slash in front belongs to it
        const size_t behind = tag.find_first_not_of(" \t\r\n", name.size());
        const string_view rest = behind == string_view::npos ? string_view() : tag.substr(behind);
        if (tag.find('<') != string_view::npos) return false;
        if (name != "plist" && tag.find_first_of("\"'") != string_view::npos) return false;
        if (++_nodes > _limits.nodes) return false;
        if (name == "dict" || name == "array") {
            if (_depth >= _limits.depth) return false;
            if (rest != "/") ++_depth;
        } else if ((name == "/dict" || name == "/array") && rest.empty() && _depth > 0) {
            --_depth;
        }
        return true;
    }

    bool TakeStart(string_view start) {
        if (!_rest.starts_with(start)) return false;
        _rest.remove_prefix(start.size());
        return true;
    }

    // Moves behind `end`; `passed` is what stood in front of it.
    bool TakeUpTo(string_view end, string_view& passed) {
        const size_t found = _rest.find(end);
        if (found == string_view::npos) return false;
        passed = _rest.substr(0, found);
        _rest.remove_prefix(found + end.size());
        return true;
    }

    string_view _rest;
    const PropertyListLimits& _limits;
    uint32_t _depth = 0;
    uint64_t _nodes = 0;
};

constexpr size_t kHeaderSize = 8;    // "bplist00"
constexpr size_t kTrailerSize = 32;  // 6 unused, size of an offset, size of a reference, and three big-endian numbers

// Walks the objects of a binary list along their references. An object is measured once, however often it is named.
class BinaryWalk {
public:
    BinaryWalk(string_view bytes, const PropertyListLimits& limits) : _bytes(bytes), _limits(limits) {}

    bool IsWithin() {
        if (_bytes.size() < kHeaderSize + kTrailerSize) return false;
        const size_t trailer = _bytes.size() - kTrailerSize;
        _offsetSize = Byte(trailer + 6);
        _referenceSize = Byte(trailer + 7);
        const uint64_t count = Number(trailer + 8, 8);
        const uint64_t top = Number(trailer + 16, 8);
        _offsets = Number(trailer + 24, 8);
        const auto isSize = [](uint8_t size) { return size >= 1 && size <= 8; };
        if (!isSize(_offsetSize) || !isSize(_referenceSize)) return false;
        if (_offsets > trailer || count > (trailer - _offsets) / _offsetSize || top >= count) return false;
        _measured.resize(count);
        return Measure(top, 0) != nullptr;
    }

private:
    struct Extent {
        uint64_t nodes = 0;  // 0: not measured yet
        uint32_t depth = 0;
    };

    // What an object unfolds to, standing inside `above` others; null beyond the limits or the bytes. An object that
    // holds itself runs into the limit of depth.
    const Extent* Measure(uint64_t object, uint32_t above) {
        if (object >= _measured.size()) return nullptr;
        Extent& known = _measured[object];
        if (known.nodes == 0 && !Unfold(object, above, known)) return nullptr;
        return above + known.depth <= _limits.depth ? &known : nullptr;
    }

    bool Unfold(uint64_t object, uint32_t above, Extent& out) {
        size_t at = OffsetOf(object);
        if (at < kHeaderSize || at >= _offsets) return false;
        const uint8_t kind = Byte(at) & 0xF0;
        Extent extent{1, 0};
        if (kind == 0x40 || kind == 0x50 || kind == 0x60) {  // data, and texts in bytes or in units of two
            uint64_t length = 0;
            if (!TakeCount(at, length)) return false;
            extent.nodes += length * (kind == 0x60 ? 2 : 1) / kPropertyListBytesPerNode;
        } else if (kind == 0xA0 || kind == 0xC0 || kind == 0xD0) {
            uint64_t children = 0;
            if (above >= _limits.depth || !TakeCount(at, children)) return false;
            const uint64_t keys = kind == 0xD0 ? children : 0;
            children += keys;  // the keys, then the values
            if (children > (_bytes.size() - at) / _referenceSize) return false;
            for (uint64_t i = 0; i < children; ++i, at += _referenceSize) {
                const uint64_t reference = Number(at, _referenceSize);
                const Extent* child = Measure(reference, above + 1);
                if (!child || (i < keys && !IsSoundKey(reference))) return false;
                extent.nodes += child->nodes;
                if (extent.nodes > _limits.nodes) return false;
                extent.depth = std::max(extent.depth, child->depth);
            }
            ++extent.depth;
        }
        out = extent;
        return true;
    }

    // Whether a key is a text without a zero, in bytes or in units of two. REQUIRES: the object was measured.
    bool IsSoundKey(uint64_t object) const {
        size_t at = OffsetOf(object);
        const uint8_t kind = Byte(at) & 0xF0;
        const size_t unit = kind == 0x60 ? 2 : 1;
        uint64_t length = 0;
        if ((kind != 0x50 && kind != 0x60) || !TakeCount(at, length) || length > (_bytes.size() - at) / unit)
            return false;
        for (; length > 0; --length, at += unit) {
            if (Number(at, unit) == 0) return false;
        }
        return true;
    }

    // REQUIRES: there is such an object.
    size_t OffsetOf(uint64_t object) const { return Number(_offsets + object * _offsetSize, _offsetSize); }

    // The count in a marker's low half, or in the integer behind it. `at` moves to what is counted.
    bool TakeCount(size_t& at, uint64_t& count) const {
        count = Byte(at++) & 0x0F;
        if (count != 0x0F) return true;
        if (at >= _bytes.size() || (Byte(at) & 0xF0) != 0x10) return false;
        const size_t size = size_t{1} << (Byte(at++) & 0x0F);
        if (size > 8 || size > _bytes.size() - at) return false;
        count = Number(at, size);
        at += size;
        return count < _bytes.size();
    }

    uint8_t Byte(size_t at) const { return static_cast<uint8_t>(_bytes[at]); }

    // REQUIRES: the bytes are there, 8 at most.
    uint64_t Number(size_t at, size_t size) const {
        uint64_t number = 0;
        for (; size > 0; --size)
            number = number << 8 | Byte(at++);
        return number;
    }

    string_view _bytes;
    const PropertyListLimits& _limits;
    uint8_t _offsetSize = 0, _referenceSize = 0;
    uint64_t _offsets = 0;
    std::vector<Extent> _measured;
};

}  // namespace

bool IsPropertyListWithin(const std::string& bytes, const PropertyListLimits& limits) {
    if (bytes.starts_with("bplist")) return BinaryWalk(bytes, limits).IsWithin();
    return XmlScan(bytes, limits).IsWithin();
}

}  // namespace Quern
