#include "Orvane/SorrelCUploadTask.h"

#include <openssl/sha.h>

#include "Base/Configure/UtilsHelper.h"
#include "HeardAnswers.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"
#include "System/WWW/Task/OrvaneSorrelUploadTask.h"
#include "System/WWW/Task/SorrelUploadTaskBridge.h"
#include "System/WWW/Task/WWW.h"

namespace {

using namespace OrvaneTest;

std::string HexSha1(const std::string& data) {
    unsigned char digest[SHA_DIGEST_LENGTH];
    SHA1(reinterpret_cast<const unsigned char*>(data.data()), data.size(), digest);
    std::string text;
    for (const unsigned char byte : digest)
        text += Format("%02x", byte);
    return text;
}

std::string Body(const std::string& part, const std::string& name = "log.zip") {
    const std::string boundary = "------WebKitFormBoundaryftnnT7s3iF7wV5q6";
    return boundary + "\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n" + HexSha1(part) + "\r\n" +
           boundary + "\r\nContent-Disposition: form-data; name=\"myfile\"; filename=\"" + name +
           "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + part + "\r\n" + boundary + "--\r\n";
}

// What a request may get: a body with the address in place of "@", or one of kGood, with which the upload goes on.
using Fault = std::string;
const std::vector<Fault> kBad = Quern::SplitString(
    R"(status 500|close||{"ret":0,}|[0]|{"ret":7,"err":"full"}|{"ret":-7}|{"ret":"0"}|{"ret":0,"biz_data":null}|)"
    R"({"ret":0,"biz_data":{"next_pos":9}}|{"ret":0,"biz_data":{"upload_url":5,"next_pos":9}}|)"
    R"({"ret":0,"biz_data":{"upload_url":"@"}}|{"ret":0,"biz_data":{"upload_url":"@","next_pos":"9"}}|)"
    R"({"ret":0,"biz_data":{"upload_url":"@","next_pos":9.5}}|{"ret":0,"biz_data":{"upload_url":"@","next_pos":-1}}|)"
    R"({"ret":0,"biz_data":{"upload_url":"@","next_pos":99999999999999999999}}|)" +
        std::string(100000, '['),
    '|');
const std::vector<Fault> kGood = {"right", "back", "beyond", "still"};

bool IsGood(const Fault& fault) {
    return std::find(kGood.begin(), kGood.end(), fault) != kGood.end();
}

// Where an upload that stands at `from` goes on.
long long Next(const Fault& fault, long long from, long long part, long long size) {
    return fault == "back"     ? from / 2
           : fault == "beyond" ? size + 5
           : fault == "still"  ? from
                               : std::min(size, from + part);
}

class SorrelUploadTaskTest : public testing::Test, public SorrelCUploadTask::Listener {
protected:
    void OnFinished(SorrelCUploadTask* task, int result) override {
        delete task;
        results.push_back(result);
        ++finished;
    }
    int Upload(const std::string& path, long long partSize, const std::string& id = "id") {
        SorrelCUploadTask* const task = Quern::WWW::GetSorrelUploadTask();
        task->SetCredentialInfo("{\"a\":\"b&c=d\"}\n");
        task->SetListener(this);
        const int before = finished;
        task->Upload(id.c_str(), path.c_str(), partSize, server.Url("").c_str());
        return WaitFor([&] { return finished > before; }) ? results.back() : -1;
    }
    // Also begins the server's plan.
    std::string MakeFile(size_t size, long long partSize, std::vector<Fault> faults = {},
                         const std::string& name = "log.zip") {
        const std::lock_guard guard(mutex);
        asked = 0;
        position = 0;
        part = partSize;
        plan = std::move(faults);
        std::mt19937 random(static_cast<unsigned>(size));
        content.resize(size);
        for (char& byte : content)
            byte = static_cast<char>(random());
        const std::string path = CacheFolder() + "/" + name;
        WriteFile(path, content);
        return path;
    }
    // The server of the test: `plan` says what each request gets, what lies behind its end is right.
    std::string Answer(const HttpRequest&) {
        const std::lock_guard guard(mutex);
        const size_t number = asked++;
        const Fault fault = number < plan.size() ? plan[number] : "right";
        const std::string url = server.Url("/part" + std::to_string(number));
        if (fault == "close") return "";
        if (fault == "status 500") return HttpAnswer("500 Broken", R"({"ret":0})");
        std::string body = IsGood(fault) ? R"({"ret":0,"err":"","biz_data":{"upload_url":"@","next_pos":)" : fault;
        if (const size_t at = body.find('@'); at != body.npos) body.replace(at, 1, url);
        if (!IsGood(fault)) return HttpAnswer("200 OK", body);
        position = Next(fault, position, number == 0 ? 0 : std::max(0LL, part), static_cast<long long>(content.size()));
        return HttpAnswer("200 OK", body + std::to_string(position) + "}}");
    }

