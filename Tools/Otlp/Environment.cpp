#include "Otlp/Environment.h"

#include <errno.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

namespace OrvaneOtlp {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

std::string_view Trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "%2C" and its like. False for a percent sign without two digits behind it.
bool PercentDecode(std::string_view text, std::string& decoded) {
    decoded.clear();
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            decoded += text[at];
            continue;
        }
        if (at + 2 >= text.size()) return false;
        const int high = HexDigit(text[at + 1]), low = HexDigit(text[at + 2]);
        if (high < 0 || low < 0) return false;
        decoded += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return true;
}

// "key1=value1,key2=value2", the values percent-encoded. False if any of it is not of that form.
bool ParsePairs(std::string_view text, Pairs& pairs) {
    pairs.clear();
    while (!text.empty()) {
        const size_t comma = std::min(text.find(','), text.size());
        const std::string_view entry = Trimmed(text.substr(0, comma));
        text.remove_prefix(std::min(comma + 1, text.size()));
        if (entry.empty()) continue;
        const size_t equals = entry.find('=');
        std::string key, value;
        if (equals == std::string_view::npos || !PercentDecode(Trimmed(entry.substr(0, equals)), key) ||
            !PercentDecode(Trimmed(entry.substr(equals + 1)), value) || key.empty())
            return false;
        pairs.emplace_back(std::move(key), std::move(value));
    }
    return true;
}

// RFC 9110: a name is a token, and a value holds no line end.
bool IsHeader(const std::string& name, const std::string& value) {
    static constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
    const auto isToken = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               kMarks.find(c) != std::string_view::npos;
    };
    const auto isControl = [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F; };
    return std::all_of(name.begin(), name.end(), isToken) && std::none_of(value.begin(), value.end(), isControl);
}

bool IsUrl(const std::string& text) {
    const bool hasScheme =
        strncasecmp(text.c_str(), "http://", 7) == 0 || strncasecmp(text.c_str(), "https://", 8) == 0;
    const size_t host = text.find("://") + 3;
    return hasScheme && text.size() > host && text[host] != '/' && text[host] != '?';
}

std::string ProgramName() {
    return program_invocation_short_name ? program_invocation_short_name : "";
}

class Reader {
public:
    Reader(const Variables& variables, Settings& settings) : _variables(variables), _settings(settings) {}

    void Read(const std::string& base) {
        if (IsDisabled()) return;
        ReadResource();
        ReadSignal("TRACES", "v1/traces", base, _settings.traces);
        ReadSignal("LOGS", "v1/logs", base, _settings.logs);
        // Said where it matters: not to whoever has no endpoint.
        if (!_settings.traces.IsSet() && !_settings.logs.IsSet()) return;
        const std::string protocol = Value("OTEL_EXPORTER_OTLP_PROTOCOL");
        if (!protocol.empty() && protocol != "http/json")
            Problem("OTEL_EXPORTER_OTLP_PROTOCOL", protocol, "only http/json is spoken");
    }

private:
    std::string Value(const std::string& name) const {
        const char* value = _variables(name.c_str());
        return std::string(Trimmed(value ? value : ""));
    }
    void Problem(const std::string& name, const std::string& value, const char* why) {
        _settings.problems.push_back(name + " is \"" + value + "\": " + why);
    }
    // The variable of the signal, else that of all signals: its name and value. An empty value: neither is set.
    std::pair<std::string, std::string> OfSignal(const std::string& signal, const std::string& what) const {
        const std::string own = "OTEL_EXPORTER_OTLP_" + signal + "_" + what, shared = "OTEL_EXPORTER_OTLP_" + what;
        const std::string value = Value(own);
        return value.empty() ? std::pair(shared, Value(shared)) : std::pair(own, value);
    }

    bool IsDisabled() {
        const std::string value = Value("OTEL_SDK_DISABLED");
        const bool isTrue = strcasecmp(value.c_str(), "true") == 0;
        if (!isTrue && !value.empty() && strcasecmp(value.c_str(), "false") != 0)
            Problem("OTEL_SDK_DISABLED", value, "neither true nor false");
        return isTrue;
    }

