#include "Storage/Bundle/Linux/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

#include "Storage/Bundle/Linux/PropertyListShape.h"

namespace Quern {
namespace {

constexpr PropertyListLimits kLimits{64, 128 * 1024};  // the parser needs some hundred bytes a level and a node

struct Free {
    void operator()(void* memory) const { free(memory); }
};
struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};

InfoValue Convert(plist_t node);

InfoValue::Dictionary ConvertDictionary(plist_t node) {
    InfoValue::Dictionary entries;
    plist_dict_iter created = nullptr;
    plist_dict_new_iter(node, &created);
    const std::unique_ptr<void, Free> iterator(created);
    for (;;) {
        char* name = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator.get(), &name, &value);
        const std::unique_ptr<char, Free> key(name);
        if (!value) return entries;
        if (key) entries.push_back({key.get(), Convert(value)});
    }
}

InfoValue Convert(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return {value != 0};
        }
        case PLIST_UINT: {
            uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return {static_cast<long long>(value)};  // a negative one comes in two's complement
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return {value};
        }
        case PLIST_STRING: {
            const char* text = plist_get_string_ptr(node, nullptr);
            return {std::string(text ? text : "")};
        }
        case PLIST_DICT:
            return {ConvertDictionary(node)};
        default:
            return {};
    }
}

}  // namespace

bool ParsePropertyList(const std::string& bytes, InfoValue& out, const char*& why) {
    if (bytes.size() > kLargestPropertyList) {
        why = "it is too large";
        return false;
    }
    if (!IsPropertyListWithin(bytes, kLimits)) {
        why = "it is damaged, or nests too deep";
        return false;
    }
    plist_t parsed = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &parsed);
    const std::unique_ptr<void, FreeNode> root(parsed);
    if (!root) {
        why = "it is no property list, or damaged";
        return false;
    }
    if (plist_get_node_type(root.get()) != PLIST_DICT) {
        why = "it holds no dictionary";
        return false;
    }
    out = Convert(root.get());
    return true;
}

}  // namespace Quern