    std::mutex mutex;  // guards what the server reads
    std::string content;
    long long part = 0, position = 0;
    std::vector<Fault> plan;
    size_t asked = 0;
    std::atomic<int> finished{0};
    std::vector<int> results;
    CapturedConsole console;
    HttpServer server{[this](const HttpRequest& request) { return Answer(request); }};
};

TEST_F(SorrelUploadTaskTest, SendsBothRequestsToTheByte) {
    const std::string path = MakeFile(10, 4, {"right", "status 500"});
    ASSERT_EQ(Upload(path, 0x100000004, "a/\"b\\\n\xC3\xA4 &="), 0);  // cut to 32 bits: parts of 4
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 5u);
    EXPECT_EQ(requests[0].method, "PUT");
    EXPECT_EQ(requests[0].target,
              "/upload/prepareFile?com_params=%7B%22a%22:%22b&c=d%22%7D%0A&biz_params=%7B%22upload_id%22:%22a/%5C%22b"
              "%5C%5C%5Cn%C3%A4%20&=%22,%22total_size%22:10,%22total_sha1%22:%22" +
                  HexSha1(content) + "%22%7D");
    EXPECT_EQ(requests[0].body, "");
    for (const char* header : {"Content-Type", "Transfer-Encoding", "Expect"})
        EXPECT_EQ(requests[0].Header(header), "") << header;
    const size_t starts[] = {0, 0, 4, 8};
    for (size_t i = 0; i < 4; ++i) {
        const HttpRequest& request = requests[i + 1];
        EXPECT_EQ(request.method + request.target, i < 2 ? "POST/part0" : "POST/part" + std::to_string(i));
        EXPECT_EQ(request.Header("Accept"), "*/*");
        EXPECT_EQ(request.Header("Content-Type"),
                  "multipart/form-data; boundary=----WebKitFormBoundaryftnnT7s3iF7wV5q6");
        EXPECT_EQ(request.body, Body(content.substr(starts[i], 4)));
    }
    const std::vector<std::string> lines = console.Take();
    for (const char* text : {"preparefiel url is http://", "startPos is 0, retryCount 3", "startPos is 0, retryCount 2",
                             "uploadPart http error code 500", "startPos is 8, retryCount 3", "upload file success!",
                             "MySorrelUploadTaskDelegate onFinished 0"})
        EXPECT_THAT(lines, Contains(HasSubstr(text)));
}

// What must come of a run: every request, and the result.
int Model(const std::vector<Fault>& faults, const std::string& content, long long partSize,
          std::vector<std::string>& requests) {
    const long long size = static_cast<long long>(content.size());
    const auto at = [&](size_t i) { return i < faults.size() ? faults[i] : "right"; };
    requests = {"PUT"};
    if (!IsGood(at(0))) return at(0).starts_with("{\"ret\":7") ? 1 : 2;
    long long from = Next(at(0), 0, 0, size);
    size_t url = 0, tries = 0;
    for (size_t i = 1;; ++i) {
        const size_t length = static_cast<size_t>(std::max(partSize, 0LL));
        const std::string part = from >= size ? "" : content.substr(static_cast<size_t>(from), length);
        requests.push_back("POST/part" + std::to_string(url) + Body(part));
        if (!IsGood(at(i))) {
            if (++tries == 4) return 3;
            continue;
        }
        tries = 0;
        url = i;
        from = Next(at(i), from, static_cast<long long>(length), size);
        if (from >= size) return 0;
    }
}

TEST_F(SorrelUploadTaskTest, EndsAsTheModelSaysWhateverTheServerDoes) {
    const char* const megabytes = getenv("ORVANE_UPLOAD_MEGABYTES");
    const std::vector<Fault> empty = {"right", "still", "still", "beyond"};  // the server ends it
    struct Run {
        size_t size;
        long long partSize;
        std::vector<Fault> faults;
    };
    std::vector<Run> runs = {{0, 4, {}}, {1, 4, {}}, {8, 4, {}}, {9, 4, {}}, {5, 0, empty}, {5, -1, empty}};
    for (unsigned seed = 0; seed < 150; ++seed) {
        std::mt19937 random(seed);
        Run run = {random() % 40, 1 + static_cast<long long>(random() % 12), std::vector<Fault>(random() % 16)};
        for (Fault& fault : run.faults)
            fault = random() % 2 == 0 ? kGood[random() % kGood.size()] : kBad[random() % kBad.size()];
        if (seed % 3 != 0 && !run.faults.empty()) run.faults[0] = "right";
        runs.push_back(run);
    }
    runs.push_back({(megabytes ? strtoul(megabytes, nullptr, 10) : 64) << 20, 1 << 20, {}});
    for (size_t i = 0; i < runs.size(); ++i) {
        const std::string path = MakeFile(runs[i].size, runs[i].partSize, runs[i].faults);
        std::vector<std::string> expected, came;
        const int result = Model(runs[i].faults, content, runs[i].partSize, expected);
        const size_t before = server.Requests().size();
        ASSERT_EQ(Upload(path, runs[i].partSize), result) << i;
        const auto requests = server.Requests();
        for (size_t k = before; k < requests.size(); ++k)
            came.push_back(requests[k].method == "PUT" ? "PUT" : "POST" + requests[k].target + requests[k].body);
        ASSERT_TRUE(came == expected) << i << ": " << came.size() << " requests";
    }
}