    void ReadResource() {
        Attributes& resource = _settings.resource;
        resource.Set("service.name", "unknown_service" + (ProgramName().empty() ? "" : ":" + ProgramName()));
        resource.Set("telemetry.sdk.language", "cpp");
        resource.Set("telemetry.sdk.name", "orvane");
        resource.Set("telemetry.sdk.version", ORVANE_VERSION);
        const std::string list = Value("OTEL_RESOURCE_ATTRIBUTES");
        Pairs pairs;
        if (!ParsePairs(list, pairs)) {
            Problem("OTEL_RESOURCE_ATTRIBUTES", list, "not of the form key=value,key=value");
            pairs.clear();
        }
        for (const auto& [key, value] : pairs)
            resource.Set(key, value);
        const std::string service = Value("OTEL_SERVICE_NAME");
        if (!service.empty()) resource.Set("service.name", service);
    }

    // `path` goes behind the address for all signals; that of one signal is used as it stands.
    void ReadSignal(const std::string& signal, const std::string& path, const std::string& base, Endpoint& endpoint) {
        const auto [name, value] =
            base.empty() ? OfSignal(signal, "ENDPOINT") : std::pair(std::string("the URL"), base);
        if (value.empty()) return;
        if (!IsUrl(value)) return Problem(name, value, "no address that begins with http:// or https://");
        endpoint.url = value;
        if (!base.empty() || name == "OTEL_EXPORTER_OTLP_ENDPOINT") {
            const size_t end = std::min(value.find_first_of("?#"), value.size());
            endpoint.url.insert(end, (value[end - 1] == '/' ? "" : "/") + path);
        }
        ReadHeaders(signal, endpoint);
        ReadTimeout(signal, endpoint);
        ReadCompression(signal, endpoint);
        endpoint.certificate = OfSignal(signal, "CERTIFICATE").second;
    }

    void ReadHeaders(const std::string& signal, Endpoint& endpoint) {
        const auto [name, value] = OfSignal(signal, "HEADERS");
        Pairs pairs;
        // The value is not shown: it holds keys.
        if (!ParsePairs(value, pairs)) return Problem(name, "...", "not of the form key=value,key=value");
        for (const auto& [header, content] : pairs) {
            if (IsHeader(header, content))
                endpoint.headers.push_back(header + ": " + content);
            else
                Problem(name, "...", "a name or a value that no header may have");
        }
    }

    void ReadTimeout(const std::string& signal, Endpoint& endpoint) {
        const auto [name, value] = OfSignal(signal, "TIMEOUT");
        if (value.empty()) return;
        long number = 0;
        const auto [stop, failure] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (failure != std::errc() || stop != value.data() + value.size() || number < 0)
            return Problem(name, value, "no number of milliseconds");
        endpoint.timeout = number;
    }

    void ReadCompression(const std::string& signal, Endpoint& endpoint) {
        const auto [name, value] = OfSignal(signal, "COMPRESSION");
        endpoint.isCompressed = value == "gzip";
        if (!value.empty() && value != "gzip" && value != "none") Problem(name, value, "neither gzip nor none");
    }

    const Variables& _variables;
    Settings& _settings;
};

}  // namespace

Settings ReadEnvironment(const Variables& variables, const std::string& base) {
    Settings settings;
    Reader(variables, settings).Read(base);
    // A variable of both signals has been read twice.
    std::vector<std::string>& problems = settings.problems;
    for (size_t i = 0; i < problems.size(); ++i)
        problems.erase(std::remove(problems.begin() + static_cast<long>(i) + 1, problems.end(), problems[i]),
                       problems.end());
    return settings;
}

Settings ReadEnvironment(const std::string& base) {
    return ReadEnvironment([](const char* name) { return getenv(name); }, base);
}

std::string ShownUrl(const std::string& url) {
    std::string shown = url.substr(0, url.find_first_of("?#"));
    const size_t host = shown.find("://") + 3;
    const size_t at = shown.rfind('@', shown.find('/', host));
    if (at != std::string::npos && at >= host) shown.erase(host, at + 1 - host);
    return shown;
}

}  // namespace OrvaneOtlp
