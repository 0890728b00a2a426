#include "definition/unpacker.h"

#include <set>

#include "definition/manifest.h"
#include "definition/packer.h"
#include "xml/ascii.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace definition {
namespace {

// Walks the source text alongside the parsed tree, start tag by start tag,
// to recover what the parser trims away: the exact text between a start tag
// and the next '<' (a Base64 value's final line break, or the line break
// that is an empty Base64 value).
class SourceScanner {
public:
    explicit SourceScanner(std::string_view source) : source_(source) {}

    // The content after the next start tag of name, or false when the text
    // does not have one where the tree says it is.
    bool NextContent(std::string_view name, std::string_view& content) {
        if (lost_) return false;
        std::string open = "<" + std::string(name);
        while (true) {
            std::size_t at = source_.find(open, pos_);
            if (at == std::string_view::npos) {
                // The text does not follow the writer's layout; searching on
                // for later elements would only cost time.
                lost_ = true;
                return false;
            }
            std::size_t after = at + open.size();
            if (after < source_.size() && (source_[after] == ' ' || source_[after] == '>')) {
                std::size_t close = source_.find('>', after);
                if (close == std::string_view::npos) return false;
                std::size_t next = source_.find('<', close + 1);
                if (next == std::string_view::npos) next = source_.size();
                content = source_.substr(close + 1, next - close - 1);
                pos_ = close + 1;
                return true;
            }
            pos_ = after;
        }
    }

private:
    std::string_view source_;
    std::size_t pos_ = 0;
    bool lost_ = false;
};

bool IsSafeFileName(std::string_view name) {
    if (name.empty() || name.front() == '.' || name.size() > 100) return false;
    for (char c : name) {
        bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
                  c == '-';
        if (!ok) return false;
    }
    return true;
}

std::string SniffPictureExtension(std::string_view bytes) {
    if (bytes.substr(0, 4) == "\x89PNG") return ".png";
    if (bytes.substr(0, 3) == "GIF") return ".gif";
    if (bytes.substr(0, 2) == "\xFF\xD8") return ".jpg";
    if (bytes.substr(0, 2) == "BM") return ".bmp";
    return ".bin";
}

class Unpacker {
public:
    explicit Unpacker(std::string_view xml) : scanner_(xml) {}

    // The manifest element for element (named name: the root's name comes
    // trimmed) and its subtree; folder is where its FILE contents go.
    ManifestElement Element(CXmlElement& element, const std::string& name, int depth, const std::string& folder) {
        if (depth >= kMaxNesting)
            throw DefinitionError("elements nested more than " + std::to_string(kMaxNesting) + " levels deep");
        ManifestElement out;
        out.name = name;
        std::string value = ExactValue(element, name);
        for (const std::string& attribute : AttributeNamesInOrder(element.GetAttributeText())) {
            std::string fileName = attribute == "gallerytemplate"
                                       ? "gallery.xsl"
                                       : ascii::Lower(name) + "-" + (IsSafeFileName(attribute) ? attribute : "value");
            out.attributes.push_back({attribute, Classify(element.GetAttribute(attribute), fileName, false)});
        }
        if (!value.empty()) out.value = Classify(value, ValueFileName(element, name, folder, value), true);

        std::string inner = folder;
        if (ascii::EqualsNoCase(name, "FILES") && depth == 1) inner = "files/";
        if (ascii::EqualsNoCase(name, "FOLDER") && !folder.empty()) {
            std::string given = element.GetAttribute("name");
            inner = folder + (IsSafeFileName(given) ? given : "folder") + "/";
        }
        for (std::size_t i = 0; i < element.GetChildCount(); ++i) {
            CXmlElement* child = element.GetChild(i);
            out.children.push_back(Element(*child, child->GetName(), depth + 1, inner));
        }
        return out;
    }

    std::vector<UnpackedFile>& Files() { return files_; }

private:
    // The element's value as the writer wrote it. The parser trims it; the
    // source text still has what was trimmed: a Base64 value's final line
    // break, or the line break alone that is empty Base64 content. Other
    // white space is the writer's layout of an element without a value.
    std::string ExactValue(CXmlElement& element, const std::string& name) {
        std::string_view content;
        std::string value = element.GetRawValue();
        if (!scanner_.NextContent(name, content) || element.GetChildCount() != 0 || ascii::Trim(content) != value)
            return value;
        return value.empty() && content != "\r\n" ? std::string() : std::string(content);
    }

