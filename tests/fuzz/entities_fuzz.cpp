// Entity coding and attribute scanning: decoding undoes encoding for any
// bytes, and attribute text is scanned and rebuilt without harm.
#include "fuzz_services.h"
#include "xml/xml_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    CXmlDocument::Unescape(text);
    Require(CXmlDocument::Unescape(CXmlDocument::Escape(text, true)) == text);
    Require(CXmlDocument::Unescape(CXmlDocument::Escape(text, false)) == text);
    CXmlElement e;
    e.ParseAttributes(text);
    e.RebuildAttributeText();
    return 0;
}
