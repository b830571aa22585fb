#include "Orvane/SorrelCUploadTask.h"

#include <gmock/gmock.h>
#include <openssl/sha.h>

#include <atomic>
#include <random>

#include "HeardAnswers.h"
#include "Support/CapturedConsole.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/HttpServer.h"
#include "Support/TestContainer.h"
#include "System/WWW/Task/OrvaneSorrelUploadTask.h"
#include "System/WWW/Task/SorrelUploadTaskBridge.h"
#include "System/WWW/Task/WWW.h"

namespace {

using namespace OrvaneTest;
using testing::Contains;
using testing::HasSubstr;

std::string HexSha1(const std::string& data) {
    unsigned char digest[SHA_DIGEST_LENGTH];
    SHA1(reinterpret_cast<const unsigned char*>(data.data()), data.size(), digest);
    std::string text;
    for (const unsigned char byte : digest)
        text += Format("%02x", byte);
    return text;
}

std::string Go(const std::string& url, long long position) {
    return HttpAnswer(
        "200 OK", Format("{\"ret\":0,\"err\":\"\",\"biz_data\":{\"upload_url\":\"%s\",\"next_pos\":%lld}}", url.c_str(),
                         position));
}

std::string Body(const std::string& part, const std::string& name = "log.zip") {
    const std::string boundary = "------WebKitFormBoundaryftnnT7s3iF7wV5q6";
    return boundary + "\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n" + HexSha1(part) + "\r\n" +
           boundary + "\r\nContent-Disposition: form-data; name=\"myfile\"; filename=\"" + name +
           "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + part + "\r\n" + boundary + "--\r\n";
}

// What the server does to one request. Those above kClose make no failed attempt.
enum Fault {
    kStatus,
    kEmpty,
    kNoJson,
    kNoObject,
    kRet,
    kNegativeRet,
    kNoUrl,
    kUrlNumber,
    kNoPos,
    kPosText,
    kPosReal,
    kPosNegative,
    kPosHuge,
    kNoData,
    kDeep,
    kClose,
    kRight,
    kBack,
    kBeyond,
    kStill,
    kFaults
};

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
        const Fault fault = number < plan.size() ? plan[number] : kRight;
        const long long size = static_cast<long long>(content.size());
        const long long end = std::min(size, position + std::max(0LL, part));
        const std::string url = server.Url("/part" + std::to_string(number));
        const auto json = [](const std::string& text) { return HttpAnswer("200 OK", text); };
        const auto data = [&](const std::string& text) { return json("{\"ret\":0,\"biz_data\":{" + text + "}}"); };
        const std::string place = "\"upload_url\":\"" + url + "\"";
        switch (fault) {
            case kStatus:
                return HttpAnswer("500 Broken", "{\"ret\":0}");
            case kEmpty:
                return json("");
            case kNoJson:
                return json("{\"ret\":0,}");
            case kNoObject:
                return json("[0]");
            case kRet:
                return json("{\"ret\":7,\"err\":\"full\"}");
            case kNegativeRet:
                return json("{\"ret\":-7,\"err\":\"full\"}");
            case kNoUrl:
                return data("\"next_pos\":9");
            case kUrlNumber:
                return data("\"upload_url\":5,\"next_pos\":9");
            case kNoPos:
                return data(place);
            case kPosText:
                return data(place + ",\"next_pos\":\"9\"");
            case kPosReal:
                return data(place + ",\"next_pos\":9.5");
            case kPosNegative:
                return data(place + ",\"next_pos\":-1");
            case kPosHuge:
                return data(place + ",\"next_pos\":99999999999999999999");
            case kNoData:
                return json("{\"ret\":0,\"biz_data\":null}");
            case kDeep:
                return json(std::string(100000, '['));
            case kClose:
                return "";
            default:
                break;
        }
        if (number > 0)
            position = fault == kBack ? position / 2 : fault == kBeyond ? size + 5 : fault == kStill ? position : end;
        if (number == 0) position = fault == kBeyond ? size + 5 : 0;
        return Go(url, position);
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
    const std::string path = MakeFile(10, 4, {kRight, kStatus});
    ASSERT_EQ(Upload(path, 0x100000004, "a/\"b\\\n\xC3\xA4 &="), 0);  // cut to 32 bits: parts of 4
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 5u);
    EXPECT_EQ(requests[0].method, "PUT");
    EXPECT_EQ(requests[0].target,
              "/upload/prepareFile?com_params=%7B%22a%22:%22b&c=d%22%7D%0A&biz_params=%7B%22upload_id%22:%22a/%5C%22b"
              "%5C%5C%5Cu000a%C3%A4%20&=%22,%22total_size%22:10,%22total_sha1%22:%22" +
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

TEST_F(SorrelUploadTaskTest, MeetsEverySizeOfFileAndPart) {
    const char* const chosen = getenv("ORVANE_UPLOAD_MEGABYTES");
    const size_t megabytes = chosen ? strtoul(chosen, nullptr, 10) : 64;
    struct Case {
        size_t size;
        long long part;
        size_t requests;
    };
    for (const Case& c : {Case{0, 4, 2},
                          {1, 4, 2},
                          {8, 4, 3},
                          {9, 4, 4},
                          {5, 1LL << 40, 4},
                          {megabytes << 20, 1 << 20, megabytes + 1}}) {
        const bool isEmpty = static_cast<int32_t>(c.part) == 0;  // the server ends it
        const std::string path =
            MakeFile(c.size, static_cast<int32_t>(c.part),
                     isEmpty ? std::vector{kRight, kStill, kStill, kBeyond} : std::vector<Fault>());
        const size_t before = server.Requests().size();
        EXPECT_EQ(Upload(path, c.part), 0) << c.size;
        const auto requests = server.Requests();
        ASSERT_EQ(requests.size() - before, isEmpty ? 4 : c.requests) << c.size;
        EXPECT_EQ(requests.back().body,
                  Body(isEmpty || c.size == 0 ? "" : content.substr((c.requests - 2) * static_cast<size_t>(part))));
    }
}

TEST_F(SorrelUploadTaskTest, EndsAsTheModelSaysWhateverTheServerDoes) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        std::mt19937 random(seed);
        const size_t length = random() % 40;
        const long long partSize = 1 + static_cast<long long>(random() % 12);
        std::vector<Fault> faults(random() % 16);
        for (Fault& fault : faults)
            fault = static_cast<Fault>(random() % 3 == 0 ? unsigned{kRight} : random() % kFaults);
        if (seed % 3 == 0 && !faults.empty()) faults[0] = kRight;
        const std::string path = MakeFile(length, partSize, faults);

        // The model.
        const long long size = static_cast<long long>(content.size());
        const auto at = [&](size_t i) { return i < faults.size() ? faults[i] : kRight; };
        int result = at(0) >= kRight ? 4 : at(0) == kRet ? 1 : 2, tries = 0;
        long long from = at(0) == kBeyond ? size + 5 : 0;
        std::vector<std::string> expected{"PUT"};
        size_t url = 0;
        for (size_t i = 1; result == 4; ++i) {
            expected.push_back(
                "POST/part" + std::to_string(url) +
                Body(from >= size ? "" : content.substr(static_cast<size_t>(from), static_cast<size_t>(partSize))));
            const Fault fault = at(i);
            if (fault < kRight) {
                if (++tries == 4) result = 3;
                continue;
            }
            tries = 0;
            url = i;
            from = fault == kBack     ? from / 2
                   : fault == kBeyond ? size + 5
                   : fault == kStill  ? from
                                      : std::min(size, from + partSize);
            if (from >= size) result = 0;
        }

        const size_t before = server.Requests().size();
        ASSERT_EQ(Upload(path, partSize), result) << seed;
        std::vector<std::string> came;
        const auto requests = server.Requests();
        for (size_t i = before; i < requests.size(); ++i)
            came.push_back(requests[i].method == "PUT" ? "PUT" : "POST" + requests[i].target + requests[i].body);
        ASSERT_EQ(came, expected) << seed;
    }
}

