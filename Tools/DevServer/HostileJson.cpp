#include "DevServer/HostileJson.h"

#include <algorithm>
#include <random>

namespace OrvaneDevServer {
namespace {

constexpr int kDeep = 100000;
constexpr int kMany = 10000;

std::string Repeat(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string Config(const std::string& ret, const std::string& err, const std::string& ruleId,
                   const std::string& merged) {
    return "{\"ret\":" + ret + ",\"err\":" + err + ",\"biz_data\":{\"rule_id\":" + ruleId +
           ",\"merged_cfg\":" + merged + "}}\n";
}

std::string Stock(const std::string& retcode, const std::string& retmsg, const std::string& count,
                  const std::string& ids) {
    return "{\"retcode\":" + retcode + ",\"retmsg\":" + retmsg + ",\"result\":{\"count\":" + count +
           ",\"traceids\":" + ids + "}}\n";
}

// What is wrong whatever the protocol.
std::vector<HostileDocument> Common() {
    return {
        {"null", "null"},
        {"text", "\"text\""},
        {"array", "[]"},
        {"page", "<!DOCTYPE html><html><body>Log in to the wireless network</body></html>"},
        {"nothing", "  \n"},
        {"nul", std::string("\0{}", 3)},
        {"deep-arrays", Repeat("[", kDeep)},
        {"deep-objects", Repeat("{\"a\":", kDeep) + "1" + Repeat("}", kDeep)},
    };
}

// Many keys of one module, each with the same text in front of a number.
std::string ManyKeys(const std::string& module, const std::string& prefix) {
    std::string keys;
    for (int i = 0; i < kMany; ++i)
        keys += (i == 0 ? "\"" : ",\"") + prefix + std::to_string(i) + "\":1";
    return "\"" + module + "\":{" + keys + "}";
}

// Names that mean something where they are kept as sections and lines, in such a number that a store whose work for a
// line grows with the lines would stand still.
HostileDocument Many(const std::string& name, const std::string& modules) {
    return {name, Config("0", "\"\"", "1", "{" + modules + "}")};
}

std::vector<HostileDocument> ConfigDocuments() {
    const std::string good = "{\"Module\":{\"key\":1}}";
    std::vector<HostileDocument> all = Common();
    const std::vector<HostileDocument> own = {
        {"ret-text", Config("\"0\"", "\"\"", "1", good)},
        {"ret-big", Config("4294967296", "\"\"", "1", good)},
        {"ret-array", Config("[0]", "\"\"", "1", good)},
        {"err-object", Config("0", "{}", "1", good)},
        {"biz-text", "{\"ret\":0,\"err\":\"\",\"biz_data\":\"text\"}\n"},
        {"biz-array", "{\"ret\":0,\"err\":\"\",\"biz_data\":[1]}\n"},
        {"biz-missing", "{\"ret\":0,\"err\":\"\"}\n"},
        {"rule-text", Config("0", "\"\"", "\"1\"", good)},
        {"rule-big", Config("0", "\"\"", "1e99", good)},
        {"rule-negative", Config("0", "\"\"", "-2147483648", good)},
        {"merged-missing", "{\"ret\":0,\"err\":\"\",\"biz_data\":{\"rule_id\":1}}\n"},
        {"merged-null", Config("0", "\"\"", "1", "null")},
        {"merged-array", Config("0", "\"\"", "1", "[{\"key\":1}]")},
        {"module-text", Config("0", "\"\"", "1", "{\"Good\":{\"key\":1},\"Module\":\"text\"}")},
        {"module-null", Config("0", "\"\"", "1", "{\"Module\":null}")},
        {"value-kinds",
         Config("0", "\"\"", "1", "{\"Module\":{\"a\":true,\"b\":1.5,\"c\":null,\"d\":[],\"e\":{},\"f\":1}}")},
        {"value-deep",
         Config("0", "\"\"", "1", "{\"Module\":{\"key\":" + Repeat("[", kDeep) + Repeat("]", kDeep) + "}}")},
        {"value-big", Config("0", "\"\"", "1", "{\"Module\":{\"key\":99999999999999999999}}")},
        {"names", Config("0", "\"\"", "1", "{\"\":{\"\":\"\"},\"a]\\n[b\":{\"x=y\\n[z]\":\"1\\n[s]\\nk=2#\"}}")},
        {"nul-in-text", Config("0", "\"\"", "1", "{\"Mod\\u0000ule\":{\"k\\u0000\":\"a\\u0000b\"}}")},
        {"no-utf8", Config("0", "\"\xFF\"", "1", "{\"Module\xC3\":{\"key\xF8\":\"\xED\xA0\x80\"}}")},
        {"doubled", Config("0", "\"\"", "1", "{\"Module\":{\"key\":1,\"key\":2},\"Module\":{\"other\":3}}")},
        {"behind", Config("0", "\"\"", "1", good) + "}]garbage"},
        {"cut", Config("0", "\"\"", "1", good).substr(0, 40)},
        // The library's own module stands first in the file, as its URL is written first.
        Many("many-behind-another", "\"Game\":{\"key\":1}," + ManyKeys("OrvaneCore", "key")),
        Many("many-headers", "\"Game\":{\"key\":1}," + ManyKeys("OrvaneCore", "[key")),
        Many("many-named-headers", ManyKeys("Game", "[a]") + "," + ManyKeys("OrvaneCore", "[b]")),
        Many("many-blanks", ManyKeys("Module", " key") + "," + ManyKeys("OrvaneCore", " key")),
        Many("many-sections", ManyKeys(" Module", "key") + "," + ManyKeys("Module", "key")),
    };
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

std::vector<HostileDocument> TraceIdDocuments() {
    const std::string ids = "[\"a\",\"b\"]";
    std::vector<HostileDocument> all = Common();
    const std::vector<HostileDocument> own = {
        {"retcode-missing", "{\"retmsg\":\"ok\",\"result\":{\"count\":1,\"traceids\":[\"a\"]}}\n"},
        {"retcode-text", Stock("\"0\"", "\"ok\"", "2", ids)},
        {"retcode-big", Stock("1e99", "\"ok\"", "2", ids)},
        {"retmsg-object", Stock("0", "{}", "2", ids)},
        {"result-missing", "{\"retcode\":0,\"retmsg\":\"ok\"}\n"},
        {"result-array", "{\"retcode\":0,\"retmsg\":\"ok\",\"result\":[1]}\n"},
        {"result-text", "{\"retcode\":0,\"retmsg\":\"ok\",\"result\":\"text\"}\n"},
        {"count-missing", "{\"retcode\":0,\"retmsg\":\"ok\",\"result\":{\"traceids\":[\"a\"]}}\n"},
        {"count-zero", Stock("0", "\"ok\"", "0", "[]")},
        {"count-negative", Stock("0", "\"ok\"", "-1", ids)},
        {"count-text", Stock("0", "\"ok\"", "\"2\"", ids)},
        {"count-big", Stock("0", "\"ok\"", "4294967298", ids)},
        {"count-more", Stock("0", "\"ok\"", "3", ids)},
        {"ids-text", Stock("0", "\"ok\"", "1", "\"a\"")},
        {"ids-object", Stock("0", "\"ok\"", "1", "{\"a\":1}")},
        {"id-kinds", Stock("0", "\"ok\"", "5", "[\"a\",1,null,true,1.5]")},
        {"id-nested", Stock("0", "\"ok\"", "2", "[[],{}]")},
        {"id-odd", Stock("0", "\"ok\"", "4", "[\"\",\"a-b\",\"a\\u0000b\",\"\xFF\"]")},
        {"behind", Stock("0", "\"ok\"", "2", ids) + "}]garbage"},
        {"cut", Stock("0", "\"ok\"", "2", ids).substr(0, 40)},
    };
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

std::vector<HostileDocument> UploadDocuments() {
    const auto answer = [](const std::string& ret, const std::string& url, const std::string& next) {
        return "{\"ret\":" + ret + ",\"err\":\"\",\"biz_data\":{\"upload_url\":" + url + ",\"next_pos\":" + next +
               "}}\n";
    };
    const std::string url = "\"http://127.0.0.1:9/\"";
    std::vector<HostileDocument> all = Common();
    const std::vector<HostileDocument> own = {
        {"ret-text", answer("\"0\"", url, "0")},
        {"ret-big", answer("4294967296", url, "0")},
        {"ret-null", answer("null", url, "0")},
        {"biz-missing", "{\"ret\":0}\n"},
        {"biz-array", "{\"ret\":0,\"biz_data\":[1]}\n"},
        {"url-missing", "{\"ret\":0,\"biz_data\":{\"next_pos\":0}}\n"},
        {"url-number", answer("0", "5", "0")},
        {"pos-missing", "{\"ret\":0,\"biz_data\":{\"upload_url\":" + url + "}}\n"},
        {"pos-text", answer("0", url, "\"0\"")},
        {"pos-real", answer("0", url, "0.5")},
        {"pos-negative", answer("0", url, "-1")},
        {"pos-big", answer("0", url, "99999999999999999999")},
        {"doubled", "{\"ret\":1,\"biz_data\":{\"upload_url\":5,\"upload_url\":" + url +
                        ",\"next_pos\":-1,\"next_pos\":0},\"ret\":0}\n"},
        {"comment", "/* */" + answer("0", url, "0")},
        {"behind", answer("0", url, "0") + "}]garbage"},
        {"cut", answer("0", url, "0").substr(0, 40)},
    };
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

}  // namespace

const std::vector<HostileDocument>& HostileDocuments(Protocol protocol) {
    static const std::vector<HostileDocument> kConfigDocuments = ConfigDocuments();
    static const std::vector<HostileDocument> kTraceIdDocuments = TraceIdDocuments();
    static const std::vector<HostileDocument> kUploadDocuments = UploadDocuments();
    return protocol == Protocol::kConfig     ? kConfigDocuments
           : protocol == Protocol::kTraceIds ? kTraceIdDocuments
                                             : kUploadDocuments;
}

const HostileDocument* FindHostile(Protocol protocol, const std::string& name) {
    const std::vector<HostileDocument>& all = HostileDocuments(protocol);
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const HostileDocument& one) { return one.name == name; });
    return found == all.end() ? nullptr : &*found;
}

std::string Mutate(std::string text, uint64_t seed) {
    static const std::string kPieces[] = {"null",    "true", "-1", "1e99", "{}", "[]",   "\"\"",
                                          "\\u0000", "\xFF", "{",  "}",    "[",  "]",    ",",
                                          ":",       "\"",   "\\", "//",   "/*", "\xC3", "99999999999999999999",
                                          "0.5",     "\n"};
    std::mt19937_64 random(seed);
    const auto below = [&random](size_t bound) { return static_cast<size_t>(random() % std::max<size_t>(bound, 1)); };
    for (size_t changes = 1 + below(8); changes > 0; --changes) {
        const size_t at = below(text.size());
        const size_t length = std::min(below(16), text.size() - at);
        switch (below(6)) {
            case 0:
                if (!text.empty()) text[at] = static_cast<char>(below(256));
                break;
            case 1:
                text.erase(at, length);
                break;
            case 2:
                text.insert(at, text.substr(at, length));
                break;
            case 3:
                text.resize(at);
                break;
            case 4:
                text.insert(at, kPieces[below(std::size(kPieces))]);
                break;
            default:
                text.replace(at, length, kPieces[below(std::size(kPieces))]);
        }
    }
    return text;
}

}  // namespace OrvaneDevServer
