// A bundle of both layers.
#ifndef ORVANE_STORAGE_BUNDLE_BUNDLE_IMPL_H
#define ORVANE_STORAGE_BUNDLE_BUNDLE_IMPL_H

#include <memory>

#include "Storage/Bundle/Bundle.h"
#include "Storage/Bundle/IniBundle.h"

namespace Quern {

class BundleImpl final : public Bundle {
public:
    // Many changes, one save, all or nothing after a kill:
    //
    //   BundleImpl::Batch batch(bundle);
    //   bundle.RemoveAll();
    //   bundle.Set(configuration);
    //   batch.Commit();   // or the end of the scope
    //
    // While it lives, a change of the bundle is only noted: true from Set, a removal or SaveCacheToFile says that it is
    // noted, and not that it is on the disk. The thread that made the batch reads what it noted; the others read what
    // was before, until the end, where all becomes readable at once and is saved. Another thread's change meanwhile is
    // readable at once, and with it what the batch has noted so far; it is saved by the batch's end, too.
    // Where batches overlap or nest, the last end saves. No lock is held over its life.
    class Batch {
    public:
        explicit Batch(BundleImpl& bundle);
        // Commits.
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

        // Ends the batch: saves once if anything was noted, and not at all if nothing was or if the lines are again
        // what the file has, as they were at the begin: so a batch that removes all and sets one pair saves nothing
        // where that pair, and nothing else, was there. After a save that the disk refused it always saves. Gives the
        // save's result, which is true also where the disk fails (Bundle.h), and true without a save. Further calls do
        // nothing.
        // REQUIRES: the thread that made it; the bundle still lives.
        bool Commit();

    private:
        IniBundle* _ini;  // null once ended
    };

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

    // As Set, but saves nothing where the layer written at run time (not the manifest below it) holds the same text
    // already, and in a batch: the result is true then, too. Changes that are in memory alone, after SetCache or after
    // a save that the disk refused, are saved all the same. REQUIRES: `value` is not null.
    bool SetIfDifferent(const char* section, const char* key, const char* value);

private:
    // The value written at run time, or if there is none what the manifest has in its section for that one.
    template <typename Result, typename Default>
    Result Read(const char* section, const char* key, Default defaultValue, const char* (*manifestSection)(const char*),
                Result (*readManifest)(const char*, const char*, Default));
    AString ReadText(const char* section, const char* key, const char* defaultValue,
                     const char* (*manifestSection)(const char*));
    // What the manifest calls a section.
    static const char* _ConvertSection(const char* section);
    // Sets the member that a stored text stands for; an empty text sets nothing. REQUIRES: `key` is not null.
    static void set(Value& out, const char* key, const AString& text);

    const std::unique_ptr<IniBundle> _ini;
};

}  // namespace Quern

#endif
