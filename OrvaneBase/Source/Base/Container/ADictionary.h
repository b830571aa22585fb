// Objects by key, with the keys in the order of their first insertion.
#ifndef ORVANE_BASE_CONTAINER_A_DICTIONARY_H
#define ORVANE_BASE_CONTAINER_A_DICTIONARY_H

#include <map>
#include <utility>
#include <vector>

#include "Base/Container/ANumber.h"
#include "Base/Container/AString.h"

namespace Quern {

// Keys are compared by IsEqual in a walk over all of them: dictionaries are small. What is handed out stays the
// dictionary's. A null key or value is not stored. Nor is an object whose Clone gives null, where a copy would be kept.
//
// The ways of setting differ in what they own, and callers rely on each as it is:
//   by reference, number or text   the key and the value are copied and owned; an equal key has its value replaced
//   value by pointer               as above, but the value is the caller's and must outlive its place here
//   key and value by pointer       the key is copied, nothing is owned, and an equal key makes a second entry
// The copies of keys that keep the order are never freed, nor is what a copied dictionary holds.
class ADictionary : public AObject {
public:
    ADictionary() : AObject(kTypeDictionary) {}
    ADictionary(const ADictionary& other);
    ADictionary& operator=(const ADictionary& other);
    ~ADictionary() override;

    // Replaces everything by copies of the other's keys and values, which this dictionary does not own.
    void Set(const ADictionary& other);
    void Set(AObject* key, AObject* value);

    void Set(const AObject& key, AObject* value);
    void Set(const AObject& key, const AObject& value);

    void Set(const ANumber& key, AObject* value);
    void Set(const ANumber& key, const AObject& value);
    void Set(const ANumber& key, const char* value);
    void Set(const ANumber& key, const ANumber& value);

    void Set(const char* key, AObject* value);
    void Set(const char* key, const AObject& value);
    void Set(const char* key, const char* value);
    void Set(const char* key, const ANumber& value);

    // Null if there is none.
    AObject* ObjectForKey(const AObject* key) const;
    AObject* ObjectForKey(const AObject& key) const { return ObjectForKey(&key); }
    AObject* ObjectForKey(const ANumber& key) const { return ObjectForKey(&key); }
    AObject* ObjectForKey(const char* key) const;

    // The same for values that the caller knows to be AStrings: the type is not checked.
    template <typename Key>
    AString* AStringForKey(const Key& key) const {
        return static_cast<AString*>(ObjectForKey(key));
    }
    template <typename Key>
    const char* CStringForKey(const Key& key) const {
        const AString* text = AStringForKey(key);
        return text ? text->c_str() : nullptr;
    }

    // In the order of first insertion; null out of range.
    AObject* KeyAt(int index) const;
    // The same for keys that the caller knows to be AStrings: the type is not checked.
    AString* AStringKeyAt(int index) const { return static_cast<AString*>(KeyAt(index)); }
    const char* CStringKeyAt(int index) const;

    // Every key with its value, by the first insertion of an equal key.
    std::vector<std::pair<AObject*, AObject*>> EntriesInOrder() const;

    void Remove(const AObject* key);
    void Remove(const ANumber& key) { Remove(&key); }
    void RemoveAll();
    int Count() const { return static_cast<int>(_entries.size()); }

    // Ends the process: dictionaries are not compared.
    bool IsEqual(const AObject* other) const override;
    ADictionary* Clone() const override;

private:
    // Ordered by address, which means nothing: a store, not an index.
    using Entries = std::map<AObject*, AObject*>;

    // Takes over a key and a value whose flags are set. REQUIRES: neither is null.
    void SetOwnedKey(AObject* key, AObject* value);
    Entries::const_iterator Find(const AObject& key) const;
    // The index of the first equal key, or the number of keys.
    size_t PositionOf(const AObject& key) const;

    Entries _entries;
    std::vector<AObject*> _keys;
};

}  // namespace Quern

#endif
