// XSLT with libxml2 and libxslt. The libraries work in UTF-8; the system's
// texts are 8-bit in a single-byte code page, converted with iconv on the way
// in and out. No file or network access is allowed: the parser gets no
// network and no external entities, and libxslt's security preferences
// forbid reading, writing and creating anything.
#include "platform/libxslt_transformer.h"

#include "platform/libxslt_result_writer.h"
#include "xml/ascii.h"

#include <iconv.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <optional>

namespace {

void IgnoreMessage(void*, const char*, ...) {}
void IgnoreStructuredError(void*, const xmlError*) {}

// Library-wide settings, made once: silence, and the security preferences
// that also guard xsl:import and xsl:include while a style sheet compiles.
xsltSecurityPrefsPtr SharedSecurityPrefs() {
    static xsltSecurityPrefsPtr prefs = [] {
        xmlInitParser();
        xmlSetGenericErrorFunc(nullptr, IgnoreMessage);
        xmlSetStructuredErrorFunc(nullptr, reinterpret_cast<xmlStructuredErrorFunc>(IgnoreStructuredError));
        xsltSetGenericErrorFunc(nullptr, IgnoreMessage);
        xsltSecurityPrefsPtr p = xsltNewSecurityPrefs();
        for (xsltSecurityOption option :
             {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY, XSLT_SECPREF_READ_NETWORK,
              XSLT_SECPREF_WRITE_NETWORK})
            xsltSetSecurityPrefs(p, option, xsltSecurityForbid);
        xsltSetDefaultSecurityPrefs(p);
        return p;
    }();
    return prefs;
}

// Windows-1252 leaves 0x81, 0x8D, 0x8F, 0x90 and 0x9D undefined, and Windows
// converts each of them to and from the control character of the same number
// (U+0081 ...), so every byte survives a round trip. iconv refuses them;
// the converter maps them itself.
bool IsWindows1252Gap(unsigned char c) { return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D; }

bool IsWindows1252(std::string name) {
    for (char& c : name) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return name == "WINDOWS-1252" || name == "CP1252";
}

bool IsAscii(std::string_view text) {
    unsigned char any = 0;
    for (char c : text) any |= static_cast<unsigned char>(c);
    return any < 0x80;
}

// One direction of a code-page conversion. Bytes the target cannot hold
// become '?', and invalid input bytes are skipped as one '?'.
class Converter {
public:
    Converter(const char* to, const char* from)
        : cd_(iconv_open(to, from)), windows1252_(IsWindows1252(to) || IsWindows1252(from)) {
        if (!ok()) return;
        std::string ascii;
        for (int c = 1; c < 0x80; ++c) ascii += static_cast<char>(c);
        asciiSame_ = ConvertWithIconv(ascii) == ascii;
    }
    ~Converter() {
        if (ok()) iconv_close(cd_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

    // The text converted, in storage unless it passes unchanged: plain
    // ASCII does, without iconv and without a copy, between UTF-8 and any
    // code page that holds ASCII as it is (checked once, above).
    std::string_view Convert(std::string_view text, std::string& storage) {
        if (asciiSame_ && IsAscii(text)) return text;
        return storage = ConvertWithIconv(text);
    }
    void SetUtf8Input() { utf8Input_ = true; }

private:
    std::string ConvertWithIconv(std::string_view text) {
        std::string out;
        out.reserve(text.size() + text.size() / 4 + 16);
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        char* in = const_cast<char*>(text.data());
        std::size_t inLeft = text.size();
        char buffer[4096];
        while (inLeft > 0) {
            char* outPtr = buffer;
            std::size_t outLeft = sizeof buffer;
            std::size_t r = iconv(cd_, &in, &inLeft, &outPtr, &outLeft);
            out.append(buffer, static_cast<std::size_t>(outPtr - buffer));
            if (r != static_cast<std::size_t>(-1) || errno == E2BIG) continue;
            // EILSEQ or EINVAL: replace one offending character.
            const unsigned char lead = static_cast<unsigned char>(*in);
            if (windows1252_ && !utf8Input_ && IsWindows1252Gap(lead)) {
                out += '\xC2';
                out += static_cast<char>(lead);
                ++in;
                --inLeft;
                continue;
            }
            if (windows1252_ && utf8Input_ && lead == 0xC2 && inLeft >= 2 &&
                IsWindows1252Gap(static_cast<unsigned char>(in[1]))) {
                out += in[1];
                in += 2;
                inLeft -= 2;
                continue;
            }
            out += '?';
            std::size_t skip = 1;
            if (utf8Input_) {
                skip = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
                if (skip > inLeft) skip = inLeft;
            }
            in += skip;
            inLeft -= skip;
        }
        return out;
    }

    iconv_t cd_;
    bool windows1252_;
    bool asciiSame_ = false;
    bool utf8Input_ = false;
};

struct DocFree {
    void operator()(xmlDocPtr d) const { xmlFreeDoc(d); }
};
struct StyleFree {
    void operator()(xsltStylesheetPtr s) const { xsltFreeStylesheet(s); }
};
struct ContextFree {
    void operator()(xsltTransformContextPtr c) const { xsltFreeTransformContext(c); }
};

bool IsBlankText(const xmlChar* text) {
    for (; text && *text; ++text)
        if (!ascii::IsXmlSpace(*text)) return false;
    return true;
}

// The list document is loaded the way the Windows XML component loads a
// document that does not preserve white space: a text node of blanks only
// is dropped, unless the nearest xml:space around it says "preserve". Style
// sheets see the same nodes with either transformer, and the tree is
// smaller (a written list has one such node beside each element).
//
// A text node is complete when anything but text follows it in its parent;
// the handlers below look at the parent's last child then, before the
// parser adds the next node, so a dropped node's memory is taken again at
// once.
namespace list_loading {

void DropCompleteBlankText(void* parserContext) {
    xmlNodePtr parent = static_cast<xmlParserCtxtPtr>(parserContext)->node;
    xmlNodePtr last = parent ? parent->last : nullptr;
    if (!last || last->type != XML_TEXT_NODE || !IsBlankText(last->content) || xmlNodeGetSpacePreserve(parent) == 1)
        return;
    xmlUnlinkNode(last);
    xmlFreeNode(last);
}

void StartElement(void* c, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri, int namespaceCount,
                  const xmlChar** namespaces, int attributeCount, int defaultedCount, const xmlChar** attributes) {
    DropCompleteBlankText(c);
    xmlSAX2StartElementNs(c, name, prefix, uri, namespaceCount, namespaces, attributeCount, defaultedCount, attributes);
}
void EndElement(void* c, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
    DropCompleteBlankText(c);
    xmlSAX2EndElementNs(c, name, prefix, uri);
}
void Comment(void* c, const xmlChar* text) {
    DropCompleteBlankText(c);
    xmlSAX2Comment(c, text);
}
void ProcessingInstruction(void* c, const xmlChar* target, const xmlChar* data) {
    DropCompleteBlankText(c);
    xmlSAX2ProcessingInstruction(c, target, data);
}
void CdataBlock(void* c, const xmlChar* text, int length) {
    DropCompleteBlankText(c);
    xmlSAX2CDataBlock(c, text, length);
}
void Reference(void* c, const xmlChar* name) {
    DropCompleteBlankText(c);
    xmlSAX2Reference(c, name);
}

}  // namespace list_loading

enum class Blanks { kKeep, kDropAsAList };

// The parser reads the text through this, a piece at a time: given the
// whole text at once, libxml2 copies it, and then converts the copy to
// UTF-8 into another buffer, three copies of the list in all.
struct PieceReader {
    std::string_view rest;

    static int Read(void* reader, char* buffer, int length) {
        std::string_view& rest = static_cast<PieceReader*>(reader)->rest;
        const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(length < 0 ? 0 : length));
        std::memcpy(buffer, rest.data(), count);
        rest.remove_prefix(count);
        return static_cast<int>(count);
    }
};

// Parses UTF-8 text whatever its declaration says, without network,
// external entities or DTD loading; a list without its text nodes of
// blanks only (see list_loading).
xmlDocPtr ParseUtf8(std::string_view text, Blanks blanks) {
    if (text.size() > static_cast<std::size_t>(INT32_MAX)) return nullptr;
    xmlParserCtxtPtr context = xmlNewParserCtxt();
    if (!context) return nullptr;
    if (blanks == Blanks::kDropAsAList) {
        xmlSAXHandlerPtr sax = context->sax;
        sax->startElementNs = list_loading::StartElement;
        sax->endElementNs = list_loading::EndElement;
        sax->comment = list_loading::Comment;
        sax->processingInstruction = list_loading::ProcessingInstruction;
        sax->cdataBlock = list_loading::CdataBlock;
        sax->reference = list_loading::Reference;
    }
    PieceReader reader{text};
    xmlDocPtr document = xmlCtxtReadIO(context, PieceReader::Read, nullptr, &reader, "memory:", "UTF-8",
                                       XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    xmlFreeParserCtxt(context);
    return document;
}

class CLibxsltTransformer : public CXsltTransformer {
public:
    CLibxsltTransformer(const std::string& codePage, std::size_t writeAheadFrom)
        : writeAheadFrom_(writeAheadFrom), toUtf8_("UTF-8", codePage.c_str()), fromUtf8_(codePage.c_str(), "UTF-8") {
        fromUtf8_.SetUtf8Input();
    }
    bool ok() const { return toUtf8_.ok() && fromUtf8_.ok(); }

    std::string Transform(std::string_view listXml, std::string_view stylesheet) override {
        std::lock_guard<std::mutex> lock(mutex_);
        xsltSecurityPrefsPtr prefs = SharedSecurityPrefs();

        std::string converted;
        std::unique_ptr<xmlDoc, DocFree> list(ParseUtf8(toUtf8_.Convert(listXml, converted), Blanks::kDropAsAList));
        if (!list) return std::string();
        xsltStylesheetPtr compiled = Compiled(stylesheet);
        if (!compiled) return std::string();

        std::unique_ptr<xsltTransformContext, ContextFree> context(xsltNewTransformContext(compiled, list.get()));
        if (!context || xsltSetCtxtSecurityPrefs(prefs, context.get()) != 0) return std::string();
        std::unique_ptr<xmlDoc, DocFree> result;
        {
            std::optional<CResultWriter> writer;
            if (listXml.size() >= writeAheadFrom_) writer.emplace(context.get());
            result.reset(xsltApplyStylesheetUser(compiled, list.get(), nullptr, nullptr, nullptr, context.get()));
        }
        if (!result || context->state != XSLT_STATE_OK) return std::string();
        // The result tree holds copies (its texts are its own or in the
        // context's dictionary, which it keeps a reference to): the list's
        // tree goes before the result is written out, and the result's
        // before the last copy.
        context.reset();
        list.reset();

        xmlChar* bytes = nullptr;
        int length = 0;
        if (xsltSaveResultToString(&bytes, &length, result.get(), compiled) != 0) return std::string();
        result.reset();
        std::string out;
        if (bytes) {
            std::string_view text = fromUtf8_.Convert(
                std::string_view(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(length)), out);
            if (text.data() != out.data()) out.assign(text);  // unchanged: copied out of libxml2's buffer
        }
        xmlFree(bytes);
        return out;
    }

private:
    // The style sheet compiled from the last text seen: a gallery transforms
    // with the same sheet again and again, and compiling costs more than
    // most transformations. A different text replaces it; one that does not
    // compile is remembered too, so it fails again without a second try.
    xsltStylesheetPtr Compiled(std::string_view stylesheet) {
        if (cacheValid_ && stylesheet == cachedText_) return cached_.get();
        cached_.reset();
        cacheValid_ = false;
        cachedText_.assign(stylesheet);
        std::string converted;
        xmlDocPtr styleDoc = ParseUtf8(toUtf8_.Convert(stylesheet, converted), Blanks::kKeep);
        if (styleDoc) {
            // The compiled style sheet owns styleDoc from here on, when it compiles.
            std::unique_ptr<xsltStylesheet, StyleFree> style(xsltParseStylesheetDoc(styleDoc));
            if (!style) {
                xmlFreeDoc(styleDoc);
            } else if (!style->errors) {
                // Produce UTF-8 whatever xsl:output asks for, so that nothing
                // is written as a character reference; the result goes back
                // to the code page as a whole.
                xmlFree(const_cast<xmlChar*>(style->encoding));
                style->encoding = xmlStrdup(BAD_CAST "UTF-8");
                cached_ = std::move(style);
            }
        }
        cacheValid_ = true;
        return cached_.get();
    }

    std::mutex mutex_;
    const std::size_t writeAheadFrom_;
    std::string cachedText_;
    std::unique_ptr<xsltStylesheet, StyleFree> cached_;
    bool cacheValid_ = false;
    Converter toUtf8_;
    Converter fromUtf8_;
};

}  // namespace

std::unique_ptr<CXsltTransformer> CreateLibxsltTransformer(const std::string& codePage, std::size_t writeAheadFrom) {
    auto transformer = std::make_unique<CLibxsltTransformer>(codePage, writeAheadFrom);
    if (!transformer->ok()) return nullptr;
    return transformer;
}

bool LibxsltCompiles(std::string_view stylesheet, const std::string& codePage) {
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    SharedSecurityPrefs();
    Converter toUtf8("UTF-8", codePage.c_str());
    if (!toUtf8.ok()) return false;
    std::string converted;
    xmlDocPtr styleDoc = ParseUtf8(toUtf8.Convert(stylesheet, converted), Blanks::kKeep);
    if (!styleDoc) return false;
    std::unique_ptr<xsltStylesheet, StyleFree> style(xsltParseStylesheetDoc(styleDoc));
    if (!style) {
        xmlFreeDoc(styleDoc);
        return false;
    }
    return style->errors == 0;
}