TEST_F(SorrelUploadTaskTest, TellsWhatCannotBeSent) {
    EXPECT_EQ(Upload(CacheFolder() + "/missing", 4), 0);
    EXPECT_THAT(server.Requests().front().target, HasSubstr("%22total_size%22:0,%22total_sha1%22:%22%22%7D"));
    EXPECT_THAT(server.Requests().back().body, HasSubstr("name=\"part_sha1\"\r\n\r\n\r\n"));

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

TEST_F(SorrelUploadTaskTest, ReadsDigestsSizesAndTheManifest) {
    const std::string path = MakeFile(700000, 0);
    using Worker = OrvaneSorrelUploadTask;
    EXPECT_EQ(Worker::fileToSHA1(path), HexSha1(content));
    EXPECT_EQ(Worker::filePartToSHA1_withStartPos_withPartSize(path, 300000, 350000),
              HexSha1(content.substr(300000, 350000)));
    EXPECT_EQ(Worker::filePartToSHA1_withStartPos_withPartSize(path, 699999, 50), HexSha1(content.substr(699999)));
    EXPECT_EQ(Worker::filePartToSHA1_withStartPos_withPartSize(path, 800000, 50), HexSha1(""));
    EXPECT_EQ(Worker::fileSizeAtPath(path), 700000);
    EXPECT_EQ(Worker::fileToSHA1(path + "-"), "");
    EXPECT_EQ(Worker::fileSizeAtPath(path + "-"), 0);

    FakeInfoDictionary manifest;
    manifest.Set("Section", "key", FakeInfoDictionary::Text("value"));
    EXPECT_EQ(Worker::getPlistString_andKey_withdefault("Section", "key", "-"), "value");
    EXPECT_EQ(Worker::getPlistString_andKey_withdefault("Section", "other", "-"), "-");
    EXPECT_EQ(Worker::getPlistString_andKey_withdefault("None", "key", "-"), "-");
    EXPECT_THAT(console.Take(), Contains("SolidConfigReader::GetString section:None not exist, return defaultvalue"));
}

}  // namespace
