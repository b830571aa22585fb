#include "DevServer/Console/DeviceBook.h"

#include <algorithm>
#include <vector>

#include "DevServer/Console/FileEnd.h"
#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
namespace {

constexpr size_t kMostJournalBytes = 4 << 20;  // of what earlier runs left
constexpr size_t kLongestTarget = 300;

// What the list of requests shows of a line.
Json::Value RequestOf(const Json::Value& line) {
    Json::Value request(Json::objectValue);
    for (const char* name : {"time", "kind", "number", "device", "game", "method", "status", "length", "problems",
                             "faults", "client", "upload_id", "position", "bytes", "refusal", "carried_out", "notes"})
        if (line.isMember(name)) request[name] = line[name];
    if (line["target"].isString()) request["target"] = line["target"].asString().substr(0, kLongestTarget);
    return request;
}

}  // namespace

void DeviceBook::Take(const Json::Value& line, const Json::Value* taken) {
    if (!line.isObject() || !line["kind"].isString()) return;
    const std::lock_guard<std::mutex> guard(_mutex);
    ++_lines;
    _requests.push_front(RequestOf(line));
    if (_requests.size() > kMostRequests) _requests.pop_back();
    if (line["kind"] == "config" && line["device"].isString() && !line["device"].asString().empty())
        TakeFetch(line, taken);
}

void DeviceBook::TakeOld(const Json::Value& line) {
    if (!line.isObject()) return;
    const bool isTaken = line["client"].isString() && line["client"].asString().starts_with("will re");
    const bool isSpoilt = line["faults"].isArray() && !line["faults"].empty();
    const bool isKnown = line["right"].isObject() && line["right"]["merged_cfg"].isObject();
    Take(line, isTaken && isKnown && !isSpoilt ? &line["right"]["merged_cfg"] : nullptr);
}

// REQUIRES: _mutex.
void DeviceBook::TakeFetch(const Json::Value& line, const Json::Value* taken) {
    const std::string did = line["device"].asString();
    const auto [at, isNew] = _byDevice.try_emplace(did);
    Entry& entry = at->second;
    Json::Value& summary = entry.summary;
    if (isNew) {
        summary["did"] = did;
        summary["first"] = line["time"];
        summary["fetches"] = 0;
        summary["problems"] = 0;
    }
    entry.seen = _lines;
    summary["last"] = line["time"];
    summary["fetches"] = summary["fetches"].asUInt() + 1;
    summary["problems"] = summary["problems"].asUInt() + line["problems"].size();
    summary["client"] = line["client"];
    summary["status"] = line["status"];
    if (line["com_params"].isObject()) summary["com_params"] = line["com_params"];
    if (taken) {
        entry.modules = *taken;
        entry.modulesTime = line["time"];
        entry.modulesRuleId = line["right"].isObject() ? line["right"]["rule_id"] : Json::Value();
        summary["rule_id"] = entry.modulesRuleId;
    }
    if (_byDevice.size() > kMostDevices) ForgetOldest();
}

void DeviceBook::ForgetOldest() {
    _byDevice.erase(std::min_element(_byDevice.begin(), _byDevice.end(), [](const auto& left, const auto& right) {
        return left.second.seen < right.second.seen;
    }));
}

Json::Value DeviceBook::Devices() const {
    const std::lock_guard<std::mutex> guard(_mutex);
    std::vector<const Entry*> entries;
    for (const auto& [did, entry] : _byDevice)
        entries.push_back(&entry);
    std::sort(entries.begin(), entries.end(),
              [](const Entry* left, const Entry* right) { return left->seen > right->seen; });
    Json::Value list(Json::arrayValue);
    for (const Entry* entry : entries)
        list.append(entry->summary);
    return list;
}

Json::Value DeviceBook::Device(const std::string& did) const {
    const std::lock_guard<std::mutex> guard(_mutex);
    const auto found = _byDevice.find(did);
    if (found == _byDevice.end()) return {};
    Json::Value device = found->second.summary;
    device["modules"] = found->second.modules;
    device["modules_rule_id"] = found->second.modulesRuleId;
    device["modules_time"] = found->second.modulesTime;
    return device;
}

Json::Value DeviceBook::Requests(const std::string& did) const {
    const std::lock_guard<std::mutex> guard(_mutex);
    Json::Value list(Json::arrayValue);
    for (const Json::Value& request : _requests)
        if (did.empty() || request["device"] == did) list.append(request);
    return list;
}

void ReadJournalEnd(const std::string& path, DeviceBook& book) {
    for (const std::string& text : LinesAtEnd(path, kMostJournalBytes).lines) {
        Json::Value line;
        std::string ignored;
        if (ReadStrictly(text, line, ignored)) book.TakeOld(line);
    }
}

}  // namespace OrvaneDevServer
