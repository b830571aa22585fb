// A bundle of both layers.
#ifndef ORVANE_STORAGE_BUNDLE_BUNDLE_IMPL_H
#define ORVANE_STORAGE_BUNDLE_BUNDLE_IMPL_H

#include <memory>

#include "Storage/Bundle/Bundle.h"
#include "Storage/Bundle/IniBundle.h"

namespace Quern {

class BundleImpl final : public Bundle {
public:
    // Over the file of that path, which it makes if need be; null and "Orvane" mean the default bundle's.
    explicit BundleImpl(const char* path) : _ini(std::make_unique<IniBundle>(path)) {}
    // Takes over the layer written at run time; with null there is just the manifest.
    explicit BundleImpl(std::unique_ptr<IniBundle> ini) : _ini(std::move(ini)) {}

    bool Set(const char* section, const char* key, int value) override;
    bool Set(const char* section, const char* key, long long value) override;
    bool Set(const char* section, const char* key, const char* value) override;
    bool Set(const char* section, const char* key, bool value) override;
    bool Set(const char* key, int value) override;
    bool Set(const char* key, long long value) override;
    bool Set(const char* key, const char* value) override;
    bool Set(const char* key, bool value) override;
    long long Get(const char* section, const char* key, long long defaultValue) override;
    int Get(const char* section, const char* key, int defaultValue) override;
    AString Get(const char* section, const char* key, const char* defaultValue) override;
    bool Get(const char* section, const char* key, bool defaultValue) override;
    long long Get(const char* key, long long defaultValue) override;
    int Get(const char* key, int defaultValue) override;
    AString Get(const char* key, const char* defaultValue) override;
    bool Get(const char* key, bool defaultValue) override;
    bool Set(const Value& value) override;
    bool Set(const char* section, const Value& value) override;
    bool Get(const char* section, Value& value) override;
    bool Get(const char* section, const char* key, Value& value) override;
    bool RemoveSection(const char* section) override;
    bool RemoveValueForKey(const char* section, const char* key) override;
    bool RemoveAll() override;
    void GetAllKeys(const char* section, AArray* keys) override;
    bool IsContainKey(const char* section, const char* key) override;
    bool SaveCacheToFile() override;
    bool SetCache(const char* section, const char* key, int value) override;
    bool SetCache(const char* section, const char* key, long long value) override;
    bool SetCache(const char* section, const char* key, const char* value) override;
    bool SetCache(const char* section, const char* key, bool value) override;
    bool RemoveCacheSection(const char* section) override;
    bool RemoveCacheAll() override;
    bool RemoveCacheValueForKey(const char* section, const char* key) override;
    AString GetMetaString(const char* section, const char* key, const char* defaultValue) override;

private:
    // The value written at run time, or if there is none what the manifest has in its section for that one.
    template <typename Result, typename Default>
    Result Read(const char* section, const char* key, Default defaultValue, const char* (*manifestSection)(const char*),
                Result (*readManifest)(const char*, const char*, Default));
    // What the manifest calls a section.
    static const char* _ConvertSection(const char* section);
    // Sets the member that a stored text stands for; an empty text sets nothing. REQUIRES: `key` is not null.
    static void set(Value& out, const char* key, const AString& text);

    const std::unique_ptr<IniBundle> _ini;
};

}  // namespace Quern

#endif
