// The library's upload against the server on the desk, over real HTTP; the two share no code.
#include <minizip/zip.h>

#include <future>

#include "DevServer/Sha1Text.h"
#include "DevServer/Unpack.h"
#include "DevServer/Uploads.h"
#include "Support/ConfigServer.h"
#include "Support/Test.h"
#include "System/WWW/Task/WWW.h"
#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

namespace fs = std::filesystem;
using OrvaneTest::FilesIn;
using OrvaneTest::ReadFile;
using OrvaneTest::WaitFor;
using OrvaneTest::WriteFile;

using DevServerUploadTest = ServedTest;

struct End final : SorrelCUploadTask::Listener {
    void OnFinished(SorrelCUploadTask* task, int code) override {
        delete task;
        result = code;
    }
    std::atomic<int> result{-1};
};

int Upload(const std::string& url, const std::string& id, const std::string& path, long long partSize) {
    End end;
    SorrelCUploadTask* const task = Quern::WWW::GetSorrelUploadTask();
    task->SetCredentialInfo(ComParams("D/1").c_str());
    task->SetListener(&end);
    task->Upload(id.c_str(), path.c_str(), partSize, url.c_str());
    WaitFor([&] { return end.result >= 0; });
    return end.result;
}

constexpr char kLink[] = "link";  // an entry of this name is one

