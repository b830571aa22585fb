// What a device may send of an upload: a body is taken only as it stands, whatever a part holds is taken to the byte,
// and an announcement is taken whole or not at all.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "DevServer/Sha1Text.h"
#include "DevServer/UploadProtocol.h"

using namespace OrvaneDevServer;

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

std::string Body(const std::string& sha1, const std::string& fileName, std::string_view part) {
    const std::string boundary = "------WebKitFormBoundaryftnnT7s3iF7wV5q6";
    return boundary + "\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n" + sha1 + "\r\n" + boundary +
           "\r\nContent-Disposition: form-data; name=\"myfile\"; filename=\"" + fileName +
           "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + std::string(part) + "\r\n" + boundary + "--\r\n";
}

PartRequest Check(Request& request) {
    request.method = "POST";
    request.target = "/upload/part?upload=x&pos=7";
    return CheckPartRequest(request, SplitTarget(request.target));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    Request request;
    request.body = input;
    const PartRequest given = Check(request);
    if (given.part.data()) Require(Body(given.sha1, given.fileName, given.part) == input);
    Require(!given.isIntact || (given.isReadable && (given.sha1.empty() || given.sha1 == Sha1Text(given.part))));

    request.body = Body(Sha1Text(input), "n.zip", input);
    const PartRequest right = Check(request);
    Require(right.isIntact && right.part == input && right.fileName == "n.zip" && right.position == 7);

    Request announcement;
    announcement.method = "PUT";
    announcement.target = input;
    const PrepareRequest prepared = CheckPrepareRequest(announcement);
    Require(prepared.totalSize >= 0 && (prepared.isReadable || !prepared.problems.empty()));
    Require(prepared.isReadable || (prepared.uploadId.empty() && prepared.totalSha1.empty()));
    return 0;
}
