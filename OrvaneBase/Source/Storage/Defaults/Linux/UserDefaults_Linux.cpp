#include "Storage/Defaults/UserDefaults.h"

#include <sys/stat.h>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "Base/XLog.h"
#include "Storage/Defaults/Linux/DefaultsFile.h"
#include "Storage/File/Linux/SecretFiles.h"
#include "Storage/File/PathSource.h"

namespace Quern {
namespace {

constexpr mode_t kPrivate = 0700;

// Values live in memory, read from the file at the first need. A change starts a thread, unless one is at work, that
// writes until nothing is left to write, and ends. Never destroyed: the thread may outlive whoever set a value.
class DefaultsInMemory final : public UserDefaults {
public:
    DefaultsInMemory() : _folder(PathSource::Current().Home() + "/Library"), _path(_folder + "/" + kDefaultsFileName) {}

    Json::Value Dictionary(const std::string& key) override {
        Load();
        const std::lock_guard<std::mutex> guard(_mutex);
        const Json::Value* const value = Find(key);
        return value && value->isObject() ? *value : Json::Value(Json::objectValue);
    }

    void SetDictionary(const std::string& key, const Json::Value& dictionary) override {
        Load();
        {
            const std::lock_guard<std::mutex> guard(_mutex);
            const Json::Value* const value = Find(key);
            const bool isDictionary = value && value->isObject();
            if (!isDictionary || *value != dictionary) {
                NoteChanges(isDictionary ? *value : Json::Value(Json::objectValue), dictionary, _pending[key]);
                _values[key] = dictionary;
            }
            // What could not be written before is tried again.
            if (_pending.empty() || std::exchange(_isWriting, true)) return;
        }
        StartWriter();
    }

private:
    const Json::Value* Find(const std::string& key) const { return _values.find(key.data(), key.data() + key.size()); }

    // Member by member, so that members which somebody else wrote to the file stay.
    static void NoteChanges(const Json::Value& before, const Json::Value& after, DictionaryChanges& changes) {
        for (const std::string& name : before.getMemberNames())
            if (!after.isMember(name)) changes[name] = Json::Value();
        for (const std::string& name : after.getMemberNames())
            if (!before.isMember(name) || before[name] != after[name]) changes[name] = after[name];
    }

    // No lock is held while the file is read, since that may log. So two threads may both read it, and what the second
    // one has read is dropped.
    void Load() {
        {
            const std::lock_guard<std::mutex> guard(_mutex);
            if (_isLoaded) return;
        }
        Json::Value values = ReadDefaultsFile(_path);
        const std::lock_guard<std::mutex> guard(_mutex);
        if (!std::exchange(_isLoaded, true)) _values = std::move(values);
    }

    void StartWriter() try {
        std::thread([this] { Write(); }).detach();
    } catch (const std::system_error& error) {
        ORVANE_LOG_ERROR("no thread for the user defaults: %s", error.what());
        const std::lock_guard<std::mutex> guard(_mutex);
        _isWriting = false;
    }

    void Write() {
        pthread_setname_np(pthread_self(), "UserDefaults");
        mkdir(_folder.c_str(), kPrivate);
        DefaultsChanges changes;
        while (TakePending(changes)) {
            if (!ChangeDefaultsFile(_path, changes) && !PutBack(std::move(changes))) return;
        }
    }

    // Takes what is to be written. False if there is nothing: the thread then ends.
    bool TakePending(DefaultsChanges& changes) {
        const std::lock_guard<std::mutex> guard(_mutex);
        changes = std::exchange(_pending, {});
        return _isWriting = !changes.empty();
    }

    // Takes back what could not be written; what was set meanwhile counts as newer. False if nothing was set meanwhile:
    // the thread then ends, and the next change tries again.
    bool PutBack(DefaultsChanges changes) {
        const std::lock_guard<std::mutex> guard(_mutex);
        _isWriting = !_pending.empty();
        for (auto& [key, members] : changes)
            _pending[key].merge(members);
        return _isWriting;
    }

    const std::string _folder, _path;
    std::mutex _mutex;  // guards what follows; a leaf
    bool _isLoaded = false;
    Json::Value _values{Json::objectValue};
    DefaultsChanges _pending;  // set and not on the disk
    bool _isWriting = false;   // a thread is at work, or about to be
};

}  // namespace

template <>
std::shared_ptr<UserDefaults> Seam<UserDefaults>::MakeBuiltIn() {
    return std::make_shared<DefaultsInMemory>();
}

}  // namespace Quern
