#include "definition/checker.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>

#include "html/attribute_number.h"
#include "html/definition_model.h"
#include "html/published_names.h"
#include "html/stylesheet_safety.h"
#include "xml/ascii.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace definition {
namespace {

using Severity = Problem::Severity;

// --- what the reader had to repair -------------------------------------------------

// A repair noticed while scanning, tied to the element being read then (its
// index in creation order, or none before the root).
struct Repair {
    std::size_t element;
    int line;
    std::string message;
};

constexpr std::size_t kNoElement = static_cast<std::size_t>(-1);

struct Scan {
    std::vector<int> lines;  // the start-tag line of each element, in creation order
    std::vector<Repair> repairs;
};

std::string Shortened(std::string_view text) {
    std::string out(text.substr(0, 40));
    if (text.size() > 40) out += "...";
    for (char& c : out)
        if (c == '\r' || c == '\n' || c == '\t') c = ' ';
    return out;
}

// Reads text the way the document reader does (one pass, tags between '<' and
// '>', end tags never matched against start tags) and notes every place
// where what the reader makes of it differs from what the text seems to say.
Scan ScanLikeTheReader(std::string_view text) {
    Scan scan;
    struct Open {
        std::size_t element;
        std::string name;
    };
    std::vector<Open> open;
    std::vector<std::string> values;  // each element's text as the reader keeps it
    bool inTag = false, rootClosed = false;
    std::string tag, content, inner;
    int line = 1;
    auto current = [&] { return open.empty() ? kNoElement : open.back().element; };
    auto note = [&](std::string message) { scan.repairs.push_back({current(), line, std::move(message)}); };

    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '<') {
            std::string value(ascii::Trim(content));
            if (!value.empty() && (open.empty() || rootClosed))
                note("text '" + Shortened(value) + "' outside the root element is not read");
            if (!open.empty()) {
                std::string& kept = values[current()];
                if (!kept.empty() && kept != value)
                    note("the text '" + Shortened(kept) +
                         "' is lost: an element keeps only its text after its "
                         "last child");
                kept = value;
            }
            if (tag.find('<') != std::string::npos) note("'<' inside a tag");
            content.clear();
            inTag = true;
            tag += '<';
            continue;
        }
        if (c != '>') {
            if (c == '\n') ++line;
            (inTag ? tag : content) += c;
            continue;
        }
        if (!inTag) note("'>' in text starts an element without a name; write &gt;");
        tag += '>';
        int kind = CXmlDocument::ClassifyTag(tag, inner);
        std::size_t blank = tag.find_first_not_of(" \t\r\n");
        bool afterIgnored = blank != std::string::npos && blank > 0;
        tag.clear();
        if (kind == -1) continue;  // the reader stays in a tag after <! and <?
        inTag = false;
        std::string name(inner.substr(0, inner.find(' ')));
        if (kind == 0 || kind == 2) {
            if (static_cast<int>(open.size()) == CXmlDocument::kMaxDepth) break;  // reported with the tree
            if (open.empty() && !scan.lines.empty()) open.push_back({0, ""});     // after the root's end
            std::size_t index = scan.lines.size();
            scan.lines.push_back(line);
            values.emplace_back();
            if (rootClosed)
                note("<" + std::string(ascii::Trim(name)) +
                     "> after the root's end tag is read as "
                     "the root's child");
            if (afterIgnored && index != 0)
                note("<" + std::string(ascii::Trim(name)) +
                     "> follows a comment or declaration, so its name "
                     "starts with white space and it is not found; remove the comment");
            open.push_back({index, ascii::Lower(ascii::Trim(name))});
        }
        if (kind == 2) {
            open.pop_back();
        } else if (kind == 1) {
            std::string closing = ascii::Lower(ascii::Trim(name));
            if (open.size() == 1) {
                if (closing != open.back().name) note("</" + closing + "> closes <" + open.back().name + ">");
                rootClosed = true;
            } else if (!open.empty()) {
                if (closing != open.back().name) note("</" + closing + "> closes <" + open.back().name + ">");
                open.pop_back();
            } else {
                note("</" + closing + "> has no start tag");
            }
        }
    }
    if (inTag && !ascii::Trim(tag).empty()) note("the text ends inside a tag");
    for (std::size_t i = rootClosed ? 1 : 0; i < open.size(); ++i)
        scan.repairs.push_back(
            {open[i].element, scan.lines[open[i].element], "<" + open[i].name + "> is never closed"});
    return scan;
}

