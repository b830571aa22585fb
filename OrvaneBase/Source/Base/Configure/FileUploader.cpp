#include "Base/Configure/FileUploader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

#include "Base/Configure/UtilsHelper.h"
#include "Base/Configure/ZipArchive.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/QuernCommon.h"
#include "Base/ReportHandler/ConfigureReport.h"
#include "Base/XLog.h"
#include "Serializer/Codec/RegularExpression.h"
#include "Storage/File/CFile.h"
#include "Storage/File/CPath.h"
#include "Storage/File/Sandbox.h"
#include "Storage/Log/LogFolder.h"
#include "System/Network/CNetwork.h"
#include "System/WWW/Task/WWW.h"

namespace Orvane {
namespace {

using Quern::AString;
using Quern::CPath;

constexpr char kModule[] = "Upload";
constexpr int kMostAttempts = 5;  // with one id in one process
constexpr int kUploaded = 0, kRefused = 1;

// What an order may cost: the search runs inside an HTTP completion, and all other completions wait for it. The unit is
// one step of a regular expression. The first limit is for one pattern and one name. The second is for a whole search,
// which then takes a second or two. The others are prices for what costs time without a pattern: opening a folder,
// resolving what lies in it, and writing a line about a name and a pattern.
constexpr long long kStepsOfMatch = 100'000;
constexpr long long kStepsOfSearch = 50'000'000;
constexpr long long kStepsOfFolder = 10'000;
constexpr long long kStepsOfEntry = 2'000;
constexpr long long kStepsOfLine = 500;
constexpr size_t kMostMatches = 10'000;
// A pattern that has been too costly for so many names is not tried again.
constexpr int kMostCostlyNames = 10;
// What the zip takes in at the most, which limits the time that it takes and the disk that it fills: one file that
// 10,000 patterns match would go in 10,000 times.
constexpr long long kMostZippedBytes = 1LL << 30;

std::string LogFolder(const char* module) {
    AString path(CPath::GetCachePath());
    CPath::AppendSubPath(path, Quern::kLogFolder);
    return CPath::AppendSubPath(path, module).c_str();
}

// The directory that an entry of "file_path" stands for.
std::string ExpandPath(const std::string& entry) {
    if (entry.starts_with("ORVANE_LOG_DIR")) return LogFolder("Orvane");
    if (entry.starts_with("ORVANE_CORE_LOG_DIR")) return LogFolder(Quern::kCoreModule);
    return CPath::GetAppPath() + entry;
}

// The real path of a directory that may be searched; empty, with a line, if it is none.
std::string FindDirectory(const std::string& path) {
    const std::string real = Quern::Sandbox::Current().Resolve(path);
    if (real.empty()) {
        ORVANE_LOG_ERROR("search path %s is not exit", path.c_str());
        return {};
    }
    if (!Quern::CFile::IsDir(real.c_str())) {
        ORVANE_LOG_ERROR("search path %s is not a dir", path.c_str());
        return {};
    }
    return real;
}

// The server's patterns, and what is left of the search's steps.
class Patterns {
public:
    explicit Patterns(const AString& texts) {
        for (const std::string& text : Quern::SplitString(texts.c_str(), '|'))
            _patterns.push_back({text});
    }
    // False once no steps are left: the search is to end.
    bool Spend(long long steps) {
        _stepsLeft = std::max(0LL, _stepsLeft - steps);
        return _stepsLeft > 0;
    }
    bool IsSpent() const { return _stepsLeft == 0; }
    // How many patterns the name matches, `most` at the most, as far as the steps reach.
    size_t Match(const std::string& name, size_t most) {
        size_t matches = 0;
        for (Pattern& pattern : _patterns) {
            // The pattern's length counts, since the line below holds the pattern.
            if (matches == most || !Spend(kStepsOfLine + static_cast<long long>(pattern.text.size()))) break;
            if (Matches(pattern, name)) {
                ORVANE_LOG_INFO("fileName %s match ", name.c_str());
                ++matches;
            } else {
                ORVANE_LOG_WARNING("fileName %s dismatch filePattern %s", name.c_str(), pattern.text.c_str());
            }
        }
        return matches;
    }

private:
    struct Pattern {
        std::string text;
        int costlyNames = 0;
    };

    bool Matches(Pattern& pattern, const std::string& name) {
        if (pattern.costlyNames == kMostCostlyNames) return false;
        const long long share = std::min(kStepsOfMatch, _stepsLeft);
        long long steps = share;
        const int result = Quern::slre_match_bounded(pattern.text.c_str(), name.c_str(), static_cast<int>(name.size()),
                                                     Quern::kSlreIgnoreCase, steps);
        Spend(share - steps);
        if (steps == 0 && ++pattern.costlyNames == kMostCostlyNames)
            ORVANE_LOG_ERROR("filePattern %s is given up: it takes too many steps", pattern.text.c_str());
        return result >= 0;
    }

    std::vector<Pattern> _patterns;
    long long _stepsLeft = kStepsOfSearch;
};

// The zip's path, in the cache folder itself; empty for an id that would lead elsewhere.
std::string ZipPath(const AString& uploadId) {
    const std::string name = std::string(uploadId.c_str()) + ".zip";
    if (name.find('/') != std::string::npos || name.size() > NAME_MAX) return {};
    return std::string(CPath::GetCachePath()) + "/" + name;
}

// Removes the file that bears the name, or the link itself; a folder stays.
void RemoveOldZip(const std::string& path, const AString& uploadId) {
    ORVANE_LOG_DEBUG("determine whethe the file exists");
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) return;
    ORVANE_LOG_INFO("%s.zip already exist! need to delete", uploadId.c_str());
    unlink(path.c_str());
}

}  // namespace

