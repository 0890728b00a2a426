// XSLT with libxml2 and libxslt. The libraries work in UTF-8; the system's
// texts are 8-bit in a single-byte code page, converted with iconv on the way
// in and out. No file or network access is allowed: the parser gets no
// network and no external entities, and libxslt's security preferences
// forbid reading, writing and creating anything.
#include "platform/libxslt_transformer.h"

#include <iconv.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <cerrno>
#include <mutex>

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
        for (xsltSecurityOption option : {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE,
                                          XSLT_SECPREF_CREATE_DIRECTORY, XSLT_SECPREF_READ_NETWORK,
                                          XSLT_SECPREF_WRITE_NETWORK})
            xsltSetSecurityPrefs(p, option, xsltSecurityForbid);
        xsltSetDefaultSecurityPrefs(p);
        return p;
    }();
    return prefs;
}

// One direction of a code-page conversion. Bytes the target cannot hold
// become '?', and invalid input bytes are skipped as one '?'.
class Converter {
public:
    Converter(const char* to, const char* from) : cd_(iconv_open(to, from)) {}
    ~Converter() {
        if (ok()) iconv_close(cd_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool ok() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

    std::string Convert(std::string_view text) {
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
            out += '?';
            std::size_t skip = 1;
            if (utf8Input_) {
                unsigned char lead = static_cast<unsigned char>(*in);
                skip = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
                if (skip > inLeft) skip = inLeft;
            }
            in += skip;
            inLeft -= skip;
        }
        return out;
    }
    void SetUtf8Input() { utf8Input_ = true; }

private:
    iconv_t cd_;
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

// Parses UTF-8 text whatever its declaration says, without network,
// external entities or DTD loading.
xmlDocPtr ParseUtf8(const std::string& text) {
    if (text.size() > static_cast<std::size_t>(INT32_MAX)) return nullptr;
    return xmlReadMemory(text.data(), static_cast<int>(text.size()), "memory:", "UTF-8",
                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
}

class CLibxsltTransformer : public CXsltTransformer {
public:
    explicit CLibxsltTransformer(const std::string& codePage)
        : toUtf8_("UTF-8", codePage.c_str()), fromUtf8_(codePage.c_str(), "UTF-8") {
        fromUtf8_.SetUtf8Input();
    }
    bool ok() const { return toUtf8_.ok() && fromUtf8_.ok(); }

    std::string Transform(std::string_view listXml, std::string_view stylesheet) override {
        std::lock_guard<std::mutex> lock(mutex_);
        xsltSecurityPrefsPtr prefs = SharedSecurityPrefs();

        std::unique_ptr<xmlDoc, DocFree> list(ParseUtf8(toUtf8_.Convert(listXml)));
        if (!list) return std::string();
        xmlDocPtr styleDoc = ParseUtf8(toUtf8_.Convert(stylesheet));
        if (!styleDoc) return std::string();
        // The compiled style sheet owns styleDoc from here on, when it compiles.
        std::unique_ptr<xsltStylesheet, StyleFree> style(xsltParseStylesheetDoc(styleDoc));
        if (!style) {
            xmlFreeDoc(styleDoc);
            return std::string();
        }
        if (style->errors) return std::string();

        // Produce UTF-8 whatever xsl:output asks for, so that nothing is
        // written as a character reference; the result goes back to the code
        // page as a whole.
        xmlFree(const_cast<xmlChar*>(style->encoding));
        style->encoding = xmlStrdup(BAD_CAST "UTF-8");

        std::unique_ptr<xsltTransformContext, ContextFree> context(xsltNewTransformContext(style.get(), list.get()));
        if (!context || xsltSetCtxtSecurityPrefs(prefs, context.get()) != 0) return std::string();
        std::unique_ptr<xmlDoc, DocFree> result(
            xsltApplyStylesheetUser(style.get(), list.get(), nullptr, nullptr, nullptr, context.get()));
        if (!result || context->state != XSLT_STATE_OK) return std::string();

        xmlChar* bytes = nullptr;
        int length = 0;
        if (xsltSaveResultToString(&bytes, &length, result.get(), style.get()) != 0) return std::string();
        std::string utf8 = bytes ? std::string(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(length))
                                 : std::string();
        xmlFree(bytes);
        return fromUtf8_.Convert(utf8);
    }

private:
    std::mutex mutex_;
    Converter toUtf8_;
    Converter fromUtf8_;
};

}  // namespace

std::unique_ptr<CXsltTransformer> CreateLibxsltTransformer(const std::string& codePage) {
    auto transformer = std::make_unique<CLibxsltTransformer>(codePage);
    if (!transformer->ok()) return nullptr;
    return transformer;
}