// --- the definition's own rules ------------------------------------------------------

struct Rule {
    std::vector<std::string> attributes;
    std::vector<std::string> children;
};

const std::map<std::string, Rule>& Rules() {
    static const std::map<std::string, Rule> rules = {
        {"EXTENSION",
         {{"title", "text", "minwidth", "minheight", "usediv", "rendermethod", "developer", "website"},
          {"PROPERTIES", "FILES", "BITMAP", "IMAGE", "HTML_HEAD", "HTML_BODY", "HTML_TAIL"}}},
        {"PROPERTIES", {{}, {"CATEGORY"}}},
        {"CATEGORY", {{"name"}, {"PROPERTY"}}},
        {"PROPERTY",
         {{"name", "type", "value", "variable", "description", "options", "colortype", "gallerytemplate"}, {}}},
        {"FILES", {{}, {"FILE", "FOLDER"}}},
        {"FOLDER", {{"name"}, {"FILE", "FOLDER"}}},
        {"FILE", {{"filename", "process_file"}, {}}},
        {"BITMAP", {{"filename"}, {}}},
        {"IMAGE", {{}, {}}},
        {"HTML_HEAD", {{}, {}}},
        {"HTML_BODY", {{}, {}}},
        {"HTML_TAIL", {{}, {}}},
    };
    return rules;
}

const char* const kGeometryVariables[] = {"$LEFT$", "$TOP$", "$WIDTH$", "$HEIGHT$", "$Z_INDEX$"};

bool IsBase64Text(std::string_view text) {
    for (unsigned char c : text) {
        bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/' ||
                  c == '=' || ascii::IsSpace(c);
        if (!ok) return false;
    }
    return true;
}

bool IsColour(std::string_view value) {
    if (value.size() != 7 || value[0] != '#') return false;
    for (char c : value.substr(1))
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) return false;
    return true;
}

// Entity references the reader does not know stay in the text as they are.
std::string BadEntity(std::string_view text) {
    static const char* const kKnown[] = {"amp;", "lt;", "gt;", "quot;", "apos;", "nbsp;"};
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        std::string_view rest = text.substr(at + 1);
        bool known = false;
        for (const char* word : kKnown)
            known = known || ascii::EqualsNoCase(rest.substr(0, std::string_view(word).size()), word);
        if (!known && !rest.empty() && rest[0] == '#') {
            std::size_t end = rest.find(';');
            std::string_view digits = rest.substr(1, end == std::string_view::npos ? 0 : end - 1);
            bool hex = !digits.empty() && (digits[0] == 'x' || digits[0] == 'X');
            if (hex) digits.remove_prefix(1);
            known = !digits.empty() && digits.size() < 9;
            for (char c : digits)
                known = known && (hex ? std::isxdigit(static_cast<unsigned char>(c))
                                      : std::isdigit(static_cast<unsigned char>(c)));
        }
        if (!known) {
            std::size_t end = rest.find_first_of(" ;<\"");
            return std::string(
                text.substr(at, std::min<std::size_t>(end == std::string_view::npos ? rest.size() : end + 1, 11) + 1));
        }
    }
    return {};
}

// The variables a text uses: $name$ with a letter or '_' first, then
// letters, digits and '_'.
std::vector<std::string> VariablesIn(std::string_view text) {
    std::vector<std::string> found;
    for (std::size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at + 1)) {
        std::size_t end = at + 1;
        while (end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '_')) ++end;
        if (end < text.size() && text[end] == '$' && end > at + 1 &&
            !std::isdigit(static_cast<unsigned char>(text[at + 1]))) {
            found.emplace_back(text.substr(at, end - at + 1));
            at = end;
        }
    }
    return found;
}

