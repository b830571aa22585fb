// The server's picture of a value against the client itself.
#include "DevServer/Lint/StoredValue.h"

#include "Base/Configure/AnswerReader.h"
#include "Base/Container/StringConversion.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

using OrvaneTest::FakeInfoDictionary;

std::string Text(const ReadResult& read, const std::string& manifest, const std::string& byDefault) {
    return read.answerer == Answerer::kServer ? read.text
                                              : (read.answerer == Answerer::kManifest ? manifest : byDefault);
}

std::string Double(const std::string& text) {
    double number = 77;
    Quern::str2double(text.c_str(), &number);
    char printed[40];
    snprintf(printed, sizeof printed, "%.15g", number);
    return printed;
}

TEST(StoredValue, ReadsAsTheClientReadsIt) {
    const std::string values =
        R"(7 -7 5000000000 -5000000000 18446744073709551615 12345678901234567890 9223372036854775807 true 1.5 1e5 null
        [1] {} "7" "007" "-07" "1.10" "-0" "-0.00" "-." "." "-" "+5" "1.5.2" "5000000000" "123456789012345678"
        "0123456789012345678" "1234567890123456789"
        "0.1234567890123" "99999999999999999." "true" "TRUE" "abc" "12abc" "0x10" "1e5" "inf" "\u0020a\u0020b\u0020"
        "\t4" "\u00204\u0020" "4#5" "#5" "\u0020#\u0020" "" "\u0020\u0020\u0020" "a\u0000b" "7\u0000" "a=b" "[M]" ")" +
        std::string(2000, 'y') + "\"";
    std::istringstream words(values);
    const std::vector<std::string> sent{std::istream_iterator<std::string>(words), {}};
    // "n.." and "s.." hold a value; the manifest has them as an integer and as a text, which are what the reads want.
    const auto keychain = OrvaneTest::FakeKeychain::Install();
    FakeInfoDictionary manifest;
    std::string keys;
    for (size_t i = 0; i < sent.size(); ++i) {
        const std::string number = std::to_string(i);
        manifest.Set("M", "n" + number, FakeInfoDictionary::Integer(55));
        manifest.Set("M", "s" + number, FakeInfoDictionary::Text("55"));
        keys += (i == 0 ? "\"n" : ",\"n") + number + "\":" + sent[i] + ",\"s" + number + "\":" + sent[i];
    }
    const std::string answer = R"({"ret":0,"err":"","biz_data":{"rule_id":1,"merged_cfg":{"M":{)" + keys + "}}}}";
    Quern::Value modules;
    int32_t ruleId = 0;
    ASSERT_EQ(Orvane::AnswerReader::_ParseJsonObject(answer.data(), answer.size(), modules, ruleId), 0);
    Quern::BundleImpl bundle((OrvaneTest::CacheFolder() + "/client.config").c_str());
    bundle.Set(modules);
    for (size_t i = 0; i < sent.size(); ++i) {
        const Reads reads = ReadsOf(StoreValue(Parsed("[" + sent[i] + "]")[0]));
        const std::string n = "n" + std::to_string(i), s = "s" + std::to_string(i);
        EXPECT_EQ(std::to_string(bundle.Get("M", n.c_str(), 77)), Text(reads.asInt, "55", "77")) << sent[i];
        EXPECT_EQ(std::to_string(bundle.Get("M", n.c_str(), 77LL)), Text(reads.asLong, "55", "77")) << sent[i];
        EXPECT_EQ(Double(bundle.Get("M", s.c_str(), "").c_str()), Text(reads.asDouble, "55", "77")) << sent[i];
        EXPECT_EQ(bundle.Get("M", n.c_str(), false) ? "true" : "false", Text(reads.asBool, "true", "false")) << sent[i];
        EXPECT_STREQ(bundle.Get("M", s.c_str(), "def").c_str(), Text(reads.asString, "55", "def").c_str()) << sent[i];
    }
}

}  // namespace
}  // namespace OrvaneDevServer