    // Where an element's value goes when it needs a file of its own.
    static std::string ValueFileName(CXmlElement& element, const std::string& name, const std::string& folder,
                                     const std::string& value) {
        std::string upper = ascii::Upper(name);
        if (upper == "HTML_HEAD") return "head.html";
        if (upper == "HTML_BODY") return "body.html";
        if (upper == "HTML_TAIL") return "tail.html";
        if (upper == "BITMAP") return "toolbar.bmp";
        if (upper == "IMAGE") return "preview" + SniffPictureExtension(Base64DecodeOrKeep(value));
        if (upper == "FILE") {
            std::string given = element.GetAttribute("filename");
            return folder + (IsSafeFileName(given) ? given : "file.bin");
        }
        return IsSafeFileName(name) ? ascii::Lower(name) : "value";
    }

    // Base64 in the packer's own layout goes to a file decoded; other text
    // stays in the manifest when it fits on one line, else goes to a file.
    ManifestValue Classify(const std::string& text, const std::string& fileName, bool elementValue) {
        ManifestValue value;
        std::string decoded = Base64DecodeOrKeep(text);
        if (!text.empty() && EncodeBase64Lines(decoded) == text) {
            value.source = ValueSource::kBase64File;
            value.text = AddFile(fileName, decoded);
        } else if (text.find_first_of("\r\n") == std::string::npos) {
            value.source = ValueSource::kText;
            value.text = text;
        } else {
            value.source = ValueSource::kTextFile;
            value.text = AddFile(fileName + (elementValue ? "" : ".txt"), text);
        }
        return value;
    }

    // Adds a file under a name not used yet ("a.css", "a-2.css", ...).
    std::string AddFile(const std::string& wanted, const std::string& bytes) {
        std::string path = wanted;
        std::size_t slash = wanted.rfind('/');
        std::size_t dot = wanted.rfind('.');
        if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) dot = wanted.size();
        for (int n = 2; used_.count(ascii::Lower(path)) != 0; ++n)
            path = wanted.substr(0, dot) + "-" + std::to_string(n) + wanted.substr(dot);
        used_.insert(ascii::Lower(path));
        files_.push_back({path, bytes});
        return path;
    }

    SourceScanner scanner_;
    std::vector<UnpackedFile> files_;
    std::set<std::string> used_{ascii::Lower(kManifestName)};
};

}  // namespace

// The same walk as CXmlElement::ParseAttributes, keeping only the names.
std::vector<std::string> AttributeNamesInOrder(std::string_view text) {
    std::vector<std::string> names;
    std::set<std::string> seen;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t eq = text.find('=', pos);
        if (eq == std::string_view::npos) break;
        std::string name(ascii::Trim(text.substr(pos, eq - pos)));
        if (seen.insert(name).second) names.push_back(name);
        std::size_t open = text.find('"', eq + 1);
        if (open == std::string_view::npos) break;
        std::size_t close = text.find('"', open + 1);
        if (close == std::string_view::npos) break;
        pos = close + 1;
    }
    return names;
}

UnpackedDefinition UnpackDefinition(std::string_view xml) {
    if (ascii::Trim(xml).empty()) throw DefinitionError("the definition is empty");
    CXmlDocument document;
    document.Parse(xml);
    std::string rootName(ascii::Trim(document.GetRoot()->GetName()));
    if (rootName != "EXTENSION")
        throw DefinitionError(rootName.empty()
                                  ? std::string("no root element found; this is not an extension definition")
                                  : "the root element is '" + rootName +
                                        "', not EXTENSION; this is not an extension definition");

    if (document.IsTruncated())
        throw DefinitionError("elements nested more than " + std::to_string(kMaxNesting) + " levels deep");
    Unpacker unpacker(xml);
    ManifestElement root = unpacker.Element(*document.GetRoot(), rootName, 0, "");

    UnpackedDefinition result;
    result.manifest = FormatManifest(root);
    result.files = std::move(unpacker.Files());

    auto readBack = [&result](const std::string& path) {
        for (const UnpackedFile& file : result.files)
            if (file.path == path) return file.bytes;
        throw DefinitionError("missing '" + path + "'");
    };
    try {
        result.exact = PackManifest(ParseManifest(result.manifest), readBack) == xml;
    } catch (const DefinitionError& e) {
        result.exact = false;
        result.repackProblem = e.what();
    }
    return result;
}

}  // namespace definition
