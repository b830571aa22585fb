// Loads the product and uses its HTTP tasks from declarations of the test's own: every slot is called, and its effect
// seen on a real server.
#include "Product.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"
#include "WWWContract.h"

namespace {

using namespace OrvaneTest;
namespace fs = std::filesystem;

void* Perform(const char* className, const char* selector, std::initializer_list<const void*> arguments) {
    std::vector<void*> pointers;
    for (const void* argument : arguments)
        pointers.push_back(const_cast<void*>(argument));
    return orvane_class_perform(orvane_class_lookup(className), selector, pointers.data());
}

struct Ends final : Contract::DataRequest::Listener {
    void Ended(Contract::DataRequest* request, int error, int status, const char* bytes, long long length) override {
        text = std::to_string(error) + " " + std::to_string(status) + " " +
               std::string(bytes ? bytes : "", static_cast<size_t>(length)) + (request == expected ? "" : " STRANGER");
        ++count;
    }
    std::string Wait(int number) {
        return WaitFor([&] { return count == number; }) ? text : "no answer";
    }
    Contract::DataRequest* expected = nullptr;
    std::string text;
    std::atomic<int> count{0};
};

struct Moves final : Contract::Download::Listener {
    void Began(Contract::Download*, long long total) override { text += "began " + std::to_string(total); }
    void Moved(Contract::Download*, long long bytes, long long total) override {
        text += " moved " + std::to_string(bytes) + "/" + std::to_string(total);
    }
    void Ended(Contract::Download*, int error, long long total) override {
        text += " ended " + std::to_string(error) + " " + std::to_string(total);
        isOver = true;
    }
    std::string text;
    bool isOver = false;
};

class WWWContract : public testing::Test {
protected:
    void* const core = Contract::Load(CORE_LIBRARY);
    const TemporaryFolder folder;
    std::atomic<bool> isHeld{false};
    HttpServer server{[this](const HttpRequest& request) {
        WaitFor([this] { return !isHeld; });
        return HttpAnswer("200 OK", request.method + request.body + request.Header("X-Name"));
    }};
};

TEST_F(WWWContract, EverySlotOfADataTaskWorks) {
    auto* const request = static_cast<Contract::DataRequest*>(Perform("OrvaneWWW", "request:", {"http://nowhere/"}));
    ASSERT_TRUE(request);
    EXPECT_STREQ(request->Address(), "http://nowhere/");
    Contract::Task* const task = request;  // through the virtual base
    task->Address(server.Url().c_str());
    task->Header("X-Name", "value");
    Ends ends, silent;
    ends.expected = request;
    request->Listen(&ends);
    request->Fetch();
    EXPECT_EQ(ends.Wait(1), "0 200 GETvalue");
    request->Listen(&ends);  // waits until the last call has returned
    request->Send("body", 3);
    EXPECT_EQ(ends.Wait(2), "0 200 POSTbodvalue");
    isHeld = true;
    request->Listen(&ends);
    request->Fetch();
    task->GiveUp();
    EXPECT_EQ(ends.Wait(3), "1 0 ");
    isHeld = false;
    request->Listen(&silent);
    request->Unlisten(nullptr);
    request->Fetch();
    ASSERT_TRUE(WaitFor([&] { return server.Requests().size() >= 3; }));
    Perform("OrvaneWWW", "destroyDataTask:", {request});
    EXPECT_EQ(silent.count, 0);
}

TEST_F(WWWContract, EverySlotOfAnUploadWorks) {
    struct UploadEnd final : Contract::Upload::Listener {
        void Ended(Contract::Upload* upload, int result) override {
            ended = upload;
            code = result;
        }
        Contract::Upload* ended = nullptr;
        std::atomic<int> code{-1};
    } end;
    auto* const upload = static_cast<Contract::Upload*>(Perform("OrvaneWWW", "getSorrelUploadTask", {}));
    ASSERT_TRUE(upload);
    upload->Credentials("who");
    upload->Listen(&end);
    upload->Begin("name", (folder / "none").c_str(), 5, server.Url("").c_str());
    ASSERT_TRUE(WaitFor([&] { return end.code != -1; }));
    EXPECT_EQ(end.code, 2);  // this server's answer is no JSON
    EXPECT_EQ(end.ended, upload);
    EXPECT_STREQ(upload->Id(), "name");
    EXPECT_EQ(upload->Path(), folder / "none");
    EXPECT_NE(
        server.Requests()[0].target.find("/upload/prepareFile?com_params=who&biz_params=%7B%22upload_id%22:%22name"),
        std::string::npos);
    delete upload;
}

TEST_F(WWWContract, EverySlotOfADownloadWorks) {
    const std::string path = folder / "file";
    auto* const download = static_cast<Contract::Download*>(
        Perform("OrvaneWWW", "downloadFile:localPath:", {server.Url().c_str(), path.c_str()}));
    ASSERT_TRUE(download);
    EXPECT_EQ(download->Path(), path);
    EXPECT_EQ(static_cast<Contract::Task*>(download)->Address(), server.Url());
    Moves moves;
    const auto run = [&](const std::function<bool()>& condition) {
        return WaitFor([&] { return Perform("OrvaneMainRunLoop", "runPending", {}), condition(); });
    };
    download->Listen(&moves);
    isHeld = true;
    download->Go();
    ASSERT_TRUE(WaitFor([&] { return server.Requests().size() == 1; }));
    download->Halt();
    download->Go();
    ASSERT_TRUE(WaitFor([&] { return server.Requests().size() == 2; }));
    static_cast<Contract::Task*>(download)->GiveUp();
    download->Go();
    isHeld = false;
    EXPECT_TRUE(run([&] { return moves.isOver; }));
    EXPECT_EQ(moves.text, "began 3 moved 3/3 ended 0 3");
    EXPECT_EQ(fs::file_size(path), 3u);
    download->Unlisten(nullptr);
    fs::remove(path);
    download->Go();
    EXPECT_TRUE(run([&] { return fs::exists(path); }));
    EXPECT_EQ(moves.text, "began 3 moved 3/3 ended 0 3");
    Perform("OrvaneWWW", "destroyDownloadFileTask:", {download});
}

TEST_F(WWWContract, EverySlotOfAResponseWorks) {
    const char* const headers[] = {"A", "first", "B", "b", "A", "second", nullptr};
    const Contract::ResponseParts parts{"http://a/", "HTTP/2", 201, "Made", headers, "b\0y", 3};
    auto* const response = static_cast<Contract::Response*>(Perform("OrvaneWWW", "makeUrlResponse:", {&parts}));
    ASSERT_TRUE(response);
    EXPECT_STREQ(response->Header("A"), "first");
    EXPECT_STREQ(response->Header("B"), "b");
    EXPECT_FALSE(response->Header("a") || response->Header(nullptr));
    EXPECT_STREQ(response->Address(), "http://a/");
    EXPECT_STREQ(response->Protocol(), "HTTP/2");
    EXPECT_EQ(response->Status(), 201);
    EXPECT_STREQ(response->Reason(), "Made");
    EXPECT_EQ(std::string(response->Bytes(), static_cast<size_t>(response->Length())), std::string("b\0y", 3));
    delete response;

    const Contract::ResponseParts none{};
    auto* const plain = static_cast<Contract::Response*>(Perform("OrvaneWWW", "makeUrlResponse:", {&none}));
    EXPECT_STREQ(plain->Protocol(), "HTTP/1.1");
    EXPECT_TRUE(!*plain->Address() && !*plain->Reason() && plain->Status() == 0 && !plain->Bytes() && !plain->Length());
    delete plain;
}

struct Measured {
    int error;
    int status;
    long long bytes;
    long long times[5];
};

TEST_F(WWWContract, AMeasuredGetTellsItsTimesInOrder) {
    static std::atomic<bool> isOver{false};
    static Measured heard;
    const auto done = +[](const Measured* measured, void* context) {
        heard = *measured;
        isOver = context == &heard;
    };
    const std::string url = server.Url();
    ASSERT_TRUE(
        Perform("OrvaneWWW", "measureUrl:done:context:", {url.c_str(), reinterpret_cast<const void*>(done), &heard}));
    ASSERT_TRUE(WaitFor([] { return isOver.load(); }));
    EXPECT_TRUE(heard.error == 0 && heard.status == 200 && heard.bytes == 3);
    const auto& [name, connect, tls, firstByte, total] = heard.times;
    EXPECT_TRUE(0 < name && name <= connect && connect <= firstByte && firstByte <= total && tls == -1);
    EXPECT_FALSE(Perform("OrvaneWWW", "measureUrl:done:context:", {"no url", nullptr, nullptr}));
}

// A copy of the library by itself, without what it opens for HTTP.
TEST(WWWWithoutTransport, EveryRequestFails) {
    const TemporaryFolder folder;
    const HttpServer server([](const HttpRequest&) { return ""; });
    fs::copy_file(CORE_LIBRARY, folder / "liborvanecore.so");
    testing::internal::CaptureStderr();
    Contract::Load((folder / "liborvanecore.so").c_str());
    auto* const request = static_cast<Contract::DataRequest*>(Perform("OrvaneWWW", "request:", {server.Url().c_str()}));
    Ends ends;
    ends.expected = request;
    for (int i = 1; i <= 2; ++i) {
        request->Listen(&ends);
        request->Fetch();
        EXPECT_EQ(ends.Wait(i), "1 0 ");
    }
    Perform("OrvaneWWW", "destroyDataTask:", {request});
    const std::string console = testing::internal::GetCapturedStderr();
    const size_t line = console.find("no HTTP: ");
    ASSERT_NE(line, std::string::npos);
    EXPECT_EQ(console.find("no HTTP: ", line + 1), std::string::npos);
}

}  // namespace
