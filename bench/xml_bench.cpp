// The XML model against references measured in the same run: pugixml,
// libxml2 and tinyxml2 over the same document, and a memcpy of its bytes.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <tinyxml2.h>

#include <pugixml.hpp>

#include <cstring>
#include <string>
#include <vector>

#include "definition/builtin_definition.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace {

// A document shaped like an extension definition: a few attributed elements
// and mostly Base64 payloads in 76-character lines, about 45 KB.
const std::string& DefinitionShapedDocument() {
    static const std::string text = [] {
        CXmlDocument doc;
        doc.GetRoot()->SetName("EXTENSION");
        doc.GetRoot()->GetAttributes().Set("title", "Bench");
        doc.GetRoot()->GetAttributes().Set("minwidth", "50");
        CXmlElement* properties = doc.AddChild(doc.GetRoot(), "PROPERTIES", std::nullopt, std::nullopt);
        CXmlElement* category =
            doc.AddChild(properties, "CATEGORY", std::nullopt, std::string_view("name=\"General\""));
        for (int i = 0; i < 6; ++i) {
            std::string attributes = "name=\"P" + std::to_string(i) + "\" type=\"2\" value=\"v\" variable=\"$p" +
                                     std::to_string(i) + "$\" description=\"A property\" options=\"\"";
            doc.AddChild(category, "PROPERTY", std::nullopt, std::string_view(attributes));
        }
        CXmlElement* files = doc.AddChild(doc.GetRoot(), "FILES", std::nullopt, std::nullopt);
        std::string payload;
        for (int i = 0; i < 32000; ++i) payload += static_cast<char>((i * 131) ^ (i >> 3));
        doc.AddChild(files, "FILE", std::string_view(Base64Encode(payload, 76)),
                     std::string_view("filename=\"p.bin\""));
        doc.AddChild(doc.GetRoot(), "HTML_BODY", std::string_view(Base64Encode(std::string(900, 'h'), 76)),
                     std::nullopt);
        return doc.GetXml();
    }();
    return text;
}

const std::string& Base64Text() {
    static const std::string text = [] {
        std::string payload;
        for (int i = 0; i < 600000; ++i) payload += static_cast<char>(i * 7 + (i >> 5));
        return Base64Encode(payload, 76);
    }();
    return text;
}

// A definition-shaped file of about 10 MB: categories of attributed
// properties and Base64 payloads in 76-character lines, over and over.
const std::string& LargeDefinition() {
    static const std::string text = [] {
        std::string out = "<?xml version=\"1.0\" ?>\r\n<EXTENSION title=\"Bench\" minwidth=\"50\">\r\n";
        std::string payload;
        for (int i = 0; i < 3000; ++i) payload += static_cast<char>((i * 131) ^ (i >> 3));
        const std::string file = Base64Encode(payload, 76);
        for (int block = 0; out.size() < 10 * 1000 * 1000; ++block) {
            out += "\t<PROPERTIES>\r\n\t\t<CATEGORY name=\"General " + std::to_string(block) + "\">\r\n";
            for (int i = 0; i < 6; ++i)
                out += "\t\t\t<PROPERTY name=\"P" + std::to_string(i) + "\" type=\"2\" value=\"v&amp;w\" variable=\"$p" +
                       std::to_string(i) + "$\" description=\"A property\" options=\"\"/>\r\n";
            out += "\t\t</CATEGORY>\r\n\t</PROPERTIES>\r\n\t<FILE filename=\"p" + std::to_string(block) + ".bin\">" +
                   file + "</FILE>\r\n";
        }
        return out + "</EXTENSION>\r\n";
    }();
    return text;
}

// Argument 0: the built-in definition (45 KB); 1: the 10 MB file.
std::string_view Document(int which) {
    if (which == 0) return BuiltinDefinition();
    return LargeDefinition();
}

void Processed(benchmark::State& state, std::string_view text) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void BM_Parse(benchmark::State& state) {
    std::string_view text = Document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CXmlDocument doc;
        doc.Parse(text);
        benchmark::DoNotOptimize(doc.GetRoot()->GetChildCount());
    }
    Processed(state, text);
}
BENCHMARK(BM_Parse)->Arg(0)->Arg(1);

void BM_ParsePugixml(benchmark::State& state) {
    std::string_view text = Document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        pugi::xml_document doc;
        benchmark::DoNotOptimize(doc.load_buffer(text.data(), text.size()));
    }
    Processed(state, text);
}
BENCHMARK(BM_ParsePugixml)->Arg(0)->Arg(1);

void BM_ParseLibxml2(benchmark::State& state) {
    std::string_view text = Document(static_cast<int>(state.range(0)));
    xmlInitParser();
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "bench.xml", nullptr,
                                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
    Processed(state, text);
}
BENCHMARK(BM_ParseLibxml2)->Arg(0)->Arg(1);

void BM_ParseTinyxml2(benchmark::State& state) {
    std::string_view text = Document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        tinyxml2::XMLDocument doc;
        benchmark::DoNotOptimize(doc.Parse(text.data(), text.size()));
    }
    Processed(state, text);
}
BENCHMARK(BM_ParseTinyxml2)->Arg(0)->Arg(1);

void BM_ParseMemcpy(benchmark::State& state) {
    std::string_view text = Document(static_cast<int>(state.range(0)));
    std::vector<char> copy(text.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    Processed(state, text);
}
BENCHMARK(BM_ParseMemcpy)->Arg(0)->Arg(1);

void BM_WriteDefinition(benchmark::State& state) {
    CXmlDocument doc;
    doc.Parse(DefinitionShapedDocument());
    for (auto _ : state) benchmark::DoNotOptimize(doc.GetXml());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(DefinitionShapedDocument().size()));
}
BENCHMARK(BM_WriteDefinition);

void BM_Base64Decode(benchmark::State& state) {
    const std::string& text = Base64Text();
    std::vector<unsigned char> out(text.size() + 1);
    for (auto _ : state) {
        int length = static_cast<int>(text.size());
        benchmark::DoNotOptimize(Base64Decode(text.data(), static_cast<int>(text.size()), out.data(), &length));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_Base64Decode);

void BM_MemcpyBase64Text(benchmark::State& state) {
    const std::string& text = Base64Text();
    std::vector<char> out(text.size());
    for (auto _ : state) {
        std::memcpy(out.data(), text.data(), text.size());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_MemcpyBase64Text);

}  // namespace
