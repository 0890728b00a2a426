// The XML model against references measured in the same run: libxml2's
// xmlReadMemory over the same document and a memcpy of the same bytes.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <cstring>
#include <string>
#include <vector>

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

void BM_ParseDefinition(benchmark::State& state) {
    const std::string& text = DefinitionShapedDocument();
    for (auto _ : state) {
        CXmlDocument doc;
        doc.Parse(text);
        benchmark::DoNotOptimize(doc.GetRoot()->GetChildCount());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_ParseDefinition);

void BM_ParseDefinitionLibxml2(benchmark::State& state) {
    const std::string& text = DefinitionShapedDocument();
    xmlInitParser();
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "bench.xml", nullptr,
                                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_ParseDefinitionLibxml2);

void BM_MemcpyDefinition(benchmark::State& state) {
    const std::string& text = DefinitionShapedDocument();
    std::vector<char> copy(text.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_MemcpyDefinition);

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
