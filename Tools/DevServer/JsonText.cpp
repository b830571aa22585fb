#include "DevServer/JsonText.h"

#include <exception>
#include <memory>

namespace OrvaneDevServer {
namespace {

bool Read(const Json::CharReaderBuilder& builder, std::string_view text, Json::Value& value, std::string& error) {
    try {
        const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
        return reader->parse(text.data(), text.data() + text.size(), &value, &error);
    } catch (const std::exception& problem) {  // nested too deep
        error = problem.what();
        return false;
    }
}

// The reader's message without its line breaks.
std::string OneLine(const std::string& message) {
    std::string line;
    for (const char byte : message) {
        if (byte != '\n')
            line += byte;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

}  // namespace

std::string WriteCompact(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value) + "\n";
}

bool ReadStrictly(std::string_view text, Json::Value& value, std::string& error) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    if (Read(builder, text, value, error)) return true;
    error = OneLine(error);
    return false;
}

bool ReadAsTheClient(std::string_view text, Json::Value& value) {
    Json::CharReaderBuilder builder;
    builder["failIfExtra"] = false;
    builder["allowTrailingCommas"] = false;
    std::string ignored;
    return Read(builder, text, value, ignored);
}

bool ReadAsTheClientsUpload(std::string_view text, Json::Value& value) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["rejectDupKeys"] = false;
    std::string ignored;
    return Read(builder, text, value, ignored);
}

const char* KindOf(const Json::Value& value) {
    switch (value.type()) {
        case Json::nullValue:
            return "null";
        case Json::intValue:
        case Json::uintValue:
            return "an integer";
        case Json::realValue:
            return "a real number";
        case Json::stringValue:
            return "a string";
        case Json::booleanValue:
            return "a boolean";
        case Json::arrayValue:
            return "an array";
        case Json::objectValue:
            break;
    }
    return "an object";
}

}  // namespace OrvaneDevServer
