// Lists the records of a source in a table: one row for each record, and for each gap.
#ifndef ORVANE_TOOLS_LOG_RECORD_TABLE_H
#define ORVANE_TOOLS_LOG_RECORD_TABLE_H

#include <string>

#include "Log/Output.h"
#include "Log/ReadEvents.h"

namespace OrvaneLog {

// For whoever asks what a file holds rather than what it says: offsets, keys and verdicts. The text is counted, not
// kept.
class RecordTable : public ReadEvents {
public:
    // Of one source, whose rows bear `path`. `json`: an object a row. The output is borrowed.
    RecordTable(Output& output, std::string path, bool json) : _output(output), _path(std::move(path)), _json(json) {}

    // Writes the names of the columns: once, before the first source. JSON has none.
    static void WriteHeading(Output& output);

    // Counts the text of the record, or of the source, that is under way.
    void OnText(std::string_view piece) override;
    // Each writes a row.
    void OnRecordEnd(const RecordReport& record) override;
    void OnSkipped(uint64_t offset, uint64_t size, const std::string& why) override;
    void OnTextRead(uint64_t offset) override { _textRead = offset; }
    // The source is over: a plain-text one gives a row of its own, unless it is empty.
    void End();

private:
    // What a row shows. "-" stands for what a gap and plain text do not have; JSON leaves such fields out.
    struct Row {
        uint64_t offset = 0;
        std::string magic = "-", seq = "-", hours = "-", key = "-";
        uint64_t length = 0, textSize = 0, lines = 0;
        std::string keyName, verdict, why;
    };
    void Write(const Row& row);

    Output& _output;
    std::string _path;
    bool _json;
    uint64_t _lines = 0;     // newlines in the text since the last row
    char _last = '\n';       // the last character of that text: a line without its newline counts, too
    uint64_t _textRead = 0;  // how far a plain-text source was read
};

}  // namespace OrvaneLog

#endif