std::string MakeZip(const std::string& name, const std::vector<std::pair<std::string, std::string>>& entries) {
    constexpr unsigned long kMadeOnUnix = 3 << 8;
    const std::string path = OrvaneTest::CacheFolder() + "/" + name;
    const zipFile zip = zipOpen(path.c_str(), APPEND_STATUS_CREATE);
    for (const auto& [entry, content] : entries) {
        zip_fileinfo info{};
        if (entry == kLink) info.external_fa = static_cast<unsigned long>(S_IFLNK | 0777) << 16;
        zipOpenNewFileInZip4(zip, entry.c_str(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 9, 0, -MAX_WBITS,
                             DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0, kMadeOnUnix, 0);
        zipWriteInFileInZip(zip, content.data(), static_cast<unsigned>(content.size()));
        zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
    return path;
}

TEST_F(DevServerUploadTest, IsResumedKeptUnpackedAndTakenBackThroughAllFaults) {
    OrvaneTest::ConfigServer server;
    std::string noise;
    for (unsigned i = 0; noise.size() < 3000; ++i)
        noise += Sha1Text(std::to_string(i));
    const std::string zip = MakeZip("log.zip", {{"a.log", noise}, {"b.log", "b"}});
    const std::string kept = server.Folder() + "/uploads/D%2F1/12";
    const std::pair<const char*, int> cases[] = {{"", 0},
                                                 {"upload:+1:500:json", 2},
                                                 {"upload:+1:ret:5", 1},
                                                 {"upload:+1:big:100000", 2},
                                                 {"upload:+1:ret:-5", 2},
                                                 {"upload:+2:500\nupload:+3:empty\nupload:+4:hostile:pos-negative", 0},
                                                 {"upload:+3-6:{}", 3},
                                                 {"upload:+3:next:0\nupload:+5:next:same\nupload:+7:next:+-150", 0},
                                                 {"upload:+2:url\nupload:+4:url", 0},
                                                 {"upload:+4:next:-1", 0},
                                                 {"upload:+2-4:hostile", 0},
                                                 {"upload:+2:big:100000", 0}};
    for (const auto& [faults, result] : cases) {
        SCOPED_TRACE(faults);
        server.Order(faults);
        const size_t before = server.Asked();
        EXPECT_EQ(Upload(server.Url(), "12", zip, 400), result);
        const size_t requests = server.Asked() - before;
        if (result != 0) continue;
        EXPECT_TRUE(ReadFile(kept + "/upload.zip") == ReadFile(zip));
        EXPECT_THAT(FilesIn(kept + "/files"), ElementsAre("a.log", "b.log"));
        EXPECT_TRUE(ReadFile(kept + "/files/a.log") == noise);
        EXPECT_GE(requests, 1 + fs::file_size(zip) / 400);
    }
    EXPECT_EQ(server.Problems(), "");
}

TEST_F(DevServerUploadTest, AnOrderIsGivenUntilItIsCarriedOut) {
    Start();
    // The members of an order, and the id that the client sends: a text goes through the client's own number.
    const std::pair<std::string, std::string> orders[] = {
        {R"("upload_id":"007")", "7"},
        {R"("upload_id":"7\u0000/../x")", "7"},
        {R"("upload_id":"crash #17")", "crash"},
        {R"("upload_id":"..")", ".."},
        {R"("upload_id":null)", ""},
        {R"("part_size":1)", ""},
    };
    for (const auto& [members, sent] : orders) {
        SCOPED_TRACE(members);
        folder.Write("served/modules/Upload.json", "{" + members + "}");
        EXPECT_THAT(Fetch().body, HasSubstr("\"Upload\""));
        folder.Write("served/uploads/D1/" + SafeName(sent) + "/upload.zip", "");
        EXPECT_THAT(Fetch().body, Not(HasSubstr("\"Upload\"")));
        EXPECT_THAT(Fetch("D2").body, HasSubstr("\"Upload\""));
        fs::remove_all(folder / "served/uploads");
    }
}

TEST_F(DevServerUploadTest, PartsComeInOrderAndWholeOrBeginAnew) {
    Uploads uploads(folder / "uploads");
    PrepareRequest prepare{{}, {}, "../D", true, "..", 8, Sha1Text("12345678")};
    std::string upload = uploads.Announce(prepare).upload;
    EXPECT_THAT(FilesIn(folder / "uploads"), ElementsAre("%2E.%2FD"));
    const auto take = [&](int64_t position, const std::string& part) {
        Problems problems;
        const Uploads::Outcome outcome =
            uploads.Take({{}, true, upload, position, Sha1Text(part), "", part, true}, problems);
        return std::to_string(outcome.next) + (outcome.isWhole ? " whole" : "") + "|" + outcome.refusal + "|" +
               (problems.empty() ? "" : problems.front());
    };
    EXPECT_EQ(take(0, "1234"), "4||");
    EXPECT_EQ(take(0, "1234"), "4||");
    EXPECT_THAT(take(0, "12xx"), HasSubstr("had other bytes"));
    EXPECT_EQ(take(0, "1234"), "4||");
    EXPECT_THAT(take(0, "1234"), HasSubstr("try 5 of the part from 0"));
    uploads.Confirm(upload);
    EXPECT_EQ(take(0, "1234"), "4||");
    EXPECT_THAT(take(6, "78"), HasSubstr("only 4 bytes have come"));
    EXPECT_THAT(take(4, "56789"), HasSubstr("longer than what is left"));
    EXPECT_THAT(take(8, "9"), HasSubstr("behind the end"));
    EXPECT_THAT(take(4, ""), HasSubstr("has become shorter"));
    const Uploads::Outcome again = uploads.Announce(prepare);
    EXPECT_EQ(again.next, 4);
    EXPECT_THAT(take(4, "5678"), HasSubstr("announced anew"));
    upload = again.upload;
    EXPECT_THAT(take(4, "567x"), HasSubstr("digest"));  // and it begins anew
    EXPECT_EQ(take(0, "12345678"), "8 whole||");
    EXPECT_EQ(take(0, "12345678"), "8 whole||");
    EXPECT_TRUE(uploads.IsWhole("../D", ".."));

    // What is whole stays until the next one is.
    const std::string kept = folder / "uploads/%2E.%2FD/%2E./";
    prepare.totalSha1 = Sha1Text("ABCDEFGH");
    upload = uploads.Announce(prepare).upload;
    EXPECT_EQ(take(0, "ABCD"), "4||");
    prepare.totalSha1 = Sha1Text("abcdefgh");  // another file
    upload = uploads.Announce(prepare).upload;
    EXPECT_EQ(take(0, "abcd"), "4||");
    EXPECT_TRUE(uploads.IsWhole("../D", ".."));
    EXPECT_EQ(ReadFile(kept + "upload.zip"), "12345678");
    WriteFile(kept + "new-files/left", "");  // as a run that was killed leaves it
    WriteFile(kept + "files/old", "");
    EXPECT_EQ(take(4, "efgh"), "8 whole||");
    EXPECT_EQ(ReadFile(kept + "upload.zip"), "abcdefgh");
    EXPECT_THAT(FilesIn(kept), ElementsAre("files", "upload.json", "upload.zip"));
    EXPECT_TRUE(FilesIn(kept + "files").empty());
    WriteFile(kept + "data", "more than 8");
    EXPECT_EQ(uploads.Announce(prepare).next, 0);
}

TEST_F(DevServerUploadTest, WhatBreaksTheProtocolIsReported) {
    const auto problems =
        CheckPrepareRequest(Get("/upload/prepareFile?com_params={}&biz_params=%7b%22a%22:1}%0A")).problems;
    for (const char* problem : {"the method is GET", "com_params is wrongly encoded", "biz_params is wrongly encoded"})
        EXPECT_THAT(problems, Contains(HasSubstr(problem)));
    Request part = Get("/upload/part?upload=x&pos=0");
    EXPECT_THAT(CheckPartRequest(part, SplitTarget(part.target)).problems, Contains(HasSubstr("part_sha1")));
    part.body =
        "------WebKitFormBoundaryftnnT7s3iF7wV5q6\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n" +
        Sha1Text("1") +
        "\r\n------WebKitFormBoundaryftnnT7s3iF7wV5q6\r\nContent-Disposition: form-data; name=\"myfile\"; "
        "filename=\"n\"\r\nContent-Type: application/octet-stream\r\n\r\n"
        "2\r\n------WebKitFormBoundaryftnnT7s3iF7wV5q6--\r\n";
    const PartRequest wrong = CheckPartRequest(part, SplitTarget(part.target));
    EXPECT_THAT(wrong.problems,
                Contains("\"part_sha1\" is \"" + Sha1Text("1") + "\"; that of the part is " + Sha1Text("2")));
    EXPECT_FALSE(wrong.isIntact);

    std::string said;
    ServerOptions options{"", {}};
    options.say = [&said](const std::string& line) { said += line + "\n"; };
    Start(options);
    Request announcement =
        Get("/upload/prepareFile?com_params={\"did\":\"D\"}&biz_params={\"upload_id\":\"u\","
            "\"total_size\":1,\"total_sha1\":\"" +
            Sha1Text("1") + "\"}");
    announcement.method = "PUT";
    const std::string url = Parsed(server->Handle(announcement).body)["biz_data"]["upload_url"].asString();
    part.target = url.substr(std::min(url.find("/upload"), url.size()));
    for (int i = 1; i <= 4; ++i)
        EXPECT_THAT(server->Handle(part).body, HasSubstr("is not that of the part"));
    EXPECT_THAT(said, Not(HasSubstr("this is try")));
    server->Handle(part);
    EXPECT_THAT(said, HasSubstr("this is try 5 of the part from 0"));
    EXPECT_THAT(FilesIn(folder / "served/uploads/D/u"), ElementsAre("upload.json"));
    const size_t partSha1 = part.body.find(Sha1Text("1"));
    part.body.erase(part.body.find("2\r\n-----", partSha1 + 40), 1).erase(partSha1, 40);
    server->Handle(part);
    EXPECT_THAT(said, AllOf(HasSubstr("the file is gone from the device"), Not(HasSubstr("had other bytes"))));
}

// A device is in the middle of a request as long as nobody reads the pipe in its file's place.
TEST_F(DevServerUploadTest, OneDevicesRequestsHoldUpNobodyElses) {
    Uploads uploads(folder.Path());
    const auto sendOne = [&uploads](const std::string& device, const std::function<void()>& afterAnnouncement) {
        const std::string sha1 = Sha1Text("1"), upload = uploads.Announce({{}, {}, device, true, "u", 1, sha1}).upload;
        afterAnnouncement();
        Problems problems;
        return uploads.Take({{}, true, upload, 0, sha1, "", "1", true}, problems).isWhole;
    };
    const std::string pipe = folder / "slow/u/data";
    auto slow = std::async(std::launch::async, [&] { return sendOne("slow", [&] { mkfifo(pipe.c_str(), 0600); }); });
    int end = -1;
    ASSERT_TRUE(WaitFor([&] { return (end = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) >= 0; }));
    auto quick =
        std::async(std::launch::async, [&] { return sendOne("quick", [] {}) && !uploads.IsWhole("slow", "u"); });
    EXPECT_EQ(quick.wait_for(OrvaneTest::kDeadline), std::future_status::ready);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    slow.wait();
    EXPECT_TRUE(quick.get());
    close(end);
    close(reader);
}

TEST_F(DevServerUploadTest, ADevicesZipNeverLeavesItsFolder) {
    std::vector<std::pair<std::string, std::string>> entries;
    for (const char* name : {"../up", "/abs", "a/b", "..", "a\\b", kLink, "twice", "twice", "twice.2", "twice", "b\nb"})
        entries.emplace_back(name, "x");
    const std::string longest(255, 'l');
    for (const std::string& name : {longest, longest, longest + "l"})
        entries.emplace_back(name, "x");
    entries.emplace_back("zeros", std::string(100000, 0));
    const std::string zip = MakeZip("evil.zip", entries), out = folder / "unpacked";
    const std::vector<std::string> notes = Unpack(zip, out);
    EXPECT_THAT(notes, Contains("left out: \"link\", a link"));
    EXPECT_THAT(notes, Contains("left out: \"" + longest + "\", whose name is too long here"));
    EXPECT_THAT(FilesIn(out), ElementsAre(longest, "twice", "twice.2", "twice.2.2", "twice.3", "zeros"));
    EXPECT_THAT(FilesIn(folder.Path()), ElementsAre("unpacked"));
    EXPECT_THAT(Unpack(zip, out + "2", {50000, 1100, 100}), Contains(HasSubstr("far more than its size")));
    EXPECT_THAT(Unpack(zip, out + "3", {50000, 1100, 3}), Contains("there are too many entries"));
    EXPECT_THAT(Unpack(zip, out + "5", {1 << 30, 10, entries.size()}), Contains(HasSubstr("far more than its size")));
    const std::vector<std::pair<std::string, std::string>> same(1100, {"same", ""});
    EXPECT_THAT(Unpack(MakeZip("same.zip", same), out + "6"), ElementsAre("1100 files, 0 bytes"));
    WriteFile(zip, ReadFile(zip).substr(0, 300));
    EXPECT_THAT(Unpack(zip, out + "4"), ElementsAre("it is no zip, and kept as it is"));
}

// The process is forked before it has threads.
TEST_F(DevServerUploadTest, GoesOnWhereAKilledProcessWas) {
    const std::string path = OrvaneTest::CacheFolder() + "/big.zip";
    WriteFile(path, std::string(4 << 20, 'z'));
    int url[2];
    ASSERT_EQ(pipe(url), 0);
    const pid_t child = fork();
    if (child == 0) {
        char text[100] = "";
        if (read(url[0], text, sizeof text - 1) > 0) Upload(text, "id", path, 1000);
        _exit(0);
    }
    OrvaneTest::ConfigServer server;
    ASSERT_GT(write(url[1], server.Url().data(), server.Url().size()), 0);
    const bool hasBegun = WaitFor([&] { return server.Asked() > 50; });
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(url[0]);
    close(url[1]);
    ASSERT_TRUE(hasBegun);
    const std::string kept = server.Folder() + "/uploads/D%2F1/id/";
    const size_t before = server.Asked(), held = fs::file_size(kept + "data");
    EXPECT_EQ(Upload(server.Url(), "id", path, 1 << 20), 0);
    EXPECT_LE(server.Asked() - before, 1 + 4u + 1) << "one may be what the dead process had on its way";
    EXPECT_GT(held, 40000u);
    EXPECT_TRUE(ReadFile(kept + "upload.zip") == ReadFile(path));
    EXPECT_EQ(server.Problems(), "");
}

}  // namespace
}  // namespace OrvaneDevServer
