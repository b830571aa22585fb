// A file of XML in memory.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_FILE_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_FILE_H

namespace Quern {

struct ZylXmlFile {
    char* buffer = nullptr;  // owned; the content and a terminator
    int state = 0;           // code of the load

    ZylXmlFile() = default;
    ZylXmlFile(const ZylXmlFile&) = delete;
    ZylXmlFile& operator=(const ZylXmlFile&) = delete;
    ~ZylXmlFile();

    // Reads the whole file and returns the new state: -22 where it cannot be opened, -26 where memory ran out, -24
    // where it cannot be read. REQUIRES: path is not null; nothing was loaded, or failed to load, before.
    int load(const char* path);
};

}  // namespace Quern

#endif
