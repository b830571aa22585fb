// Reads what the configuration server answered.
//
//     {"ret": INT, "err": TEXT, "biz_data": {"rule_id": INT, "merged_cfg": {MODULE: {KEY: TEXT or INT, ..}, ..}}}
//
// "ret" is 0 for success, and "err" is the message of any other. Members that are missing count as 0 and as an empty
// text, but for "merged_cfg": without it there is no configuration. Members of other names are ignored, and so is what
// stands behind the document.
#ifndef ORVANE_BASE_CONFIGURE_ANSWER_READER_H
#define ORVANE_BASE_CONFIGURE_ANSWER_READER_H

#include <cstddef>
#include <cstdint>

#include "Base/Container/Value.h"

namespace Orvane {

class AnswerReader {
public:
    // Nothing throws, whatever the text is. Any thread.
    //
    // text: of `length` bytes; no terminator is needed.
    // modules: on success an object of objects, null if the answer has no module. A text goes through
    //   Value(const char*), so a numeric one is a number there: "007" is 7 and "1.10" is 1.1. Values of other kinds,
    //   reals among them, are dropped, each with a line; "1.0" and "1e5" without quotes are reals.
    // ruleID: on success the answer's.
    // Returns 0; -2 for a document that is no object; -1 for whatever else cannot be used, the server's own error among
    // it. A refusal is told by a line, and changes neither `modules` nor `ruleID`.
    static int _ParseJsonObject(const char* text, size_t length, Quern::Value& modules, int32_t& ruleID);
};

}  // namespace Orvane

#endif
