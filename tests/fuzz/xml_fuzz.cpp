// Fuzz target for the XML model: the parser, writing what it parsed and
// parsing that again, attribute scanning, entity decoding and Base64.
// Besides crashes and sanitizer reports it checks a few properties that
// must hold for every input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "xml/base64.h"
#include "xml/xml_document.h"

namespace {

void Check(bool condition) {
    if (!condition) std::abort();
}

void FuzzDocument(std::string_view text) {
    CXmlDocument doc;
    doc.Parse(text);
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

void FuzzEntities(std::string_view text) {
    CXmlDocument::Unescape(text);
    Check(CXmlDocument::Unescape(CXmlDocument::Escape(text, true)) == text);
    Check(CXmlDocument::Unescape(CXmlDocument::Escape(text, false)) == text);
    CXmlElement e;
    e.ParseAttributes(text);
    e.RebuildAttributeText();
}

void FuzzBase64(std::string_view text, int capacity) {
    int full = 0;
    Check(!Base64Decode(text.data(), static_cast<int>(text.size()), nullptr, &full));
    if (capacity < 0) capacity = -capacity;
    capacity %= (full + 2);
    // An exact-size heap buffer: a write past the capacity is caught.
    std::vector<unsigned char> buffer(static_cast<std::size_t>(capacity));
    int length = capacity;
    bool ok = Base64Decode(text.data(), static_cast<int>(text.size()), capacity ? buffer.data() : nullptr,
                           &length);
    Check(length == full);
    Check(ok == (capacity > 0 && capacity >= full));
    if (ok && full > 0) {
        std::string again = Base64Encode(std::string_view(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(full)));
        int roundLength = full + 1;
        std::vector<unsigned char> round(static_cast<std::size_t>(full) + 1);
        Check(Base64Decode(again.data(), static_cast<int>(again.size()), round.data(), &roundLength));
        Check(roundLength == full && std::memcmp(round.data(), buffer.data(), static_cast<std::size_t>(full)) == 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    FuzzDocument(text);
    FuzzEntities(text);
    int capacity = size >= 2 ? (data[0] << 8 | data[1]) : 0;
    FuzzBase64(text, capacity);
    return 0;
}
