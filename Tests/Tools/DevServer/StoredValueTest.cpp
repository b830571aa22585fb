// The server's picture of a value against the client itself.
#include "DevServer/Lint/StoredValue.h"

#include <gtest/gtest.h>

#include "Base/Configure/AnswerReader.h"
#include "Base/Container/StringConversion.h"
#include "DevServer/JsonText.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Support/TestContainer.h"

namespace OrvaneDevServer {
namespace {

using OrvaneTest::FakeInfoDictionary;

// "n" and "s" hold the value; a manifest has them as an integer and as a text, which are what its reads want.
struct Client {
    explicit Client(const std::string& json) : bundle((OrvaneTest::CacheFolder() + "/client.config").c_str()) {
        manifest.Set("M", "n", FakeInfoDictionary::Integer(55));
        manifest.Set("M", "s", FakeInfoDictionary::Text("55"));
        const std::string answer =
            R"({"ret":0,"err":"","biz_data":{"rule_id":1,"merged_cfg":{"M":{"n":)" + json + R"(,"s":)" + json + "}}}}";
        Quern::Value modules;
        int32_t ruleId = 0;
        EXPECT_EQ(Orvane::AnswerReader::_ParseJsonObject(answer.data(), answer.size(), modules, ruleId), 0) << json;
        bundle.RemoveAll();
        bundle.Set(modules);
    }

    std::string Double() {
        double number = 77;
        Quern::str2double(bundle.Get("M", "s", "").c_str(), &number);
        char text[40];
        snprintf(text, sizeof text, "%.15g", number);
        return text;
    }

    const std::shared_ptr<OrvaneTest::FakeKeychain> keychain = OrvaneTest::FakeKeychain::Install();
    FakeInfoDictionary manifest;
    Quern::BundleImpl bundle;
};

std::string Text(const ReadResult& read, const std::string& manifest, const std::string& byDefault) {
    return read.answerer == Answerer::kServer ? read.text
                                              : (read.answerer == Answerer::kManifest ? manifest : byDefault);
}

TEST(StoredValue, ReadsAsTheClientReadsIt) {
    const std::string longText = "\"" + std::string(2000, 'y') + "\"";
    for (const char* const sent : {"7",
                                   "-7",
                                   "5000000000",
                                   "-5000000000",
                                   "18446744073709551615",
                                   "9223372036854775807",
                                   "true",
                                   "1.5",
                                   "1e5",
                                   "null",
                                   "[1]",
                                   "{}",
                                   R"("7")",
                                   R"("007")",
                                   R"("1.10")",
                                   R"("-0")",
                                   R"("-.")",
                                   R"(".")",
                                   R"("-")",
                                   R"("+5")",
                                   R"("1.5.2")",
                                   R"("5000000000")",
                                   R"("123456789012345678")",
                                   R"("1234567890123456789")",
                                   R"("0.1234567890123")",
                                   R"("99999999999999999.")",
                                   R"("true")",
                                   R"("TRUE")",
                                   R"("abc")",
                                   R"("12abc")",
                                   R"("0x10")",
                                   R"("1e5")",
                                   R"("inf")",
                                   R"(" a b ")",
                                   R"("\t4")",
                                   R"(" 4 ")",
                                   R"("4#5")",
                                   R"("#5")",
                                   R"(" # ")",
                                   R"("")",
                                   R"("   ")",
                                   R"("a\u0000b")",
                                   R"("7\u0000")",
                                   R"("a=b")",
                                   R"("[M]")",
                                   longText.c_str()}) {
        Json::Value value;
        std::string error;
        ASSERT_TRUE(ReadStrictly("[" + std::string(sent) + "]", value, error));
        Client client(sent);
        const Reads reads = ReadsOf(StoreValue(value[0]));
        EXPECT_EQ(std::to_string(client.bundle.Get("M", "n", 77)), Text(reads.asInt, "55", "77")) << sent;
        EXPECT_EQ(std::to_string(client.bundle.Get("M", "n", 77LL)), Text(reads.asLong, "55", "77")) << sent;
        EXPECT_EQ(client.Double(), Text(reads.asDouble, "55", "77")) << sent;
        EXPECT_EQ(client.bundle.Get("M", "n", false) ? "true" : "false", Text(reads.asBool, "true", "false")) << sent;
        EXPECT_STREQ(client.bundle.Get("M", "s", "def").c_str(), Text(reads.asString, "55", "def").c_str()) << sent;
    }
}

}  // namespace
}  // namespace OrvaneDevServer
