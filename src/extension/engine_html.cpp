// Variable substitution, the three pieces of page HTML and gallery markup.
#include <algorithm>

#include "extension/extension_engine.h"
#include "html/color_type.h"
#include "html/gallery_list.h"
#include "html/image_list.h"
#include "html/published_names.h"
#include "html/stylesheet_safety.h"
#include "platform/file_system.h"
#include "html/definition_model.h"
#include "html/text_replace.h"
#include "platform/xslt_transformer.h"
#include "xml/base64.h"

namespace {

// Marks an image-list variable as being expanded for as long as it lives.
class ExpansionMark {
public:
    ExpansionMark(std::vector<std::string>& expanding, const std::string& variable) : expanding_(expanding) {
        expanding_.push_back(variable);
    }
    ~ExpansionMark() { expanding_.pop_back(); }

private:
    std::vector<std::string>& expanding_;
};

std::string DecodedTemplate(const CXmlElement* element) {
    return element ? Base64DecodeOrKeep(element->GetValue()) : std::string();
}

}  // namespace

bool CExtensionEngine::ReplacementFor(const CXmlElement& property, const std::string& text, bool reduceFiles,
                                      int keepPaths, std::string& variable, std::string& replacement) {
    PropertyRule rule = ReadPropertyRule(property);
    variable = std::move(rule.variable);
    if (!ContainsVariable(text, variable)) return false;
    if (rule.type == PropertyType::kImageList) {
        replacement = GalleryFor(property, variable, keepPaths);
        return true;
    }
    replacement = CurrentValueOf(property);
    switch (rule.type) {
        case PropertyType::kColor: replacement = ApplyColorType(replacement, property.GetAttribute("colortype")); break;
        case PropertyType::kFile:
            if (reduceFiles) replacement = std::string(PublishedFileName(replacement));
            break;
        default: break;
    }
    return true;
}

std::string CExtensionEngine::GalleryFor(const CXmlElement& property, const std::string& variable, int keepPaths) {
    // A value or style sheet that mentions the variable being expanded
    // would expand forever; it gets no markup instead.
    if (std::find(expanding_.begin(), expanding_.end(), variable) != expanding_.end()) return std::string();
    ExpansionMark mark(expanding_, variable);
    // A stored list is read where it stands unless variables in it are to be
    // replaced: with 10,000 pictures it is over a megabyte.
    const std::string* stored = values_.Find(variable);
    if (stored && !MentionsAVariable(*stored)) return GetGalleryCode(property, *stored, keepPaths);
    std::string list = CurrentValueOf(property);
    ReplaceVariables(list);
    return GetGalleryCode(property, list, keepPaths);
}

bool CExtensionEngine::MentionsAVariable(std::string_view text) {
    if (text.empty()) return false;
    std::vector<std::string> variables;
    ForEachProperty(*SourceCopy().GetRoot(),
                    [&](const CXmlElement& property) { variables.push_back(ReadPropertyRule(property).variable); });
    return ContainsAnyVariable(text, variables);
}

void CExtensionEngine::Replace(std::string& text, const std::string& variable, const std::string& replacement) {
    if (!ReplaceAllWithin(text, variable, replacement, kMaxSubstitutedText)) oversized_ = true;
}

void CExtensionEngine::ReplaceVariables(std::string& text) {
    // Nothing can be replaced in an empty text; skipping it avoids parsing
    // the private copy for the empty values that are common.
    if (text.empty()) return;
    const CXmlElement& root = *SourceCopy().GetRoot();
    std::string variable, replacement;
    ForEachProperty(root, [&](const CXmlElement& property) {
        if (ReplacementFor(property, text, true, 0, variable, replacement)) Replace(text, variable, replacement);
    });
}

void CExtensionEngine::UpdateHtml(int publishing) {
    const CXmlElement& root = *definition_.GetRoot();
    const CXmlElement* body = FirstChildNamed(root, definition::kHtmlBody);
    if (!body) return;
    htmlCache_ = DecodedTemplate(body);

    std::string variable, replacement;
    ForEachProperty(root, [&](const CXmlElement& property) {
        if (ReplacementFor(property, htmlCache_, publishing != 0, publishing ? 0 : 1, variable, replacement))
            Replace(htmlCache_, variable, replacement);
    });

    if (publishing == 0 && renderMethod_ == 2 && services_.onDesignHtml) services_.onDesignHtml(htmlCache_);
}

std::string CExtensionEngine::GetHeaderHtml() {
    std::string html = DecodedTemplate(FirstChildNamed(*definition_.GetRoot(), definition::kHtmlHead));
    ReplaceVariables(html);
    return html;
}

// The start-of-page piece comes from the element named HTML_TAIL.
std::string CExtensionEngine::GetStartofPageHTML() {
    std::string html = DecodedTemplate(FirstChildNamed(*definition_.GetRoot(), definition::kHtmlTail));
    ReplaceVariables(html);
    return html;
}

std::string CExtensionEngine::GetHtml(const char* context) {
    SetPageContext(context ? context : "");
    UpdateHtml(1);
    return htmlCache_;
}

std::string CExtensionEngine::GetGalleryCode(const CXmlElement& property, std::string_view value, int keepPaths) {
    // The XML component is started even for an empty list (it then fails to
    // load and gives no markup), so a missing component is reported
    // whenever a gallery is generated.
    if (!services_.transformer) return std::string();

    // A list too deep or too large gets no gallery; the rest of the page
    // stays. The parsed tree is gone before the transformation starts, which
    // holds the list again in its own form.
    if (static_cast<std::size_t>(std::count(value.begin(), value.end(), '<')) > kMaxGalleryTags) return std::string();
    // The design view transforms the list as it stands; it only has to know
    // that the list would parse whole.
    std::string rewritten;
    if (keepPaths) {
        if (CXmlDocument::NestsTooDeep(value)) return std::string();
    } else {
        std::optional<std::string> forPage =
            RewriteImageListForPage(value, pageContext_, [this](std::string_view name) {
                return services_.fileSystem ? services_.fileSystem->NameToUtf8(name) : std::string(name);
            });
        if (!forPage) return std::string();
        rewritten = std::move(*forPage);
    }
    std::string_view list = keepPaths ? value : std::string_view(rewritten);
    // A copy: substitution may make other galleries, which use the memo too.
    std::string stylesheet = decodedSheet_.Get(property.GetAttributeView("gallerytemplate"), Base64DecodeOrKeep);
    ReplaceVariables(stylesheet);
    // Whatever the transformer's own settings, a gallery never reads the
    // user's files or reaches the network.
    if (sheetReachesOutside_.Get(stylesheet, StylesheetReachesOutside) || DeclaresDocumentType(value))
        return std::string();
    return StripXmlDeclaration(services_.transformer->Transform(list, stylesheet));
}
