// The files that devices send, kept on the disk.
//
//     FOLDER/DEVICE/ID/upload.json    who sends what: {"device","total_sha1","total_size","upload_id"}
//     FOLDER/DEVICE/ID/data           what has come so far: an upload goes on where it ends, after a restart too
//     FOLDER/DEVICE/ID/upload.zip     the whole file, once its digest is right
//     FOLDER/DEVICE/ID/files/         what was in it
//
// DEVICE and ID are the two texts with "%" and two digits for all that may not stand in every file's name.
#ifndef ORVANE_TOOLS_DEVSERVER_UPLOADS_H
#define ORVANE_TOOLS_DEVSERVER_UPLOADS_H

#include <json/json.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "DevServer/Message.h"
#include "DevServer/UploadProtocol.h"

namespace OrvaneDevServer {

// A text as the name of a file: never empty, hidden or longer than a name may be, and another one for another text.
std::string SafeName(const std::string& text);

// Any thread.
class Uploads {
public:
    explicit Uploads(std::string folder) : _folder(std::move(folder)) {}

    // What became of a request; `refusal` is empty if it was taken.
    struct Outcome {
        std::string refusal;
        std::string upload;              // how PartUrl names it
        int64_t next = 0;                // the position to go on from
        bool isWhole = false;            // all of it has come
        std::vector<std::string> notes;  // what was unpacked
    };

    // A device announces a file. One that is another than the id stood for, or that was whole already, begins anew.
    // Parts of an earlier announcement, still on their way from a process that is gone, are refused from now on.
    Outcome Announce(const PrepareRequest& request);

    // A part comes. It must begin where the upload stands, or repeat what has come. Reports a part that differs from
    // what has come, one behind the end, and the fifth try of a part.
    Outcome Take(const PartRequest& request, Problems& problems);
    // The client knows that its last part was taken: the tries of the next one are counted anew.
    void Confirm(const std::string& upload);

    // Whether the device has sent the file of an order. `uploadId` as it was ordered: a text that is a number reaches
    // the client as that number, "007" as "7" and "1.5" as "1.500000".
    bool IsWhole(const std::string& device, const std::string& uploadId) const;

private:
    struct Upload {
        std::string folder;
        int64_t size = 0, held = 0;
        std::string sha1;
        bool isWhole = false;
        // Of the part that is being tried.
        int64_t triedAt = -1;
        std::string triedSha1;
        int tries = 0;
    };

    std::string FolderOf(const std::string& device, const std::string& uploadId) const;
    void CountTry(Upload& upload, const PartRequest& request, Problems& problems);
    static std::string Append(Upload& upload, const PartRequest& request, Problems& problems);
    static std::string Finish(Upload& upload, Outcome& outcome);

    const std::string _folder;
    uint64_t _announcements = 0;             // guarded by _mutex
    mutable std::mutex _mutex;               // guards the map, and the files of all uploads
    std::map<std::string, Upload> _uploads;  // by the name in addresses, in this run
};

}  // namespace OrvaneDevServer

#endif
