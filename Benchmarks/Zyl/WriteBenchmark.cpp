// Writing one record as XML: this library against rapidxml's printer and libxml2's writer, all giving the same bytes.
//
// Two figures for rapidxml: its printer alone, over a tree that stands ready, and together with making that tree, which
// is what a program that has a record and wants a text must pay.
#include <benchmark/benchmark.h>
#include <libxml/xmlwriter.h>

#include <cstdio>
#include <cstdlib>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "SampleRecord.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

using Example::PlayerItem;
using Example::PlayerRecord;
using Quern::ZylTypeUtil;
using Quern::ZylXmlFormat;

namespace {

// Calls a sink's open, entry and close in the order of the record's fields: what the peers' writers share.
template <typename Sink>
void Describe(const PlayerRecord& record, Sink& sink) {
    char text[128];
    const auto print = [&](const char* format, auto value) {
        snprintf(text, sizeof text, format, value);
        return text;
    };
    sink.open("PlayerRecord", 0);
    sink.entry("uid", print("%llu", record.uid), 1);
    sink.entry("name", record.name, 1);
    sink.entry("level", print("%d", record.level), 1);
    ZylTypeUtil::zylDate2Str(text, sizeof text, record.birthday);
    sink.entry("birthday", text, 1);
    ZylTypeUtil::zylTime2Str(text, sizeof text, record.played);
    sink.entry("played", text, 1);
    ZylTypeUtil::zylDateTime2Str(text, sizeof text, record.lastLogin);
    sink.entry("lastLogin", text, 1);
    ZylTypeUtil::zylIp2Str(text, sizeof text, record.lastIp);
    sink.entry("lastIp", text, 1);
    size_t used = 0;
    for (const unsigned short* unit = record.title; *unit != 0; ++unit) {
        used += static_cast<size_t>(snprintf(text + used, sizeof text - used, "%u ", *unit));
    }
    sink.entry("title", text, 1);
    for (int i = 0; i < record.itemCount; ++i) {
        const PlayerItem& item = record.items[i];
        sink.open("items", 1);
        sink.entry("id", print("%u", item.id), 2);
        sink.entry("amount", print("%u", item.amount), 2);
        sink.entry("kind", print("%u", item.kind), 2);
        sink.entry("name", item.name, 2);
        sink.close(1);
    }
    sink.entry("rating", print("%.17g", record.rating), 1);
    sink.close(0);
}

constexpr const char* kTabs[] = {"", "\t", "\t\t"};

// Makes a rapidxml tree whose print without indenting has the line breaks and tabs of this library's layouts.
class TreeSink {
public:
    TreeSink(rapidxml::xml_document<>& document, ZylXmlFormat format)
        : _document(document), _format(format), _parents{&document} {}

    void open(const char* name, int depth) {
        white(_isFirst && depth > 0 ? "" : "\n", depth);
        _isFirst = true;
        auto* const element = _document.allocate_node(rapidxml::node_element, name);
        _parents.back()->append_node(element);
        _parents.push_back(element);
    }

    void entry(const char* name, const char* text, int depth) {
        white(_isFirst ? "\n" : "", depth);
        _isFirst = false;
        auto* const element = _document.allocate_node(rapidxml::node_element, name);
        if (_format == Quern::ZYL_XML_ATTRIBUTE) {
            element->append_attribute(_document.allocate_attribute("value", _document.allocate_string(text)));
        } else {
            const std::string value = std::string("\n") + text + kTabs[depth];
            element->append_node(
                _document.allocate_node(rapidxml::node_data, nullptr, _document.allocate_string(value.c_str())));
        }
        _parents.back()->append_node(element);
        white("\n", 0);
    }

    void close(int depth) {
        white("", depth);
        _parents.pop_back();
        white("\n", 0);
    }

private:
    void white(const char* lineBreak, int tabs) {
        const std::string text = std::string(lineBreak) + kTabs[tabs];
        if (text.empty()) return;
        _parents.back()->append_node(
            _document.allocate_node(rapidxml::node_data, nullptr, _document.allocate_string(text.c_str())));
    }

    rapidxml::xml_document<>& _document;
    ZylXmlFormat _format;
    std::vector<rapidxml::xml_node<>*> _parents;
    bool _isFirst = false;
};

class Libxml2Sink {
public:
    Libxml2Sink(xmlTextWriterPtr writer, ZylXmlFormat format) : _writer(writer), _format(format) {}

    void open(const char* name, int depth) {
        white(_isFirst && depth > 0 ? "" : "\n", depth);
        _isFirst = true;
        xmlTextWriterStartElement(_writer, BAD_CAST name);
    }

