// An INI file in plain text.
#ifndef ORVANE_STORAGE_BUNDLE_C_INI_FILE_IMPL_H
#define ORVANE_STORAGE_BUNDLE_C_INI_FILE_IMPL_H

#include <optional>

#include "Storage/Bundle/IniFile.h"
#include "Storage/Bundle/SharedIniText.h"
#include "System/Thread/Mutex.h"

namespace Quern {

// The operations are told in IniFile.h. The lines are in memory: reads look there, changes are made there under the
// mutex, and a save writes all of them to a new file that then takes the old one's place.
class CIniFileImpl : public IniFile {
public:
    // Loads this class's own way, also for a derived object, which does not exist yet.
    explicit CIniFileImpl(const char* path);
    // Saves this class's own way, as plain text.
    ~CIniFileImpl() override;
    CIniFileImpl(const CIniFileImpl&) = delete;
    CIniFileImpl& operator=(const CIniFileImpl&) = delete;

    // A last line without a line end is lost.
    bool Load() override;
    bool Save() override;
    // Null names log an error, in the name of one operation for all.
    AString ReadString(const char* section, const char* key, const char* defaultValue) override;
    int ReadInt(const char* section, const char* key, int defaultValue) override;
    long long ReadLongLong(const char* section, const char* key, long long defaultValue) override;
    AString ReadString(const char* section, const char* key, const char* defaultValue, bool& found) override;
    int ReadInt(const char* section, const char* key, int defaultValue, bool& found) override;
    long long ReadLongLong(const char* section, const char* key, long long defaultValue, bool& found) override;
    bool WriteString(const char* section, const char* key, const char* value) override;
    bool WriteInt(const char* section, const char* key, int value) override;
    bool WriteLongLong(const char* section, const char* key, long long value) override;
    void GetAllKeys(const char* section, AArray* keys) override;
    bool IsContainKey(const char* section, const char* key) override;
    bool RemoveSection(const char* section) override;
    bool RemoveKey(const char* section, const char* key) override;
    bool RemoveAll() override;
    bool ReplaceString(const char* section, const char* key, const char* value, bool& isChanged) override;
    void BeginBatch() override;
    bool EndBatch() override;

protected:
    // Whether a batch keeps a save from being made; the batch's end makes it. REQUIRES: the mutex.
    bool PutOffSave();
    // Memory has what the file has. REQUIRES: the mutex.
    void NoteLoaded(IniText text);
    void NoteSaved() { _isUnsaved = false; }
    // The file has it in another form than a save gives it. REQUIRES: the mutex.
    void NoteUnsaved() { _isUnsaved = true; }

    AString _path;
    SharedIniText _text;
    CMutex _mutex{true};  // orders changes, loads and saves, over the wait for the disk; no read takes it. Recursive

private:
    // Reads a number; the default for an empty text.
    template <typename Number>
    Number ReadNumber(const char* section, const char* key, Number defaultValue, bool& found);
    // Changes the text. True if change(IniText&) says that it did.
    template <typename Change>
    bool Edit(Change change);

    // Guarded by _mutex, so that no save is under way when a batch begins.
    int _batches = 0;
    bool _isSaveDue = false;
    bool _isUnsaved = false;        // there was a change, and no save since that the disk took
    std::optional<IniText> _saved;  // what the file had when the batches began; none if that was not what memory had
};

}  // namespace Quern

#endif
