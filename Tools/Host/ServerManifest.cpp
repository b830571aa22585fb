#include "ServerManifest.h"

#include <plist/plist.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "Orvane/IPluginManager.h"
#include "Orvane/InfoPlist.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, FreeNode>;

// Where the library looks by itself.
std::string OwnPath() {
    const char* const named = getenv("ORVANE_INFO_PLIST");
    if (named && *named) return named;
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).replace_filename("Info.plist");
}

// Null if the file cannot be read, or is no manifest.
Node Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    const std::string bytes = content.str();
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    Node node(root);
    if (!node || plist_get_node_type(root) != PLIST_DICT) node.reset();
    return node;
}

void SetAddress(plist_t root, const std::string& url) {
    plist_t section = plist_dict_get_item(root, Orvane::Plugin::kCoreModule);
    if (!section || plist_get_node_type(section) != PLIST_DICT) {
        section = plist_new_dict();
        plist_dict_set_item(root, Orvane::Plugin::kCoreModule, section);
    }
    plist_dict_set_item(section, "RemoteConfigUrl", plist_new_string(url.c_str()));
}

// A file without a name, open as long as the process; its path. Empty if there can be none.
std::string InMemory(plist_t root) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &xml, &length);
    const int file = memfd_create("Info.plist", MFD_CLOEXEC);
    const bool isWritten = xml && file >= 0 && write(file, xml, length) == static_cast<ssize_t>(length);
    plist_to_xml_free(xml);
    return isWritten ? "/proc/self/fd/" + std::to_string(file) : "";
}

}  // namespace

bool IsManifest(const std::string& path) {
    if (Read(path)) return true;
    const bool isReadable = access(path.c_str(), R_OK) == 0;
    orvane_console_log("orvane-host: the manifest %s: %s", path.c_str(),
                       isReadable ? "no property list with a dictionary" : strerror(errno));
    return false;
}

bool UseServer(const std::string& url, const std::string& path) {
    const std::string used = path.empty() ? OwnPath() : path;
    Node root = Read(used);
    if (!root) {
        if (access(used.c_str(), F_OK) == 0) return IsManifest(used);
        root.reset(plist_new_dict());  // the one beside the program need not be there
    }
    SetAddress(root.get(), url);
    const std::string changed = InMemory(root.get());
    if (!changed.empty() && gs_OrvaneSetInfoPlist(changed.c_str())) return true;
    orvane_console_log("orvane-host: the server's address cannot be put into the manifest");
    return false;
}

}  // namespace OrvaneHost