TEST_F(SorrelUploadTaskTest, TellsTheConsoleWhyARequestFails) {
    const struct {
        std::string fault;
        const char *prepare, *part;
    } cases[] = {
        {"status 500", "preparefile http error code 500", "uploadPart http error code 500"},
        {"close", "preparefile error code-1005, err", "uploadPart error code-1005, err"},
        {"", "preparefile data is nill", "uploadPart data is nill"},
        {"{\"ret\":0,", "preparefile decodejson err ret err ", "uploadPart decodejson err ret err "},
        {"{\"ret\":0,\"x\":\"" + std::string(64 << 10, 'x') + "\"}",
         "preparefile decodejson err ret err it is far too long",
         "uploadPart decodejson err ret err it is far too long"},
        {R"({"ret":7,"err":"full"})", "preparefile server errer ret 7, err (null)",
         "uploadPart server err ret 7, err full"},
    };
    for (const auto& [fault, prepare, part] : cases) {
        Upload(MakeFile(3, 4, {fault}), 4);
        EXPECT_THAT(console.Take(), Contains(StartsWith(prepare)));
        EXPECT_EQ(Upload(MakeFile(3, 4, {"right", fault}), 4), 0);
        const std::vector<std::string> lines = console.Take();
        EXPECT_THAT(lines, Contains(StartsWith(part)));
        EXPECT_THAT(lines, Contains("url is " + server.Url("/part0") + ", startPos is 0, retryCount 2"));
        EXPECT_THAT(lines, Contains(StartsWith("completed error:(null), response:200 " + server.Url("/part0") +
                                               ", data {length = ")));
    }
}

TEST_F(SorrelUploadTaskTest, TellsWhatCannotBeSent) {
    std::filesystem::create_symlink(MakeFile(3, 4, {}, "target"), CacheFolder() + "/link");
    for (const char* name : {"/missing", "/link"}) {
        const size_t before = server.Requests().size();
        EXPECT_EQ(Upload(CacheFolder() + name, 4), 0);
        ASSERT_GT(server.Requests().size(), before);
        EXPECT_THAT(server.Requests()[before].target, HasSubstr("%22total_size%22:0,%22total_sha1%22:%22%22%7D"));
        EXPECT_THAT(server.Requests().back().body, HasSubstr("name=\"part_sha1\"\r\n\r\n\r\n"));
    }

    EXPECT_EQ(Upload(MakeFile(3, 4, {}, "a\"b\r\nc"), 4), 0);
    EXPECT_EQ(server.Requests().back().body, Body(content, "a%22b%0D%0Ac"));

    SorrelCUploadTask* const task = Quern::WWW::GetSorrelUploadTask();
    task->SetListener(this);
    EXPECT_STREQ(task->GetUploadid(), "");
    const size_t before = server.Requests().size();
    task->Upload("\xFF", nullptr, 0, nullptr);
    EXPECT_TRUE(WaitFor([&] { return testing::Value(console.Take(), Contains(HasSubstr("get json error"))); }));
    EXPECT_STREQ(task->GetUploadid(), "\xFF");
    EXPECT_STREQ(task->GetUploadFilePath(), "");
    EXPECT_EQ(server.Requests().size(), before);
    delete task;

    OnUploadFinished(nullptr, this, 0);
    SorrelCUploadTask* const deaf = Quern::WWW::GetSorrelUploadTask();
    deaf->Upload(nullptr, nullptr, 0, "no address");
    std::vector<std::string> lines;
    EXPECT_TRUE(WaitFor([&] {
        for (const std::string& line : console.Take())
            lines.push_back(line);
        return testing::Value(lines, Contains("Error SorrelUploadTask::Listener *rspDlgt is NULL"));
    }));
    EXPECT_THAT(lines, Contains("Error SorrelUploadTask *task is NULL"));
    EXPECT_THAT(lines, Contains("MySorrelUploadTaskDelegate onFinished 2"));
    delete deaf;
}

TEST_F(SorrelUploadTaskTest, ReadsPartsAndTheManifest) {
    const std::string path = MakeFile(700000, 0);
    using Worker = OrvaneSorrelUploadTask;
    EXPECT_EQ(Worker::filePartToSHA1_withStartPos_withPartSize(path, 300000, 350000),
              HexSha1(content.substr(300000, 350000)));
    EXPECT_EQ(Worker::filePartToSHA1_withStartPos_withPartSize(path + "-", 0, 50), "");
    FakeInfoDictionary manifest;
    manifest.Set("Section", "key", FakeInfoDictionary::Text("value"));
    EXPECT_EQ(Worker::getPlistString_andKey_withdefault("Section", "key", "-"), "value");
    EXPECT_EQ(Worker::getPlistString_andKey_withdefault("None", "key", "-"), "-");
    EXPECT_THAT(console.Take(), Contains("SolidConfigReader::GetString section:None not exist, return defaultvalue"));
}

}  // namespace
