// The files that devices send, kept on the disk.
//
//     FOLDER/DEVICE/ID/upload.json    who sends what: {"device","total_sha1","total_size","upload_id"}
//     FOLDER/DEVICE/ID/data           what has come so far: an upload goes on where it ends, after a restart too
//     FOLDER/DEVICE/ID/new-files/     what is being taken out of it, once its digest is right
//     FOLDER/DEVICE/ID/upload.zip     the last whole file
//     FOLDER/DEVICE/ID/files/         what was in it
//
// What is whole stays until a later upload of that id is whole.
//
// DEVICE and ID are the two texts with "%" and two digits for all that may not stand in every file's name.
#ifndef ORVANE_TOOLS_DEVSERVER_UPLOADS_H
#define ORVANE_TOOLS_DEVSERVER_UPLOADS_H

#include <json/json.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "DevServer/Message.h"
#include "DevServer/UploadProtocol.h"

namespace OrvaneDevServer {

// A text as the name of a file: never empty, hidden or longer than a name may be, and another one for another text.
std::string SafeName(const std::string& text);

// Any thread. Requests of one upload wait for each other, those of others never: a file's digest, and taking it apart,
// may take seconds.
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

    // A device announces a file. One that is another than what has come in part, or that was whole already, begins
    // anew. Parts of an earlier announcement, which may still be on their way from a process that is gone, are refused
    // from now on. Only those of an announcement to an earlier run of the server may pass, if it had the same name.
    Outcome Announce(const PrepareRequest& request);

    // A part comes. It must be intact, and begin where the upload stands or repeat what has come. Reports a part that
    // differs from what has come, one behind the end, and the fifth try of a part, whatever became of the others.
    Outcome Take(const PartRequest& request, Problems& problems);
    // The client knows that its last part was taken: the tries of the next one are counted anew.
    void Confirm(const std::string& upload);

    // Whether the device has sent the file of an order. `uploadId` as the device sends it, which may be another text
    // than what was ordered (StoreValue).
    bool IsWhole(const std::string& device, const std::string& uploadId) const;

private:
    // What comes into one folder.
    struct Upload {
        explicit Upload(std::string path) : folder(std::move(path)) {}

        const std::string folder;
        std::mutex mutex;  // guards the rest, and the folder's content
        std::string name;  // in addresses, a new one with each announcement
        int64_t size = 0, held = 0;
        std::string sha1;
        bool isWhole = false;
        // Of the part that is being tried.
        int64_t triedAt = -1;
        std::string triedSha1;
        int tries = 0;
    };

    // An upload that is used, and nobody else uses meanwhile; null if there is none of that name.
    struct Held {
        std::shared_ptr<Upload> upload;
        std::unique_lock<std::mutex> guard;
    };

    std::string FolderOf(const std::string& device, const std::string& uploadId) const;
    Held HoldFolder(const std::string& folder);
    Held HoldNamed(const std::string& name);
    void CountTry(Upload& upload, const PartRequest& request, Problems& problems);
    static std::string Append(Upload& upload, const PartRequest& request, Problems& problems);
    static std::string Finish(Upload& upload, Outcome& outcome);

    const std::string _folder;
    std::atomic<uint64_t> _announcements{0};                  // in this run
    std::mutex _mutex;                                        // guards the next; nothing is waited for under it
    std::map<std::string, std::shared_ptr<Upload>> _uploads;  // by the digest of the folder, in this run
};

}  // namespace OrvaneDevServer

#endif
