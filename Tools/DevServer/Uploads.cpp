#include "DevServer/Uploads.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "DevServer/JsonText.h"
#include "DevServer/Query.h"
#include "DevServer/Sha1Text.h"
#include "DevServer/Unpack.h"
#include "Storage/File/WholeFile.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr int kMostTries = 4;
constexpr char kBehindDigest = '-';  // in an upload's name, between the folder's digest and the announcement's number

Json::Value Description(const PrepareRequest& request) {
    Json::Value value(Json::objectValue);
    value["device"] = request.device;
    value["upload_id"] = request.uploadId;
    value["total_size"] = static_cast<Json::Int64>(request.totalSize);
    value["total_sha1"] = request.totalSha1;
    return value;
}

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int64_t SizeOf(const std::string& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : static_cast<int64_t>(size);
}

// Whether what was held from a position on is the beginning of `bytes`, or all of it.
bool IsSame(const std::string& path, int64_t position, std::string_view bytes) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(position);
    std::string held(bytes.size(), '\0');
    file.read(held.data(), static_cast<std::streamsize>(held.size()));
    return bytes.substr(0, static_cast<size_t>(file.gcount())) ==
           std::string_view(held).substr(0, static_cast<size_t>(file.gcount()));
}

}  // namespace

std::string SafeName(const std::string& text) {
    constexpr size_t kLongest = 150;
    static const char kDigits[] = "0123456789ABCDEF";
    std::string name;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = isalnum(byte) || c == '-' || c == '_' || (c == '.' && !name.empty());
        if (isPlain)
            name += c;
        else
            ((name += '%') += kDigits[byte >> 4]) += kDigits[byte & 0x0F];
    }
    if (name.empty()) return "%";
    return name.size() <= kLongest ? name : name.substr(0, kLongest) + "%" + Sha1Text(text);
}

std::string Uploads::FolderOf(const std::string& device, const std::string& uploadId) const {
    return _folder + "/" + SafeName(device) + "/" + SafeName(uploadId);
}

Uploads::Held Uploads::HoldFolder(const std::string& folder) {
    std::shared_ptr<Upload> upload;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        std::shared_ptr<Upload>& known = _uploads[Sha1Text(folder)];
        if (!known) known = std::make_shared<Upload>(folder);
        upload = known;
    }
    std::unique_lock<std::mutex> guard(upload->mutex);
    return {std::move(upload), std::move(guard)};
}

Uploads::Held Uploads::HoldNamed(const std::string& name) {
    std::shared_ptr<Upload> upload;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        const auto found = _uploads.find(name.substr(0, name.find(kBehindDigest)));
        if (found == _uploads.end()) return {};
        upload = found->second;
    }
    std::unique_lock<std::mutex> guard(upload->mutex);
    if (upload->name != name) return {};
    return {std::move(upload), std::move(guard)};
}

Uploads::Outcome Uploads::Announce(const PrepareRequest& request) {
    const Held held = HoldFolder(FolderOf(request.device, request.uploadId));
    Upload& upload = *held.upload;
    upload.name.clear();
    Outcome outcome;
    const std::string description = WriteCompact(Description(request)), data = upload.folder + "/data";
    std::error_code error;
    if (ReadText(upload.folder + "/upload.json") != description || SizeOf(data) > request.totalSize)
        fs::remove(data, error);
    fs::create_directories(upload.folder, error);
    std::ofstream file(upload.folder + "/upload.json", std::ios::binary);
    if (!(file << description << std::flush)) {
        outcome.refusal = upload.folder + ": " + strerror(errno);
        return outcome;
    }
    upload.size = request.totalSize;
    upload.sha1 = request.totalSha1;
    upload.held = SizeOf(data);
    upload.isWhole = false;
    upload.triedAt = -1;
    upload.name = Sha1Text(upload.folder) + kBehindDigest + std::to_string(++_announcements);
    outcome.upload = upload.name;
    outcome.next = upload.held;
    return outcome;
}

Uploads::Outcome Uploads::Take(const PartRequest& request, Problems& problems) {
    const Held held = HoldNamed(request.upload);
    Outcome outcome;
    outcome.upload = request.upload;
    if (!held.upload) {
        outcome.refusal = "no such upload was announced to this run of the server, or it was announced anew";
        return outcome;
    }
    Upload& upload = *held.upload;
    CountTry(upload, request, problems);
    outcome.refusal = request.isIntact ? Append(upload, request, problems) : "\"part_sha1\" is not that of the part";
    if (outcome.refusal.empty() && upload.held == upload.size && !upload.isWhole)
        outcome.refusal = Finish(upload, outcome);
    outcome.next = upload.held;
    outcome.isWhole = upload.isWhole;
    return outcome;
}