std::uint32_t Little(std::string_view bytes, std::size_t at, int count) {
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// Why the toolbar could not load bytes as its 16 by 16 bitmap, or empty.
std::string BitmapProblem(std::string_view bytes) {
    if (bytes.size() < 54 || bytes.substr(0, 2) != "BM") return "is not a Windows bitmap";
    int width = static_cast<std::int32_t>(Little(bytes, 18, 4));
    int height = static_cast<std::int32_t>(Little(bytes, 22, 4));
    unsigned bits = Little(bytes, 28, 2), compression = Little(bytes, 30, 4), offset = Little(bytes, 10, 4);
    if (width != 16 || (height != 16 && height != -16))
        return "is " + std::to_string(width) + " x " + std::to_string(height < 0 ? -height : height) + ", not 16 x 16";
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
        return "has " + std::to_string(bits) + " bits per pixel";
    if (compression != 0 && compression != 3) return "is compressed";
    std::size_t row = ((16 * bits + 31) / 32) * 4;
    if (offset > bytes.size() || bytes.size() - offset < row * 16) return "is cut short";
    return {};
}

bool IsPicture(std::string_view bytes) {
    return bytes.substr(0, 8) == "\x89PNG\r\n\x1a\n" || bytes.substr(0, 4) == "GIF8" ||
           bytes.substr(0, 3) == "\xFF\xD8\xFF" || bytes.substr(0, 2) == "BM";
}

class Checker {
public:
    Checker(std::string_view text, const CheckOptions& options) : text_(text), options_(options) {}

    std::vector<Problem> Run() {
        Scan scan = ScanLikeTheReader(text_);
        document_.Parse(text_);
        Index(scan);
        for (const Repair& repair : scan.repairs) {
            const CXmlElement* element = repair.element < order_.size() ? order_[repair.element] : nullptr;
            Add(Severity::kWarning, element, repair.message, repair.line);
        }
        const CXmlElement& root = *document_.GetRoot();
        std::string rootName(ascii::Trim(root.GetName()));
        if (rootName != "EXTENSION") {
            Add(Severity::kError, nullptr,
                rootName.empty() ? "no root element: this is not an extension definition"
                                 : "the root element is <" + rootName + ">, not <EXTENSION>");
            return Sorted();
        }
        if (document_.IsTruncated())
            Add(Severity::kError, nullptr,
                "elements nest deeper than " + std::to_string(CXmlDocument::kMaxDepth) +
                    " levels; the plug-in reads nothing after that");
        CheckStructure(root, "EXTENSION");
        CheckRoot(root);
        CheckProperties(root);
        CheckTemplates(root);
        CheckFiles(root);
        CheckPictures(root);
        CheckVariableUse();
        return Sorted();
    }

private:
    // Paths and lines of every element, in the order the reader made them.
    void Index(const Scan& scan) {
        std::vector<std::pair<const CXmlElement*, std::string>> stack = {{document_.GetRoot(), ""}};
        while (!stack.empty()) {
            auto [element, path] = stack.back();
            stack.pop_back();
            std::size_t index = order_.size();
            order_.push_back(element);
            indexes_[element] = static_cast<int>(index);
            lines_[element] = index < scan.lines.size() ? scan.lines[index] : 0;
            paths_[element] = path.empty() ? std::string(ascii::Trim(element->GetName())) : path;
            std::map<std::string, int> seen;
            std::vector<std::pair<const CXmlElement*, std::string>> children;
            for (std::size_t i = 0; i < element->GetChildCount(); ++i) {
                const CXmlElement* child = element->GetChild(i);
                std::string name = ascii::Upper(ascii::Trim(child->GetName()));
                children.push_back({child, paths_[element] + "/" + name + "[" + std::to_string(++seen[name]) + "]"});
            }
            for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back(*it);
        }
    }

    void Add(Severity severity, const CXmlElement* element, std::string message, int line = -1) {
        Problem problem;
        problem.severity = severity;
        problem.line = line >= 0 ? line : element ? lines_[element] : 0;
        problem.path = element ? paths_[element] : std::string();
        problem.element = element ? indexes_[element] : -1;
        problem.message = std::move(message);
        problems_.push_back(std::move(problem));
    }

    std::vector<Problem> Sorted() {
        std::stable_sort(problems_.begin(), problems_.end(),
                         [](const Problem& a, const Problem& b) { return a.line < b.line; });
        return std::move(problems_);
    }

    // Elements and attributes nothing reads, and names spelt in the wrong case
    // where the plug-in compares exactly.
    void CheckStructure(const CXmlElement& element, const std::string& kind) {
        const Rule& rule = Rules().at(kind);
        CheckEntities(element);
        for (const std::string& name : AttributeNames(element)) {
            bool known = false;
            std::string sameButCase;
            for (const std::string& a : rule.attributes) {
                known = known || a == name;
                if (a != name && ascii::EqualsNoCase(a, name)) sameButCase = a;
            }
            if (known) continue;
            Add(Severity::kWarning, &element,
                "attribute '" + name + "' is not read" +
                    (sameButCase.empty() ? std::string()
                                         : "; attribute names are case-sensitive: write '" + sameButCase + "'"));
        }
        std::set<std::string> single;
        for (std::size_t i = 0; i < element.GetChildCount(); ++i) {
            const CXmlElement& child = *element.GetChild(i);
            std::string name = ascii::Upper(ascii::Trim(child.GetName()));
            bool known = false;
            for (const std::string& c : rule.children) known = known || c == name;
            if (!known) {
                std::string where;
                if (name == "PROPERTY")
                    where = ReadPropertyRule(child).type == PropertyType::kLink
                                ? "; a property must be inside a CATEGORY, and the host is not offered this link"
                                : "; a property must be inside a CATEGORY";
                Add(Severity::kWarning, &child, "<" + name + "> is not read inside <" + kind + ">" + where);
                continue;
            }
            bool repeats = name != "CATEGORY" && name != "PROPERTY" && name != "FILE" && name != "FOLDER";
            if (repeats && !single.insert(name).second)
                Add(Severity::kWarning, &child, "only the first <" + name + "> is read");
            CheckStructure(child, name);
        }
    }

    static std::vector<std::string> AttributeNames(const CXmlElement& element) {
        std::vector<std::string> names;
        element.GetAttributes().ForEach(
            [&names](const std::string& name, const std::string&) { names.push_back(name); });
        std::sort(names.begin(), names.end());
        return names;
    }

    void CheckEntities(const CXmlElement& element) {
        std::string bad = BadEntity(element.GetRawValue());
        element.GetAttributes().ForEach([&bad](const std::string&, const std::string& value) {
            if (bad.empty()) bad = BadEntity(value);
        });
        if (!bad.empty())
            Add(Severity::kWarning, &element,
                "'" + bad + "' is no entity the reader knows; it stays as it is (write &amp;)");
    }

    void CheckRoot(const CXmlElement& root) {
        std::string method = root.GetAttribute("rendermethod");
        auto value = static_cast<RenderMethod>(AttributeToInt(method));
        if (value != RenderMethod::kPlaceholder && value != RenderMethod::kPreviewPicture &&
            value != RenderMethod::kHtmlSnapshot)
            Add(Severity::kWarning, &root, "rendermethod " + method + " draws nothing; use 0, 1 or 2");
        std::string usediv = root.GetAttribute("usediv");
        if (!usediv.empty() && usediv != "1" && usediv != "0")
            Add(Severity::kWarning, &root, "usediv '" + usediv + "' counts as no; only \"1\" means yes");
    }

    void CheckProperties(const CXmlElement& root) {
        std::map<std::string, const CXmlElement*> variables;
        // The same walk as the plug-in's.
        ForEachProperty(root, [&](const CXmlElement& property) { CheckProperty(property, variables); });
    }

    void CheckProperty(const CXmlElement& property, std::map<std::string, const CXmlElement*>& variables) {
        std::string typeText = property.GetAttribute("type");
        PropertyType type = ReadPropertyRule(property).type;
        int code = static_cast<int>(type);
        if (!property.GetAttributes().Contains("type"))
            Add(Severity::kWarning, &property, "no type: it is read as 0, a Boolean");
        else if (std::string(ascii::Trim(typeText)) != std::to_string(code) || !IsKnownPropertyType(type))
            Add(Severity::kWarning, &property,
                "type '" + typeText + "' is none of 0 to 8; it is read as " + std::to_string(code));
        std::string variable = CXmlDocument::Unescape(property.GetAttribute("variable"));
        if (variable.empty()) {
            Add(Severity::kWarning, &property, "no variable: the property's value reaches no page");
        } else if (auto [at, added] = variables.emplace(variable, &property); !added) {
            Add(Severity::kWarning, &property,
                "variable " + variable + " is also the variable of the property at line " +
                    std::to_string(lines_[at->second]) + "; both share one value");
        } else {
            defined_.push_back({variable, &property});
        }
        std::string value = CXmlDocument::Unescape(property.GetAttribute("value"));
        if (type == PropertyType::kColor && !IsColour(value))
            Add(Severity::kWarning, &property, "colour value '" + value + "' is not #RRGGBB");
        std::string options = property.GetAttribute("options");
        if (type == PropertyType::kChoice && options.empty())
            Add(Severity::kWarning, &property, "a choice without options offers nothing");
        if (type != PropertyType::kChoice && !options.empty())
            Add(Severity::kWarning, &property, "options are read only for choices (type 7)");
        bool hasGallery = property.GetAttributes().Contains("gallerytemplate");
        if (type != PropertyType::kImageList && hasGallery)
            Add(Severity::kWarning, &property, "gallerytemplate is read only for image lists (type 6)");
        if (type == PropertyType::kImageList) CheckGallery(property, variable);
    }

    void CheckGallery(const CXmlElement& property, const std::string& variable) {
        std::string stored = property.GetAttribute("gallerytemplate");
        if (stored.empty()) {
            Add(Severity::kWarning, &property, "an image list without gallerytemplate gives no gallery");
            return;
        }
        if (!IsBase64Text(stored))
            Add(Severity::kWarning, &property,
                "gallerytemplate is not Base64; the plug-in decodes it to something else");
        std::string stylesheet = Base64DecodeOrKeep(stored);
        usingTexts_.push_back({stylesheet, &property});
        if (!variable.empty() && stylesheet.find(variable) != std::string::npos)
            Add(Severity::kWarning, &property,
                "the gallery template uses its own variable " + variable +
                    ", which would expand without end; "
                    "the plug-in gives no gallery");
        if (StylesheetReachesOutside(stylesheet))
            Add(Severity::kError, &property,
                "the gallery template calls document(), imports or includes style sheets, declares a document "
                "type or uses script; the plug-in refuses it and gives no gallery");
        else if (options_.stylesheetCompiles && !options_.stylesheetCompiles(stylesheet))
            Add(Severity::kError, &property, "the gallery template does not compile as an XSLT 1.0 style sheet");
    }

    void CheckTemplates(const CXmlElement& root) {
        const CXmlElement* body = nullptr;
        for (const char* name : {"HTML_HEAD", "HTML_BODY", "HTML_TAIL"}) {
            const CXmlElement* element = FirstChildNamed(root, name);
            if (std::string_view(name) == "HTML_BODY") body = element;
            if (!element) continue;
            std::string stored = element->GetValue();
            if (!IsBase64Text(stored))
                Add(Severity::kWarning, element, "the text is not Base64; the plug-in decodes it to something else");
            usingTexts_.push_back({Base64DecodeOrKeep(stored), element});
        }
        if (!body) Add(Severity::kWarning, &root, "no <HTML_BODY>: the object adds nothing to the page");
    }

    void CheckFiles(const CXmlElement& root) {
        const CXmlElement* files = FirstChildNamed(root, "FILES");
        if (!files) return;
        std::map<std::string, const CXmlElement*> written;
        // Document order, as the plug-in writes them.
        struct Level {
            const CXmlElement* element;
            std::string folder;
            std::size_t next;
        };
        std::vector<Level> stack = {{files, "", 0}};
        while (!stack.empty()) {
            Level& level = stack.back();
            if (level.next == level.element->GetChildCount()) {
                stack.pop_back();
                continue;
            }
            const CXmlElement& child = *level.element->GetChild(level.next++);
            std::string kind = ascii::Upper(ascii::Trim(child.GetName()));
            if (kind == "FILE") {
                CheckFile(child, level.folder, written);
            } else if (kind == "FOLDER") {
                std::string name = child.GetAttribute("name");
                if (!StaysInsideFolder(name)) {
                    Add(Severity::kError, &child,
                        "folder '" + name + "' leaves the output folder; the plug-in skips it with everything in it");
                    continue;
                }
                if (name.empty()) Add(Severity::kWarning, &child, "a FOLDER without name");
                std::string folder = level.folder + name + "/";
                stack.push_back({&child, folder, 0});
            }
        }
    }

    void CheckFile(const CXmlElement& file, const std::string& folder,
                   std::map<std::string, const CXmlElement*>& written) {
        std::string name = file.GetAttribute("filename");
        if (name.empty()) {
            Add(Severity::kWarning, &file, "a FILE without filename is not written");
        } else if (!StaysInsideFolder(name)) {
            Add(Severity::kError, &file, "file '" + name + "' leaves the output folder; the plug-in skips it");
        } else {
            std::string path = ascii::Lower(folder + name);
            for (char& c : path)
                if (c == '\\') c = '/';
            auto [at, added] = written.emplace(path, &file);
            if (!added)
                Add(Severity::kWarning, &file,
                    "'" + folder + name + "' is also written by the FILE at line " +
                        std::to_string(lines_[at->second]) + "; the later one wins");
        }
        std::string flag = file.GetAttribute("process_file");
        std::string lower = ascii::Lower(ascii::Trim(flag));
        if (flag != "1" && (lower == "1" || lower == "true" || lower == "yes" || lower == "on" || lower == "01"))
            Add(Severity::kWarning, &file, "process_file '" + flag + "' does not replace variables; only \"1\" does");
        std::string stored = file.GetValue();
        if (!IsBase64Text(stored))
            Add(Severity::kWarning, &file, "the content is not Base64; the plug-in decodes it to something else");
        if (flag == "1") usingTexts_.push_back({Base64DecodeOrKeep(stored), &file});
    }

    void CheckPictures(const CXmlElement& root) {
        if (const CXmlElement* bitmap = FirstChildNamed(root, "BITMAP")) {
            std::string problem = BitmapProblem(Base64DecodeOrKeep(bitmap->GetValue()));
            if (!problem.empty())
                Add(Severity::kWarning, bitmap,
                    "the toolbar picture " + problem + "; the plug-in's own picture is shown");
        }
        if (const CXmlElement* image = FirstChildNamed(root, "IMAGE")) {
            if (!IsPicture(Base64DecodeOrKeep(image->GetValue())))
                Add(Severity::kWarning, image, "the preview picture is no PNG, GIF, JPEG or BMP; nothing is drawn");
        }
    }

    // Variables that templates use but no property defines, and properties
    // whose variable nothing uses.
    void CheckVariableUse() {
        std::set<std::string> used;
        for (const auto& [text, element] : usingTexts_) {
            for (const std::string& variable : VariablesIn(text)) {
                used.insert(variable);
                bool known = false;
                for (const auto& [name, property] : defined_) known = known || name == variable;
                for (const char* geometry : kGeometryVariables) known = known || variable == geometry;
                if (!known && reported_.insert(variable).second)
                    Add(Severity::kWarning, element,
                        variable + " is the variable of no property; it stays in the page as it is");
            }
        }
        for (const auto& [variable, property] : defined_) {
            bool found = used.count(variable) != 0;
            for (const auto& [text, element] : usingTexts_) found = found || text.find(variable) != std::string::npos;
            if (!found)
                Add(Severity::kWarning, property,
                    "variable " + variable +
                        " appears in no template, processed file "
                        "or gallery template");
        }
    }

    std::string_view text_;
    const CheckOptions& options_;
    CXmlDocument document_;
    std::vector<const CXmlElement*> order_;
    std::unordered_map<const CXmlElement*, int> lines_;
    std::unordered_map<const CXmlElement*, int> indexes_;
    std::unordered_map<const CXmlElement*, std::string> paths_;
    std::vector<std::pair<std::string, const CXmlElement*>> defined_;     // variable, property
    std::vector<std::pair<std::string, const CXmlElement*>> usingTexts_;  // decoded text, its element
    std::set<std::string> reported_;
    std::vector<Problem> problems_;
};

}  // namespace

std::vector<Problem> CheckDefinition(std::string_view text, const CheckOptions& options) {
    return Checker(text, options).Run();
}

bool HasErrors(const std::vector<Problem>& problems) {
    for (const Problem& problem : problems)
        if (problem.severity == Problem::Severity::kError) return true;
    return false;
}

}  // namespace definition
