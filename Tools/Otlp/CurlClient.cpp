#include <zlib.h>

#include <algorithm>
#include <atomic>

#include "Otlp/CurlLibrary.h"
#include "Otlp/HttpClient.h"

namespace OrvaneOtlp {
namespace {

constexpr size_t kLongestAnswer = 64u << 10;
// A wait in libcurl ends by itself when there is something to do, or by Abort.
constexpr int kPollMilliseconds = 1000;

size_t TakeAnswer(char* data, size_t size, size_t count, void* context) {
    std::string& body = *static_cast<std::string*>(context);
    const size_t bytes = size * count;
    body.append(data, std::min(bytes, kLongestAnswer - std::min(kLongestAnswer, body.size())));
    return bytes;  // what is too much is read and dropped, so that the connection can be kept
}

// As one gzip member (RFC 1952); empty if there is no memory for it.
std::string Gzip(const std::string& text) {
    z_stream stream{};
    constexpr int kGzipWindow = 15 + 16, kUsualMemory = 8;
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kUsualMemory, Z_DEFAULT_STRATEGY) != Z_OK)
        return "";
    std::string member(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(member.data());
    stream.avail_out = static_cast<uInt>(member.size());
    const bool isWhole = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    member.resize(isWhole ? stream.total_out : 0);
    deflateEnd(&stream);
    return member;
}

class CurlClient final : public HttpClient {
public:
    explicit CurlClient(const Endpoint& endpoint) : _endpoint(endpoint) {}
    ~CurlClient() override {
        if (_easy) _curl.easyCleanup(_easy);
        if (CURLM* const multi = _multi.load()) _curl.multiCleanup(multi);
        if (_headers) _curl.slistFreeAll(_headers);
    }
    CurlClient(const CurlClient&) = delete;
    CurlClient& operator=(const CurlClient&) = delete;

    bool Prepare(std::string& problem) override;
    PostAnswer Post(const std::string& body) override;
    void Abort() override {
        _isAborted = true;
        if (CURLM* const multi = _multi.load()) _curl.multiWakeup(multi);
    }

private:
    void AddHeader(const std::string& line) {
        if (curl_slist* const longer = _curl.slistAppend(_headers, line.c_str())) _headers = longer;
    }
    // Until the transfer is over or aborted.
    CURLcode Transfer(CURLM* multi);

    const Endpoint _endpoint;
    CurlLibrary _curl{};
    CURL* _easy = nullptr;
    curl_slist* _headers = nullptr;
    std::atomic<CURLM*> _multi{nullptr};  // set once, when all else of the client is made
    std::atomic<bool> _isAborted{false};
};

bool CurlClient::Prepare(std::string& problem) {
    if (!_curl.Open(problem)) return false;
    CURLM* const multi = _curl.multiInit();
    _easy = _curl.easyInit();
    if (!multi || !_easy) {
        if (multi) _curl.multiCleanup(multi);
        problem = "libcurl has no memory";
        return false;
    }
    AddHeader("Content-Type: application/json");
    AddHeader("Expect:");  // else a larger body waits a second for servers that do not answer it
    if (_endpoint.isCompressed) AddHeader("Content-Encoding: gzip");
    for (const std::string& header : _endpoint.headers)
        AddHeader(header);
    const auto set = [this](CURLoption option, auto value) { _curl.easySetopt(_easy, option, value); };
    set(CURLOPT_URL, _endpoint.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTPHEADER, _headers);
    set(CURLOPT_USERAGENT, "Orvane-OTLP-Exporter-Cpp/" ORVANE_VERSION);
    set(CURLOPT_TIMEOUT_MS, _endpoint.timeout);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // a lookup that was given up is left behind, not waited for
    set(CURLOPT_POST, 1L);
    if (!_endpoint.certificate.empty()) {
        set(CURLOPT_CAINFO, _endpoint.certificate.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));  // the system's folder is not asked beside it
    }
    set(CURLOPT_WRITEFUNCTION, &TakeAnswer);
    _multi = multi;
    return true;
}

PostAnswer CurlClient::Post(const std::string& body) {
    PostAnswer answer;
    const std::string member = _endpoint.isCompressed ? Gzip(body) : std::string();
    if (_endpoint.isCompressed && member.empty()) {
        answer.problem = "no memory to compress with";
        return answer;
    }
    const std::string& sent = _endpoint.isCompressed ? member : body;
    const auto set = [this](CURLoption option, auto value) { _curl.easySetopt(_easy, option, value); };
    set(CURLOPT_POSTFIELDS, sent.data());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(sent.size()));
    set(CURLOPT_WRITEDATA, &answer.body);
    CURLM* const multi = _multi.load();
    _curl.multiAddHandle(multi, _easy);
    const CURLcode code = Transfer(multi);
    _curl.multiRemoveHandle(multi, _easy);
    if (code != CURLE_OK) {
        answer.problem = _isAborted ? "given up" : _curl.easyStrerror(code);
        return answer;
    }
    long status = 0;
    _curl.easyGetinfo(_easy, CURLINFO_RESPONSE_CODE, &status);
    answer.status = static_cast<int>(status);
    curl_off_t wait = 0;  // libcurl reads both forms of the header; 0 is none, or a date that is past
    _curl.easyGetinfo(_easy, CURLINFO_RETRY_AFTER, &wait);
    if (wait > 0) answer.retryAfter = wait;
    return answer;
}

CURLcode CurlClient::Transfer(CURLM* multi) {
    for (int running = 1; !_isAborted;) {
        if (_curl.multiPerform(multi, &running) != CURLM_OK) return CURLE_FAILED_INIT;
        int left = 0;
        while (const CURLMsg* const message = _curl.multiInfoRead(multi, &left))
            if (message->msg == CURLMSG_DONE) return message->data.result;
        if (running == 0) return CURLE_FAILED_INIT;
        _curl.multiPoll(multi, nullptr, 0, kPollMilliseconds, nullptr);
    }
    return CURLE_ABORTED_BY_CALLBACK;
}

}  // namespace

std::unique_ptr<HttpClient> MakeCurlClient(const Endpoint& endpoint) {
    return std::unique_ptr<HttpClient>(new CurlClient(endpoint));
}

}  // namespace OrvaneOtlp