    void entry(const char* name, const char* text, int depth) {
        white(_isFirst ? "\n" : "", depth);
        _isFirst = false;
        xmlTextWriterStartElement(_writer, BAD_CAST name);
        if (_format == Quern::ZYL_XML_ATTRIBUTE) {
            xmlTextWriterWriteAttribute(_writer, BAD_CAST "value", BAD_CAST text);
        } else {
            white("\n", 0);
            xmlTextWriterWriteString(_writer, BAD_CAST text);
            white("", depth);
        }
        xmlTextWriterEndElement(_writer);
        white("\n", 0);
    }

    void close(int depth) {
        white("", depth);
        xmlTextWriterEndElement(_writer);
        white("\n", 0);
    }

private:
    void white(const char* lineBreak, int tabs) {
        if (*lineBreak != '\0') xmlTextWriterWriteRaw(_writer, BAD_CAST lineBreak);
        if (tabs > 0) xmlTextWriterWriteRaw(_writer, BAD_CAST kTabs[tabs]);
    }

    xmlTextWriterPtr _writer;
    ZylXmlFormat _format;
    bool _isFirst = false;
};

void MakeTree(const PlayerRecord& record, ZylXmlFormat format, rapidxml::xml_document<>& document) {
    TreeSink sink(document, format);
    Describe(record, sink);
}

size_t PrintTree(const rapidxml::xml_document<>& document, char* text) {
    return static_cast<size_t>(rapidxml::print(text, document, rapidxml::print_no_indenting) - text);
}

void WriteByLibxml2(const PlayerRecord& record, ZylXmlFormat format, xmlBufferPtr buffer) {
    xmlTextWriterPtr writer = xmlNewTextWriterMemory(buffer, 0);
    Libxml2Sink sink(writer, format);
    Describe(record, sink);
    xmlFreeTextWriter(writer);
}

// A comparison of different texts would say nothing.
void RequireSame(std::string_view peer, ZylXmlFormat format) {
    if (peer == SampleText(format)) return;
    fprintf(stderr, "The peer wrote another text:\n%.*s\n", static_cast<int>(peer.size()), peer.data());
    abort();
}

void WriteZyl(benchmark::State& state, ZylXmlFormat format) {
    PlayerRecord record = SampleRecord();
    char text[8192];
    unsigned long size = 0;
    for (auto _ : state) {
        if (record.toXmlBuffer(text, sizeof text, &size, format, 0) != 0) abort();
        benchmark::ClobberMemory();
    }
    RequireSame({text, size}, format);
}

void WriteRapidxmlPrinter(benchmark::State& state, ZylXmlFormat format) {
    const PlayerRecord record = SampleRecord();
    rapidxml::xml_document<> document;
    MakeTree(record, format, document);
    char text[8192];
    size_t size = 0;
    for (auto _ : state) {
        size = PrintTree(document, text);
        benchmark::ClobberMemory();
    }
    RequireSame({text, size}, format);
}

void WriteRapidxmlWhole(benchmark::State& state, ZylXmlFormat format) {
    const PlayerRecord record = SampleRecord();
    char text[8192];
    size_t size = 0;
    for (auto _ : state) {
        rapidxml::xml_document<> document;
        MakeTree(record, format, document);
        size = PrintTree(document, text);
        benchmark::ClobberMemory();
    }
    RequireSame({text, size}, format);
}

void WriteLibxml2(benchmark::State& state, ZylXmlFormat format) {
    const PlayerRecord record = SampleRecord();
    xmlBufferPtr buffer = xmlBufferCreateSize(8192);
    for (auto _ : state) {
        xmlBufferEmpty(buffer);
        WriteByLibxml2(record, format, buffer);
        benchmark::ClobberMemory();
    }
    RequireSame({reinterpret_cast<const char*>(xmlBufferContent(buffer)), static_cast<size_t>(xmlBufferLength(buffer))},
                format);
    xmlBufferFree(buffer);
}

BENCHMARK_CAPTURE(WriteZyl, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(WriteRapidxmlPrinter, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(WriteRapidxmlWhole, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(WriteLibxml2, node, Quern::ZYL_XML_NODE);
BENCHMARK_CAPTURE(WriteZyl, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(WriteRapidxmlPrinter, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(WriteRapidxmlWhole, attribute, Quern::ZYL_XML_ATTRIBUTE);
BENCHMARK_CAPTURE(WriteLibxml2, attribute, Quern::ZYL_XML_ATTRIBUTE);

}  // namespace
