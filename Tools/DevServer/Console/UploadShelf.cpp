#include "DevServer/Console/UploadShelf.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr size_t kMostUploads = 300, kMostFiles = 1000;

std::vector<fs::path> FoldersIn(const fs::path& folder) {
    std::vector<fs::path> folders;
    std::error_code error, ignored;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (at->is_directory(ignored) && IsPlainFileName(at->path().filename().string())) folders.push_back(at->path());
    return folders;
}

Json::Int64 SizeOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : static_cast<Json::Int64>(size);
}

Json::Value FilesIn(const fs::path& folder) {
    std::vector<fs::path> paths;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end && paths.size() < kMostFiles;
         at.increment(error))
        paths.push_back(at->path());
    std::sort(paths.begin(), paths.end());
    Json::Value files(Json::arrayValue);
    for (const fs::path& path : paths) {
        Json::Value file(Json::objectValue);
        file["name"] = path.filename().string();
        file["size"] = SizeOf(path);
        files.append(file);
    }
    return files;
}

Json::Value Describe(const fs::path& folder) {
    std::ifstream file(folder / "upload.json", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    Json::Value described, upload(Json::objectValue);
    std::string ignored;
    if (!ReadStrictly(text, described, ignored) || !described.isObject()) described = Json::Value(Json::objectValue);
    std::error_code error;
    const bool isWhole = fs::exists(folder / "upload.zip", error);
    upload["device"] = described["device"];
    upload["upload_id"] = described["upload_id"];
    upload["size"] = described["total_size"];
    upload["device_folder"] = folder.parent_path().filename().string();
    upload["folder"] = folder.filename().string();
    upload["whole"] = isWhole;
    upload["held"] = SizeOf(folder / (isWhole ? "upload.zip" : "data"));
    upload["files"] = FilesIn(folder / "files");
    return upload;
}

}  // namespace

bool IsPlainFileName(const std::string& name) {
    constexpr size_t kLongest = 255;
    return !name.empty() && name.size() <= kLongest && name[0] != '.' &&
           std::none_of(name.begin(), name.end(),
                        [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' ' || c == 0x7F; });
}

Json::Value ListUploads(const std::string& folder) {
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    for (const fs::path& device : FoldersIn(folder))
        for (const fs::path& upload : FoldersIn(device)) {
            std::error_code error;
            found.emplace_back(fs::last_write_time(upload, error), upload);
        }
    std::sort(found.begin(), found.end(), std::greater<>());
    // Cut down before the rest is looked into: each description reads a folder.
    if (found.size() > kMostUploads) found.resize(kMostUploads);
    Json::Value list(Json::arrayValue);
    for (const auto& [time, path] : found)
        list.append(Describe(path));
    return list;
}

}  // namespace OrvaneDevServer
