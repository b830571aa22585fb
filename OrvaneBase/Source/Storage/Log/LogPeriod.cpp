// The search of a log file for the records of some hours.

#include <errno.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Storage/Log/LogCrypt.h"
#include "Storage/Log/LogRecord.h"

namespace Quern {
namespace {

using namespace LogRecord;

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

enum class Found { kRecord, kNoRecord, kStop };

// Walks the records of one file, from each to the next, a byte at a time where there is none.
class PeriodScan {
public:
    PeriodScan(FILE* file, long size) : _file(file), _size(size) {}

    uint8_t* Header() { return _header; }
    long Begin() const { return _begin; }
    long End() const { return _end; }
    const std::string& WhyStopped() const { return _whyStopped; }
    Found Stop(std::string why) {
        _whyStopped = std::move(why);
        return Found::kStop;
    }

    // Looks for a record at the present place, and moves on: behind it, or by one byte.
    Found Next() {
        _begin = ftell(_file);
        if (_begin + static_cast<long>(kHeaderLength + sizeof kMagicEnd) > _size)
            return Stop("ftell(file) + __GetHeaderLen() + sizeof(kMagicEnd)) > file_size error");
        if (fread(_header, 1, kHeaderLength, _file) != kHeaderLength)
            return Stop(Format("fread(buff.Ptr(), 1, __GetHeaderLen(), file) error:%s, before_len:%ld.",
                               strerror(ferror(_file)), _begin));
        const Found end = IsMagic(_header[kMagicAt]) ? LookForItsEnd() : Found::kNoRecord;
        if (end != Found::kNoRecord) return end;
        if (fseek(_file, _begin + 1, SEEK_SET) != 0)
            return Stop(Format("fseek(file, before_len+1, SEEK_SET) err:%s, before_len:%ld.", strerror(errno), _begin));
        return Found::kNoRecord;
    }

private:
    Found LookForItsEnd() {
        const uint32_t length = LoadU32(_header + kLenAt);
        _end = _begin + static_cast<long>(kHeaderLength) + static_cast<long>(length) + static_cast<long>(kTailLength);
        if (_end > _size) return Found::kNoRecord;
        if (fseek(_file, static_cast<long>(length), SEEK_CUR) != 0)
            return Stop(
                Format("fseek(file, len, SEEK_CUR):%s, before_len:%ld, len:%u.", strerror(errno), _begin, length));
        uint8_t end;
        if (fread(&end, 1, 1, _file) != 1)
            return Stop(Format("fread(&end, 1, 1, file) err:%s, before_len:%ld, len:%u.", strerror(ferror(_file)),
                               _begin, length));
        return end == kMagicEnd ? Found::kRecord : Found::kNoRecord;
    }

    FILE* _file;
    long _size;
    long _begin = 0;
    long _end = 0;
    uint8_t _header[kHeaderLength];
    std::string _whyStopped;
};

// Where a bound of the period lies in the scan.
bool Straddles(int hour, int begin, int end) {
    return begin < hour && end >= hour;
}
bool StartsAfter(int hour, int previousEnd, int begin) {
    return previousEnd < hour && begin >= hour;
}

}  // namespace

bool LogCrypt::GetPeriodLogs(const char* path, int beginHour, int endHour, unsigned long& beginPos,
                             unsigned long& endPos, std::string& error) {
    beginPos = endPos = 0;
    if (!path || endHour <= beginHour) return false;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path, "rb"), fclose);
    if (!file) {
        error += Format("open file fail:%s", strerror(errno));
        return false;
    }
    if (fseek(file.get(), 0, SEEK_END) != 0) {
        error += Format("fseek(file, 0, SEEK_END):%s", strerror(errno));
        return false;
    }
    const long size = ftell(file.get());
    if (fseek(file.get(), 0, SEEK_SET) != 0) {
        error += Format("fseek(file, 0, SEEK_SET) error:%s", strerror(errno));
        return false;
    }

    PeriodScan scan(file.get(), size);
    bool beginFound = false;
    int previousEnd = -1;
    long behindPrevious = 0;
    for (Found found; (found = scan.Next()) != Found::kStop;) {
        if (found == Found::kNoRecord) continue;
        int begin, end;
        if (!GetLogHour(scan.Header(), kHeaderLength, begin, end)) {
            scan.Stop(Format("__GetLogHour(buff.Ptr(), buff.Length(), beginHour, endHour) err, before_len:%ld.",
                             scan.Begin()));
            break;
        }
        if (begin > end) begin = end;
        if (!beginFound && (Straddles(beginHour, begin, end) || StartsAfter(beginHour, previousEnd, begin))) {
            beginPos = static_cast<unsigned long>(scan.Begin());
            beginFound = true;
        }
        if (beginFound) {
            if (Straddles(endHour, begin, end))
                endPos = static_cast<unsigned long>(scan.End());
            else if (StartsAfter(endHour, previousEnd, begin))
                endPos = static_cast<unsigned long>(behindPrevious);
        }
        previousEnd = end;
        behindPrevious = scan.End();
    }
    if (beginFound && previousEnd < endHour) endPos = static_cast<unsigned long>(size);
    if (endPos > beginPos) return true;
    error += scan.WhyStopped();
    error += Format("begintpos:%lu, endpos:%lu, filesize:%ld.", beginPos, endPos, size);
    return false;
}

}  // namespace Quern
