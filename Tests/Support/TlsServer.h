// A server of HTTPS with a certificate of its own making.
#ifndef ORVANE_TESTS_SUPPORT_TLS_SERVER_H
#define ORVANE_TESTS_SUPPORT_TLS_SERVER_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Support/TestContainer.h"

namespace OrvaneTest {

// Makes a certificate for an address, its own issuer, and its key ($1.key); valid until a date of the form that ASN.1
// has.
inline constexpr char kMakeCertificate[] = R"(
set -e; mkdir "$1.ca"; : > "$1.ca/index"; echo 01 > "$1.ca/serial"
printf '[ca]\ndefault_ca=d\n[d]\ndatabase=%s/index\nserial=%s/serial\nnew_certs_dir=%s\ndefault_md=sha256\npolicy=p
x509_extensions=e\n[p]\ncommonName=supplied\n[e]\nsubjectAltName=IP:%s\n' "$1.ca" "$1.ca" "$1.ca" "$2" > "$1.ca/config"
openssl req -newkey rsa:2048 -nodes -keyout "$1.key" -out "$1.ca/request" -subj /CN=test
openssl ca -selfsign -batch -notext -config "$1.ca/config" -keyfile "$1.key" -in "$1.ca/request" -out "$1" \
    -startdate 20200101000000Z -enddate "$3"
)";

// `openssl s_server` with such a certificate. It shows who asks a page of its own, or, where an answer is given, that
// to the first who connects.
class TlsServer {
public:
    TlsServer(const std::string& address, const std::string& end, const std::string& answer = "")
        : certificate(CacheFolder() + "/" + address + end) {
        const std::string script = CacheFolder() + "/make-certificate";
        WriteFile(script, kMakeCertificate);
        EXPECT_EQ(system(("sh " + script + " " + certificate + " " + address + " " + end + " 2>/dev/null").c_str()), 0);
        int out[2], in[2];
        EXPECT_EQ(pipe2(out, O_CLOEXEC) + pipe2(in, O_CLOEXEC), 0);
        if ((_process = fork()) == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            execlp("openssl", "openssl", "s_server", "-accept", "127.0.0.1:0", "-cert", certificate.c_str(), "-key",
                   (certificate + ".key").c_str(), answer.empty() ? "-www" : nullptr, nullptr);
            _exit(127);
        }
        close(out[1]);
        close(in[0]);
        _input = in[1];
        EXPECT_EQ(write(_input, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
        FILE* const lines = fdopen(out[0], "r");
        for (char line[256]; url.empty() && fgets(line, sizeof line, lines);)
            if (const char* const port = strncmp(line, "ACCEPT ", 7) == 0 ? strrchr(line, ':') : nullptr)
                url = "https://127.0.0.1:" + std::to_string(atoi(port + 1)) + "/";
        _output = lines;
    }
    ~TlsServer() {
        kill(_process, SIGKILL);
        waitpid(_process, nullptr, 0);
        fclose(_output);
        close(_input);
    }
    const std::string certificate;
    std::string url;

private:
    pid_t _process;
    int _input;
    FILE* _output;
};

}  // namespace OrvaneTest

#endif
