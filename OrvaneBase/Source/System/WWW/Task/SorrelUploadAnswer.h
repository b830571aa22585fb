// What the server answers to an announcement and to a part. Nothing in it is trusted.
//
//     {"ret":0,"err":"","biz_data":{"upload_url":"..","next_pos":N}}
#ifndef ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_ANSWER_H
#define ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_ANSWER_H

#include <string>
#include <string_view>

// A plain value.
struct SorrelUploadAnswer {
    int ret = 0;            // 0: the server took it
    std::string err;        // "(null)" if there is none
    std::string uploadUrl;  // of the next part; with a `ret` of 0 alone
    long long nextPos = 0;  // where it begins, not negative; likewise

    // Reads an answer: one object by the letter of JSON. A missing "ret" counts as 0; with 0 "upload_url" must be a
    // text and "next_pos" a whole number of 64 bits, not negative. More than 64 KB are none, and are not parsed. False,
    // and why in `error`, if it is none; nothing throws. Any thread.
    bool Read(std::string_view text, std::string& error);
};

#endif
