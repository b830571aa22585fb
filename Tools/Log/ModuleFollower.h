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

// Files grow by whole records. The live block is shown ahead of the record that it becomes, and that record then gives
// only what the block had not shown. One thread, which calls Poll again and again; nothing is read in between.
class ModuleFollower {
public:
    // `folder`: where the module's files are. `first`: the file to begin with; empty for the newest at the first poll.
    // `block`: the mapped file, which need not exist. The references are borrowed.
    ModuleFollower(std::string folder, std::string module, std::string first, std::string block, KeyRing& keys,
                   Report& report, Printer& printer, const FilterOptions& filter);
    ~ModuleFollower();

    // Shows what is new since the last call. A file that cannot be opened is told to the report.
    void Poll();

private:
    class FileEvents;

    // Reads the file on to its end, and goes to the next one once the module writes there.
    void FollowFiles();
    // The module's files after the one being read, by hour.
    std::vector<std::string> LaterFiles() const;
    // Begins to read a file from its start, in place of the one before.
    void Open(const std::string& path);
    // Reads the file on to its end, and takes what is incomplete there for damage.
    void Finish();
    // Whether another file stands under the name, or the file is shorter than what was read.
    bool WasReplaced();
    // A snapshot of the mapped file; empty if there is none.
    std::vector<uint8_t> TakeBlock();
    // Shows only what of the block has not been shown, neither from the block nor from a file.
    void ShowBlock(const std::vector<uint8_t>& block);
    // Once: that the file is encrypted for a key that is not at hand.
    void TellOfKey(const std::string& path);

    const std::string _folder, _module, _first, _blockPath;
    KeyRing& _keys;
    Report& _report;
    Printer& _printer;
    const FilterOptions& _filter;
    bool _toldOfKey = false;  // that a key is missing is said once for the module

    std::string _path;  // of the file being read; empty before the first
    // What reads that file. What stands below borrows from what stands above, so that all are replaced together.
    std::unique_ptr<ByteSource> _source;
    std::unique_ptr<TextEvents> _text;
    std::unique_ptr<FileEvents> _events;
    std::unique_ptr<LogWalk> _walk;
    uint64_t _inode = 0;     // of that file: another number under the name means another file
    uint64_t _size = 0;      // of that file at the last look
    bool _sawLater = false;  // the poll before saw a later file already

    BlockMemory _blocks;
    TextEvents _blockText;  // a stream of its own, so that a line of the block joins none of the file
    // The snapshot looked at before, and the one shown last: a block that looks damaged is shown only if it stays so.
    std::vector<uint8_t> _seenBlock, _shownBlock;
};

}  // namespace OrvaneLog

#endif
