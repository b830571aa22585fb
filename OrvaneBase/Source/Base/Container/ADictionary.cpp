#include "Base/Container/ADictionary.h"

#include <memory>

#include "Base/Assert.h"

namespace Quern {
namespace {

void DeleteIfOwned(AObject* object) {
    if (object->IsOwned()) delete object;
}

// A key that is a dictionary is never compared: comparing dictionaries ends the process.
bool IsDictionary(const AObject& key) {
    return key.GetObjectType() == kTypeDictionary;
}

// Null for an object that has no copy: an empty raw buffer.
std::unique_ptr<AObject> CloneOwned(const AObject& object) {
    std::unique_ptr<AObject> clone(object.Clone());
    if (clone) clone->SetOwned(true);
    return clone;
}

}  // namespace

// The two makers of what is left behind. They are functions of their own so that a leak report names them.
__attribute__((noinline)) AObject* CloneKeyForOrder(const AObject& key) {
    AObject* clone = key.Clone();
    clone->SetOwned(false);
    return clone;
}

__attribute__((noinline)) AObject* CloneForUnownedEntry(const AObject& object) {
    AObject* clone = object.Clone();
    if (clone) clone->SetOwned(false);
    return clone;
}

ADictionary::ADictionary(const ADictionary& other) : AObject(other) {
    Set(other);
}

ADictionary& ADictionary::operator=(const ADictionary& other) {
    Set(other);
    return *this;
}

ADictionary::~ADictionary() {
    RemoveAll();
}

void ADictionary::Set(const ADictionary& other) {
    if (this == &other) return;
    RemoveAll();
    for (const auto& [key, value] : other.EntriesInOrder())
        Set(key, CloneForUnownedEntry(*value));
}

void ADictionary::Set(AObject* key, AObject* value) {
    if (!key || !value) return;
    AObject* clone = CloneForUnownedEntry(*key);
    if (!clone) return;
    value->SetOwned(false);
    _entries[clone] = value;
    _keys.push_back(clone);
}

void ADictionary::Set(const AObject& key, AObject* value) {
    if (!value) return;
    std::unique_ptr<AObject> clone = CloneOwned(key);
    if (!clone) return;
    value->SetOwned(false);
    SetOwnedKey(clone.release(), value);
}

void ADictionary::Set(const AObject& key, const AObject& value) {
    std::unique_ptr<AObject> keyClone = CloneOwned(key), valueClone = CloneOwned(value);
    if (keyClone && valueClone) SetOwnedKey(keyClone.release(), valueClone.release());
}

void ADictionary::Set(const ANumber& key, AObject* value) {
    Set(static_cast<const AObject&>(key), value);
}

void ADictionary::Set(const ANumber& key, const AObject& value) {
    Set(static_cast<const AObject&>(key), value);
}

void ADictionary::Set(const ANumber& key, const char* value) {
    if (value) Set(key, AString(value));
}

void ADictionary::Set(const ANumber& key, const ANumber& value) {
    Set(key, static_cast<const AObject&>(value));
}

void ADictionary::Set(const char* key, AObject* value) {
    if (key) Set(AString(key), value);
}

void ADictionary::Set(const char* key, const AObject& value) {
    if (key) Set(AString(key), value);
}

void ADictionary::Set(const char* key, const char* value) {
    if (key && value) Set(AString(key), AString(value));
}

void ADictionary::Set(const char* key, const ANumber& value) {
    if (key) Set(AString(key), static_cast<const AObject&>(value));
}

void ADictionary::SetOwnedKey(AObject* key, AObject* value) {
    const auto found = Find(*key);
    if (found == _entries.end()) {
        _keys.push_back(CloneKeyForOrder(*key));
    } else {
        DeleteIfOwned(found->first);
        if (found->second != value) DeleteIfOwned(found->second);
        _entries.erase(found);
    }
    _entries[key] = value;
}

AObject* ADictionary::ObjectForKey(const AObject* key) const {
    if (!key) return nullptr;
    const auto found = Find(*key);
    return found == _entries.end() ? nullptr : found->second;
}

AObject* ADictionary::ObjectForKey(const char* key) const {
    return key ? ObjectForKey(AString(key)) : nullptr;
}

AObject* ADictionary::KeyAt(int index) const {
    return index >= 0 && index < static_cast<int>(_keys.size()) ? _keys[static_cast<size_t>(index)] : nullptr;
}

const char* ADictionary::CStringKeyAt(int index) const {
    const AString* key = AStringKeyAt(index);
    return key ? key->c_str() : nullptr;
}

std::vector<std::pair<AObject*, AObject*>> ADictionary::EntriesInOrder() const {
    std::multimap<size_t, std::pair<AObject*, AObject*>> byPosition;
    for (const auto& entry : _entries)
        byPosition.emplace(IsDictionary(*entry.first) ? _keys.size() : PositionOf(*entry.first), entry);
    std::vector<std::pair<AObject*, AObject*>> entries;
    entries.reserve(byPosition.size());
    for (const auto& [position, entry] : byPosition)
        entries.push_back(entry);
    return entries;
}

void ADictionary::Remove(const AObject* key) {
    if (!key) return;
    const size_t position = PositionOf(*key);
    if (position == _keys.size()) return;
    _keys.erase(_keys.begin() + static_cast<std::ptrdiff_t>(position));
    const auto found = Find(*key);
    if (found == _entries.end()) return;
    const auto [oldKey, oldValue] = *found;
    _entries.erase(found);
    DeleteIfOwned(oldKey);
    DeleteIfOwned(oldValue);
}

void ADictionary::RemoveAll() {
    for (const auto& [key, value] : _entries) {
        DeleteIfOwned(key);
        DeleteIfOwned(value);
    }
    _entries.clear();
    _keys.clear();
}

bool ADictionary::IsEqual(const AObject*) const {
    ORVANE_ASSERT_TEXT(false, "0");
    return false;
}

ADictionary* ADictionary::Clone() const {
    return new ADictionary(*this);
}

ADictionary::Entries::const_iterator ADictionary::Find(const AObject& key) const {
    auto entry = _entries.begin();
    while (entry != _entries.end() && !key.IsEqual(entry->first))
        ++entry;
    return entry;
}

size_t ADictionary::PositionOf(const AObject& key) const {
    size_t position = 0;
    while (position < _keys.size() && !key.IsEqual(_keys[position]))
        ++position;
    return position;
}

}  // namespace Quern
