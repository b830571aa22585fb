// A manifest that a test chooses, in force while the object lives.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_INFO_DICTIONARY_H
#define ORVANE_TESTS_SUPPORT_FAKE_INFO_DICTIONARY_H

#include <memory>
#include <string>
#include <utility>

#include "Storage/Bundle/InfoDictionary.h"

namespace OrvaneTest {

class FakeInfoDictionary {
public:
    FakeInfoDictionary() : _source(std::make_shared<Source>()) { Quern::InfoDictionary::Use(_source); }
    ~FakeInfoDictionary() { Quern::InfoDictionary::Use(nullptr); }

    // An entry at the top, such as "CFBundleIdentifier", or a section that is no dictionary.
    void Set(const std::string& key, Quern::InfoValue value) { Place(_source->root, key) = std::move(value); }
    void Set(const std::string& section, const std::string& key, Quern::InfoValue value) {
        Quern::InfoValue& dictionary = Place(_source->root, section);
        if (!dictionary.IsDictionary()) dictionary.value = Quern::InfoValue::Dictionary();
        Place(dictionary, key) = std::move(value);
    }

    // Values as a manifest has them.
    static Quern::InfoValue Text(const char* text) { return {std::string(text)}; }
    static Quern::InfoValue Integer(long long number) { return {number}; }

private:
    class Source final : public Quern::InfoDictionary {
    public:
        const Quern::InfoValue& Root() override { return root; }
        Quern::InfoValue root{Quern::InfoValue::Dictionary()};
    };

    static Quern::InfoValue& Place(Quern::InfoValue& dictionary, const std::string& key) {
        auto& entries = std::get<Quern::InfoValue::Dictionary>(dictionary.value);
        for (auto& entry : entries) {
            if (entry.key == key) return entry.value;
        }
        entries.push_back({key, {}});
        return entries.back().value;
    }

    std::shared_ptr<Source> _source;
};

}  // namespace OrvaneTest

#endif