void Uploads::CountTry(Upload& upload, const PartRequest& request, Problems& problems) {
    if (upload.triedAt != request.position) {
        upload.triedAt = request.position;
        upload.triedSha1.clear();
        upload.tries = 0;
    }
    ++upload.tries;
    if (upload.tries > kMostTries)
        problems.push_back("this is try " + std::to_string(upload.tries) + " of the part from " +
                           std::to_string(request.position) + "; there are " + std::to_string(kMostTries) +
                           " at the most");
    if (!request.isIntact || request.sha1.empty()) return;  // nothing was tried that another could differ from
    if (upload.triedSha1.empty()) upload.triedSha1 = request.sha1;
    if (upload.triedSha1 != request.sha1)
        problems.push_back("another try of the part from " + std::to_string(request.position) + " had other bytes");
}

void Uploads::Confirm(const std::string& name) {
    const Held held = HoldNamed(name);
    if (held.upload) held.upload->triedAt = -1;
}

// Why the part was not taken; empty if it was.
std::string Uploads::Append(Upload& upload, const PartRequest& request, Problems& problems) {
    const auto length = static_cast<int64_t>(request.part.size());
    const std::string path = upload.folder + (upload.isWhole ? "/upload.zip" : "/data");
    if (request.position > upload.held && request.position < upload.size)
        return "the part begins at " + std::to_string(request.position) + "; only " + std::to_string(upload.held) +
               " bytes have come";
    if (request.position >= upload.size) {
        if (length > 0) problems.push_back("a part comes behind the end, from " + std::to_string(request.position));
        return length > 0 ? "the file has " + std::to_string(upload.size) + " bytes" : "";
    }
    if (length == 0) {
        problems.push_back(request.sha1.empty()
                               ? "the part is empty: the file is gone from the device"
                               : "the part is empty: \"part_size\" of the order is not above 0, or the "
                                 "file has become shorter on the device");
        return "the part is empty";  // taken, the client would send the next empty one at once, for ever
    }
    if (length > upload.size - request.position) {
        problems.push_back("the part is longer than what is left of the file");
        return "the file has " + std::to_string(upload.size) + " bytes";
    }
    if (!IsSame(path, request.position, request.part)) {
        problems.push_back("bytes from " + std::to_string(request.position) +
                           " on are others than those that came before");
        return "the bytes differ from those that came before";
    }
    const int64_t known = std::min(length, upload.held - request.position);
    if (known == length) return "";
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const bool isWritten =
        descriptor >= 0 && Quern::WriteAll(descriptor, request.part.substr(static_cast<size_t>(known)));
    const std::string problem = isWritten ? "" : path + ": " + strerror(errno);
    if (descriptor >= 0) close(descriptor);
    upload.held = SizeOf(path);
    return problem;
}

// Why the file is not what was announced; empty if it is.
std::string Uploads::Finish(Upload& upload, Outcome& outcome) {
    std::error_code error;
    const std::string data = upload.folder + "/data", zip = upload.folder + "/upload.zip";
    if (upload.size == 0) std::ofstream(data, std::ios::app).close();
    const std::string sha1 = Sha1TextOfFile(data);
    if (sha1 != upload.sha1 && !(upload.size == 0 && upload.sha1.empty())) {
        fs::remove(data, error);
        upload.held = 0;
        return "the file's digest is " + sha1 + "; " + upload.sha1 + " was announced";
    }
    // What was whole before is there until this is. The name last, as the sign that the order is carried out: a run
    // that is killed in between finds the data still there, and does it again.
    const std::string files = upload.folder + "/files", newFiles = upload.folder + "/new-files";
    fs::remove_all(newFiles, error);
    outcome.notes = Unpack(data, newFiles);
    fs::remove_all(files, error);
    fs::rename(newFiles, files, error);
    if (error) return files + ": " + error.message();
    fs::rename(data, zip, error);
    if (error) return zip + ": " + error.message();
    upload.isWhole = true;
    return "";
}

bool Uploads::IsWhole(const std::string& device, const std::string& uploadId) const {
    std::error_code error;
    return fs::exists(FolderOf(device, uploadId) + "/upload.zip", error);
}

}  // namespace OrvaneDevServer