FileUploader* FileUploader::GetInstance() {
    static std::atomic<FileUploader*> instance{nullptr};
    return Quern::MakeOnce(instance, [] { return new FileUploader; });
}

void FileUploader::OnConfigureRefreshed(IStringIterator*) {
    if (_isUploading) {
        ORVANE_LOG_WARNING("_isUploading...");
        return;
    }
    Configure* const settings = Configure::GetInstance();
    const Order order{settings->GetString(kModule, "file_path", ""), settings->GetString(kModule, "file_pattern", ""),
                      settings->GetString(kModule, "upload_id", ""), settings->GetInt(kModule, "part_size", 0),
                      settings->GetInt(kModule, "manual_upload", 0)};
    if (!_IsAllowed(order)) return;
    ORVANE_LOG_INFO("searchPaths: %s, filePatterns: %s, uploadid: %s, partSize: %d", order.path.c_str(),
                    order.pattern.c_str(), order.uploadId.c_str(), order.partSize);
    Quern::ConfigureReport* const report = Quern::ConfigureReport::GetInstance();
    report->RecordRecieveUploadTask(order.uploadId.c_str(), order.pattern.c_str(), order.path.c_str(), order.partSize);
    report->Report();

    const std::vector<std::string> files = _Search(order);
    if (!files.empty()) _ZipAndUpload(order, files);
}

bool FileUploader::_IsAllowed(const Order& order) {
    if (order.isManual != 1) return true;
    ORVANE_LOG_INFO("only upload by wifi(isManualUpload/isWifiUpload)");
    if (Quern::CNetwork::GetInstance()->GetNetworkState() == Quern::kANetworkReachableViaWiFi) return true;
    ORVANE_LOG_INFO("do not upload because not wifi");
    return false;
}

// A name that two patterns match is there twice. What was found before the search has cost too much is sent.
std::vector<std::string> FileUploader::_Search(const Order& order) {
    ORVANE_LOG_DEBUG("1. search the match file");
    Patterns patterns(order.pattern);
    std::vector<std::string> files;
    const auto mayGoOn = [&](long long steps) { return files.size() < kMostMatches && patterns.Spend(steps); };
    for (const std::string& entry : Quern::SplitString(order.path.c_str(), '|')) {
        if (!mayGoOn(kStepsOfFolder)) break;
        const std::string directory = FindDirectory(ExpandPath(entry));
        if (directory.empty()) continue;
        for (const std::string& name : Quern::GetFilesInDir(directory)) {
            if (!mayGoOn(kStepsOfEntry)) break;
            const std::string path = directory + "/" + name;
            if (Quern::Sandbox::Current().Resolve(path).empty()) continue;  // not there for a server
            files.insert(files.end(), patterns.Match(name, kMostMatches - files.size()), path);
        }
    }
    if (patterns.IsSpent() || files.size() == kMostMatches)
        ORVANE_LOG_ERROR("the search is ended after %zu matches: the order asks for too much", files.size());
    ORVANE_LOG_INFO("total match %d files.", static_cast<int>(files.size()));
    return files;
}

void FileUploader::_ZipAndUpload(const Order& order, const std::vector<std::string>& files) {
    ORVANE_LOG_DEBUG("2. zip the files");
    const std::string zipPath = ZipPath(order.uploadId);
    if (!zipPath.empty()) RemoveOldZip(zipPath, order.uploadId);
    Quern::ZipArchive zip(kMostZippedBytes);
    if (zipPath.empty() || !zip.CreateZipFile(zipPath)) {
        ORVANE_LOG_ERROR("Create Zip File Failed!");
        return;
    }
    ORVANE_LOG_DEBUG("add files to zip file");
    for (const std::string& file : files)
        zip.AddFileToZip(file, Quern::GetFileNameByFilePath(file));
    if (zip.HasLeftOut()) ORVANE_LOG_ERROR("files are left out of the zip: the order asks for too many bytes");
    if (!zip.CloseZipFile()) {
        ORVANE_LOG_ERROR("Close Zip File Failed!");
        unlink(zipPath.c_str());  // half a zip helps nobody, and a full disk needs the room
        return;
    }
    _Upload(order.uploadId.c_str(), zipPath.c_str(), order.partSize);
    ORVANE_LOG_INFO("_Upload zip file.");
}

void FileUploader::_Upload(const char* uploadId, const char* zipPath, int partSize) {
    const Quern::CCritical guard(&_mutex);
    if (_isUploading) {
        ORVANE_LOG_ERROR("Upload failed! FileUploader is uploading");
        return;
    }
    _isUploading = true;
    const auto known = _uploadTimes.find(uploadId);
    const int attempts = known == _uploadTimes.end() ? 0 : known->second;
    if (attempts >= kMostAttempts) return;  // with _isUploading set, for good
    SorrelCUploadTask* const task = Quern::WWW::GetSorrelUploadTask();
    task->SetCredentialInfo(Quern::QuernCommon::GetInstance()->GetComParams());
    task->SetListener(this);
    const AString url = Configure::GetInstance()->GetString(Quern::kCoreModule, "RemoteConfigUrl", "");
    task->Upload(uploadId, zipPath, partSize, url.c_str());  // may have ended, and the task be gone, when it returns
    _uploadTimes[uploadId] = attempts + 1;
}

void FileUploader::OnFinished(SorrelCUploadTask* task, int result) {
    if (task) {
        Quern::ConfigureReport* const report = Quern::ConfigureReport::GetInstance();
        report->RecordUploadResult(result, task->GetUploadid(), task->GetUploadFilePath());
        report->Report();
        if (result == kUploaded || result == kRefused) unlink(task->GetUploadFilePath());
        delete task;
    }
    _isUploading = false;
}

}  // namespace Orvane
