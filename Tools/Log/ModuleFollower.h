// Follows the log of one module: its newest file, the files of the hours to come, and its live block.
#ifndef ORVANE_TOOLS_LOG_MODULE_FOLLOWER_H
#define ORVANE_TOOLS_LOG_MODULE_FOLLOWER_H

#include <memory>
#include <string>
#include <vector>

#include "Log/BlockMemory.h"
#include "Log/ByteSource.h"
#include "Log/KeyRing.h"
#include "Log/LogWalk.h"
#include "Log/Report.h"
#include "Log/TextEvents.h"

namespace OrvaneLog {

// Files grow by whole records; the live block is shown ahead of the record that it becomes, and then not again. One
// thread.
class ModuleFollower {
public:
    // `first`: the file to begin with; empty for the newest at the first poll. `block`: the mapped file, which need not
    // exist. The references are borrowed.
    ModuleFollower(std::string folder, std::string module, std::string first, std::string block, KeyRing& keys,
                   Report& report, Printer& printer, const FilterOptions& filter);
    ~ModuleFollower();

    // Shows what is new.
    void Poll();

private:
    class FileEvents;

    // Reads the file on to its end, and goes to the next one once the module writes there.
    void FollowFiles();
    // The module's files after the one being read, by hour.
    std::vector<std::string> LaterFiles() const;
    void Open(const std::string& path);
    void Finish();
    // Whether another file stands under the name, or the file is shorter than what was read.
    bool WasReplaced();
    std::vector<uint8_t> TakeBlock();
    // Only what of the block has not been shown, neither from the block nor from a file.
    void ShowBlock(const std::vector<uint8_t>& block);
    // Once: that the file is encrypted for a key that is not at hand.
    void TellOfKey(const std::string& path);

    const std::string _folder, _module, _first, _blockPath;
    KeyRing& _keys;
    Report& _report;
    Printer& _printer;
    const FilterOptions& _filter;
    bool _toldOfKey = false;

    std::string _path;  // of the file being read; empty before the first
    std::unique_ptr<ByteSource> _source;
    std::unique_ptr<TextEvents> _text;
    std::unique_ptr<FileEvents> _events;
    std::unique_ptr<LogWalk> _walk;
    uint64_t _inode = 0;
    uint64_t _size = 0;
    bool _sawLater = false;

    BlockMemory _blocks;
    TextEvents _blockText;
    std::vector<uint8_t> _seenBlock, _shownBlock;
};

}  // namespace OrvaneLog

#endif
