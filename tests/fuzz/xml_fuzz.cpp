// The XML model: the parser, writing what it parsed and parsing that again,
// and lookups on the result.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "xml/xml_document.h"

namespace {

void FuzzDocument(std::string_view text) {
    CXmlDocument doc;
    doc.Parse(text);
    // The depth check without a tree agrees with the parser.
    if (CXmlDocument::NestsTooDeep(text) != doc.IsTruncated()) __builtin_trap();
    std::string xml = doc.GetXml();
    CXmlDocument again;
    again.Parse(xml);
    again.GetXml();
    // Lookups on whatever came out.
    CXmlElement* root = doc.GetRoot();
    for (CXmlElement* c = root->GetFirstChild(); c; c = root->GetNextChild()) {
        c->GetValue();
        doc.GetChildValue(c, "A");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    FuzzDocument(text);
    return 0;
}
