#include "Net/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "Support/LibraryLines.h"

namespace OrvaneNet {
namespace {

// The true standard error; another descriptor once the library's lines are hidden.
int g_errorDescriptor = STDERR_FILENO;

void WriteError(const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = write(g_errorDescriptor, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        done += static_cast<size_t>(written);
    }
}

}  // namespace

void HideLibraryLines() {
    g_errorDescriptor = OrvaneTools::HideLibraryLines();
}

void Say(const std::string& text) {
    WriteError("orvane-net: " + text + "\n");
}

void Draw(const std::string& text) {
    WriteError(text);
}

bool CanDraw() {
    return isatty(g_errorDescriptor) == 1;
}

void Print(std::string_view text) {
    fwrite(text.data(), 1, text.size(), stdout);
    if (!text.ends_with('\n')) putchar('\n');
    fflush(stdout);
}

void PrintJson(const Json::Value& value, bool isCompact) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = isCompact ? "" : "  ";
    Print(Json::writeString(builder, value));
}

}  // namespace OrvaneNet
