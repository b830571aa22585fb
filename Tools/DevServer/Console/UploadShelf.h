// What devices have sent, as it lies on the disk (Uploads.h has the layout), and the lines of the logs in it.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_UPLOAD_SHELF_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_UPLOAD_SHELF_H

#include <json/json.h>

#include <string>
#include <vector>

namespace OrvaneDevServer {

// A text that names a file right in a folder: nothing hidden, no path.
bool IsPlainFileName(const std::string& name);

// [{"device","upload_id","device_folder","folder","size","held","whole","files":[{"name","size"},..]},..], the newest
// first. `folder` is that of all uploads. Any thread.
Json::Value ListUploads(const std::string& folder);

struct LineQuery {
    std::string folder;  // "files" of one upload
    std::string file;    // one of them; empty: all that are logs
    int minimumLevel = 0;
    std::string module;  // empty: all
    std::string text;    // found in a line's text or its function, whatever the case of ASCII letters; empty: all
    size_t from = 0, most = 300;
    std::vector<std::string> keyFiles;  // private keys for what is enciphered
};

// {"lines":[{"time","level","module","thread","file","line","function","text"},..],"total":N,"modules":[..],
// "levels":[..],"notes":[..],"cut":BOOL}: the lines from `from` on, counted among those that the query lets pass. A
// line of no logger's format has "text" alone. "levels" are the words of all levels, the most verbose first; "notes"
// say what was damaged or enciphered; "cut": not all was read. Any thread.
Json::Value ReadUploadedLines(const LineQuery& query);

}  // namespace OrvaneDevServer

#endif
