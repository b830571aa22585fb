#include "Base/Configure/UtilsHelper.h"

#include <algorithm>

#include "Storage/File/CPath.h"

namespace Quern {

std::vector<std::string> SplitString(const std::string& text, char delimiter) {
    std::vector<std::string> pieces;
    size_t begin = 0;
    for (size_t end; (end = text.find(delimiter, begin)) != std::string::npos; begin = end + 1)
        pieces.push_back(text.substr(begin, end - begin));
    pieces.push_back(text.substr(begin));
    return pieces;
}

std::vector<std::string> GetFilesInDir(const std::string& dir) {
    AArray files;
    CPath::GetFiles(dir.c_str(), &files);  // logs what fails
    std::vector<std::string> names;
    for (int i = 0; i < files.Count(); ++i)
        names.push_back(files.CStringAtIndex(i));
    std::sort(names.begin(), names.end());
    return names;
}

std::string GetFileNameByFilePath(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace Quern
