#include "html/stylesheet_safety.h"

#include <cstdlib>
#include <string>

#include "xml/ascii.h"

namespace {

// The extension namespace whose script elements run code in the Windows
// XML component.
constexpr std::string_view kScriptNamespace = "urn:schemas-microsoft-com:xslt";

// The text as an XML processor reads names and expressions in it: character
// references and the predefined entities decoded, ASCII letters lower case.
std::string AsProcessorReadsIt(std::string_view text) {
    std::string out(text.size(), '\0');
    std::size_t length = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        std::size_t end = c == '&' ? text.find(';', i) : std::string_view::npos;
        if (end != std::string_view::npos && end - i <= 12) {
            std::string_view name = text.substr(i + 1, end - i - 1);
            long code = -1;
            if (name.size() > 1 && name[0] == '#') {
                bool hex = name[1] == 'x' || name[1] == 'X';
                std::string digits(name.substr(hex ? 2 : 1));
                char* stop = nullptr;
                code = digits.empty() ? -1 : std::strtol(digits.c_str(), &stop, hex ? 16 : 10);
                if (stop && *stop) code = -1;
            } else if (name == "lt") {
                code = '<';
            } else if (name == "gt") {
                code = '>';
            } else if (name == "amp") {
                code = '&';
            } else if (name == "quot") {
                code = '"';
            } else if (name == "apos") {
                code = '\'';
            }
            if (code >= 0) {
                // Only ASCII matters for the names searched for.
                c = code < 0x80 ? static_cast<char>(code) : '?';
                i = end;
            }
        }
        out[length++] = ascii::ToLower(c);
    }
    out.resize(length);
    return out;
}

bool CallsDocument(const std::string& text) {
    for (std::size_t at = text.find("document"); at != std::string::npos; at = text.find("document", at + 1)) {
        std::size_t next = at + 8;
        while (next < text.size() && ascii::IsXmlSpace(static_cast<unsigned char>(text[next]))) ++next;
        if (next < text.size() && text[next] == '(') return true;
    }
    return false;
}

bool UsesOutsideElement(const std::string& text) {
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
        std::size_t end = at + 1;
        while (end < text.size() && !ascii::IsXmlSpace(static_cast<unsigned char>(text[end])) && text[end] != '/' &&
               text[end] != '>')
            ++end;
        std::string_view name(text.data() + at + 1, end - at - 1);
        std::size_t colon = name.rfind(':');
        std::string_view local = colon == std::string_view::npos ? name : name.substr(colon + 1);
        if (local == "import" || local == "include" || local == "document") return true;
    }
    return false;
}

}  // namespace

bool DeclaresDocumentType(std::string_view xml) {
    // Found by their '!', which is rare; '<' is everywhere.
    for (std::size_t bang = xml.find('!'); bang != std::string_view::npos; bang = xml.find('!', bang + 1)) {
        if (bang == 0 || xml[bang - 1] != '<') continue;
        std::string_view declaration = xml.substr(bang + 1);
        if (ascii::EqualsNoCase(declaration.substr(0, 7), "doctype") ||
            ascii::EqualsNoCase(declaration.substr(0, 6), "entity"))
            return true;
    }
    return false;
}

bool StylesheetReachesOutside(std::string_view stylesheet) {
    if (DeclaresDocumentType(stylesheet)) return true;
    std::string text = AsProcessorReadsIt(stylesheet);
    return CallsDocument(text) || UsesOutsideElement(text) || text.find(kScriptNamespace) != std::string::npos;
}
