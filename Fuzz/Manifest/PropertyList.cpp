// The manifest's reader: any bytes are refused or read, every value converts, and what the look at the shape lets pass
// unfolds in the parser to no more than it was told.
#include <plist/plist.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Storage/Bundle/Linux/PropertyList.h"
#include "Storage/Bundle/Linux/PropertyListShape.h"

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

struct Extent {
    uint32_t depth;
    uint64_t nodes;
};

void Add(Extent& whole, Extent part) {
    whole.nodes += part.nodes;
    whole.depth = std::max(whole.depth, part.depth + 1);
}

Extent Measure(plist_t node) {
    Extent extent{0, 1};
    if (plist_get_node_type(node) == PLIST_ARRAY) {
        extent.depth = 1;
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
            Add(extent, Measure(plist_array_get_item(node, i)));
    } else if (plist_get_node_type(node) == PLIST_DICT) {
        extent.depth = 1;
        plist_dict_iter at = nullptr;
        plist_dict_new_iter(node, &at);
        for (;;) {
            plist_t value = nullptr;
            plist_dict_next_item(node, at, nullptr, &value);
            if (!value) break;
            ++extent.nodes;
            Add(extent, Measure(value));
        }
        free(at);
    }
    return extent;
}

void CheckShape(const std::string& bytes) {
    constexpr Quern::PropertyListLimits kNarrow{8, 200};
    if (!Quern::IsPropertyListWithin(bytes, kNarrow)) return;
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    if (!root) return;
    const Extent extent = Measure(root);
    Require(extent.depth <= kNarrow.depth && extent.nodes <= kNarrow.nodes);
    plist_free(root);
}

void CheckValues(const Quern::InfoValue& value) {
    const long long number = value.LongLongValue();
    Require(!std::holds_alternative<long long>(value.value) || value.IntValue() == static_cast<int>(number));
    value.BoolValue();
    const auto* entries = std::get_if<Quern::InfoValue::Dictionary>(&value.value);
    if (!entries) return;
    for (const auto& entry : *entries) {
        Require(value.Find(entry.key.c_str()) != nullptr);
        CheckValues(entry.value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    CheckShape(bytes);
    Quern::InfoValue root;
    const char* why = nullptr;
    const bool read = Quern::ParsePropertyList(bytes, root, why);
    Require(read == root.IsDictionary() && read == (why == nullptr));
    CheckValues(root);
    return 0;
}
