// Reading one record from XML, down to the typed fields, over the same text as rapidxml alone.
//
// Two figures for rapidxml. Bare means the copy of the text and parse<0> over it, no more: a tree is made, and nothing
// in it is looked at. The other is the whole that a program pays which has but rapidxml and the C library to come to
// the same fields.
//
// The reader parses by that very call, so the bare parse is a floor, and 1.0 could be had for an unread tree alone. The
// record's 25 fields are searched, trimmed and turned into 34 values on top of it: about 10 ns a search and 7 ns a
// value, which together come to as much again as the parse of this text, some 900 characters.
#include <benchmark/benchmark.h>

#include <arpa/inet.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <rapidxml/rapidxml.hpp>
#include <string>

#include "SampleRecord.h"
#include "Serializer/ZYL/ZylTime.h"

namespace {

using Quern::ZylXmlFormat;

void ReadZyl(benchmark::State& state, ZylXmlFormat format) {
    const std::string text = SampleText(format);
    Example::PlayerRecord record;
    for (auto _ : state) {
        if (record.fromXmlBuffer(text.data(), text.size(), format, 0) != 0) abort();
        benchmark::ClobberMemory();
    }
    char again[8192];
    if (record.toXmlBuffer(again, sizeof again, nullptr, format, 0) != 0 || text != again) abort();
}

// What the reader itself adds to the parser: the copy's allocation and the guard against deep nesting.
void OpenZyl(benchmark::State& state, ZylXmlFormat format) {
    const std::string text = SampleText(format);
    for (auto _ : state) {
        const Quern::ZylXmlReader reader(text.data(), text.size(), format);
        if (reader.state() != 0) abort();
        benchmark::ClobberMemory();
    }
}

// The parser works in place, so each round needs a fresh copy.
void ReadRapidxml(benchmark::State& state, ZylXmlFormat format) {
    const std::string text = SampleText(format);
    char copy[8192];
    for (auto _ : state) {
        memcpy(copy, text.c_str(), text.size() + 1);
        rapidxml::xml_document<> document;
        document.parse<0>(copy);
        benchmark::DoNotOptimize(document.first_node());
        benchmark::ClobberMemory();
    }
}

// The text of a field; white space around it is skipped by the readers of numbers, and cut off here for the others.
class Fields {
public:
    Fields(rapidxml::xml_node<>* parent, ZylXmlFormat format) : _parent(parent), _format(format) {}

    char* text(const char* name) const {
        rapidxml::xml_node<>* const node = _parent->first_node(name);
        char* text = _format == Quern::ZYL_XML_ATTRIBUTE ? node->first_attribute("value")->value() : node->value();
        while (isspace(static_cast<unsigned char>(*text)))
            ++text;
        char* end = text + strlen(text);
        while (end > text && isspace(static_cast<unsigned char>(end[-1])))
            --end;
        *end = '\0';
        return text;
    }
    long long number(const char* name) const { return strtoll(text(name), nullptr, 0); }
    tm time(const char* name, const char* format) const {
        tm fields = {};
        if (strptime(text(name), format, &fields) == nullptr) abort();
        return fields;
    }

private:
    rapidxml::xml_node<>* _parent;
    ZylXmlFormat _format;
};

void ReadFields(rapidxml::xml_document<>& document, ZylXmlFormat format, Example::PlayerRecord& record) {
    rapidxml::xml_node<>* const root = document.first_node("PlayerRecord");
    const Fields fields(root, format);
    record.uid = strtoull(fields.text("uid"), nullptr, 0);
    strncpy(record.name, fields.text("name"), sizeof record.name - 1);
    record.level = static_cast<int>(fields.number("level"));
    Quern::ZylDate date;
    date.fromTm(fields.time("birthday", "%Y-%m-%d"));
    record.birthday = date;
    Quern::ZylTime time;
    time.fromTm(fields.time("played", "%H:%M:%S"));
    record.played = time;
    Quern::ZylDateTime dateTime;
    dateTime.fromTm(fields.time("lastLogin", "%Y-%m-%d %H:%M:%S"));
    record.lastLogin = dateTime;
    if (inet_pton(AF_INET, fields.text("lastIp"), &record.lastIp) != 1) abort();
    char* next = fields.text("title");
    for (unsigned short* unit = record.title; *next != '\0'; ++unit) {
        *unit = static_cast<unsigned short>(strtoll(next, &next, 0));
    }
    record.itemCount = 0;
    for (auto* node = root->first_node("items"); node != nullptr; node = node->next_sibling("items")) {
        Example::PlayerItem& item = record.items[record.itemCount++];
        const Fields itemFields(node, format);
        item.id = static_cast<unsigned int>(itemFields.number("id"));
        item.amount = static_cast<unsigned short>(itemFields.number("amount"));
        item.kind = static_cast<unsigned char>(itemFields.number("kind"));
        strncpy(item.name, itemFields.text("name"), sizeof item.name - 1);
    }
    record.rating = strtod(fields.text("rating"), nullptr);
}

void ReadRapidxmlWhole(benchmark::State& state, ZylXmlFormat format) {
    const std::string text = SampleText(format);
    char copy[8192];
    Example::PlayerRecord record;
    for (auto _ : state) {
        memcpy(copy, text.c_str(), text.size() + 1);
        rapidxml::xml_document<> document;
        document.parse<0>(copy);
        ReadFields(document, format, record);
        benchmark::ClobberMemory();
    }
    char again[8192];
    if (record.toXmlBuffer(again, sizeof again, nullptr, format, 0) != 0 || text != again) abort();
}

BENCHMARK_CAPTURE(OpenZyl, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(ReadZyl, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(ReadRapidxml, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(ReadRapidxmlWhole, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(OpenZyl, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(ReadZyl, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(ReadRapidxml, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(ReadRapidxmlWhole, attribute, Quern::ZYL_XML_ATTRIBUTE);

}  // namespace
