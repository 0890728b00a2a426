#include "platform/one_root_output.h"

namespace one_root {
namespace {

// The wrapper starts with a text, so the component never indents inside it.
constexpr std::string_view kOpen = "<pw-one-root>!";
constexpr std::string_view kOpenInStylesheet = "<pw-one-root><xsl:text>!</xsl:text>";
constexpr std::string_view kClose = "</pw-one-root>";

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

bool EndsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool IsNameStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

// Where the element that starts at at ends, when it has no element child:
// "<name .../>" or "<name ...>text</name>". Serialised text and attribute
// values hold no '<' or '>'. npos for anything else.
std::size_t FlatElementEnd(std::string_view text, std::size_t at) {
    constexpr std::size_t npos = std::string_view::npos;
    if (at + 1 >= text.size() || text[at] != '<' || !IsNameStart(text[at + 1])) return npos;
    std::size_t startEnd = text.find('>', at);
    if (startEnd == npos) return npos;
    if (text[startEnd - 1] == '/') return startEnd + 1;
    std::size_t endTag = text.find('<', startEnd);
    if (endTag == npos || endTag + 1 >= text.size() || text[endTag + 1] != '/') return npos;
    std::size_t end = text.find('>', endTag);
    return end == npos ? npos : end + 1;
}

// Flat elements and text: written the same inside the wrapper, where the
// component never indents, and at the top level, where it may.
bool IsFlat(std::string_view body) {
    std::size_t at = 0;
    while (at < body.size()) {
        if (body[at] == '<') {
            at = FlatElementEnd(body, at);
            if (at == std::string_view::npos) return false;
        } else {
            at = body.find('<', at);
            if (at == std::string_view::npos) return true;
        }
    }
    return true;
}

// The template that matches "/", written plainly, and where its content ends.
bool FindRootTemplate(std::string_view stylesheet, std::size_t& contentStart, std::size_t& contentEnd) {
    std::size_t found = std::string_view::npos;
    for (std::string_view open : {"<xsl:template match=\"/\">", "<xsl:template match='/'>"}) {
        std::size_t at = stylesheet.find(open);
        if (at == std::string_view::npos) continue;
        if (found != std::string_view::npos || stylesheet.find(open, at + 1) != std::string_view::npos) return false;
        found = at;
        contentStart = at + open.size();
    }
    if (found == std::string_view::npos) return false;
    contentEnd = stylesheet.find("</xsl:template>", contentStart);
    return contentEnd != std::string_view::npos;
}

}  // namespace

std::optional<std::string> WrapRootTemplate(std::string_view stylesheet) {
    // Without an explicit method the component picks one from the first
    // element written, which the wrapper would change.
    if (stylesheet.find("<xsl:output method=\"xml\"") == std::string_view::npos &&
        stylesheet.find("<xsl:output method='xml'") == std::string_view::npos)
        return std::nullopt;
    std::size_t start = 0, end = 0;
    if (!FindRootTemplate(stylesheet, start, end)) return std::nullopt;
    std::string wrapped(stylesheet.substr(0, start));
    wrapped += kOpenInStylesheet;
    wrapped += stylesheet.substr(start, end - start);
    wrapped += kClose;
    wrapped += stylesheet.substr(end);
    return wrapped;
}

std::optional<std::string> Unwrap(std::string_view output) {
    std::size_t at = output.find("<pw-one-root");
    if (at == std::string_view::npos) return std::nullopt;
    // Before the wrapper only the XML declaration may stand.
    std::string_view declaration = output.substr(0, at);
    if (!declaration.empty() && (!StartsWith(declaration, "<?xml") || !EndsWith(declaration, "?>") ||
                                 declaration.find('<', 1) != std::string_view::npos))
        return std::nullopt;
    std::string_view rest = output.substr(at);
    if (!StartsWith(rest, kOpen) || !EndsWith(rest, kClose)) return std::nullopt;
    std::string_view body = rest.substr(kOpen.size(), rest.size() - kOpen.size() - kClose.size());
    if (!IsFlat(body)) return std::nullopt;
    // For an empty output the component gives an empty text, without the
    // declaration.
    if (body.empty()) return std::string();
    std::string out(declaration);
    out += body;
    return out;
}

}  // namespace one_root
