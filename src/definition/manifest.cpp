#include "definition/manifest.h"

#include <map>
#include <optional>
#include <set>

#include "xml/ascii.h"

namespace definition {
namespace {

constexpr int kIndentStep = 4;

[[noreturn]] void Fail(int line, const std::string& message) {
    throw DefinitionError("manifest line " + std::to_string(line) + ": " + message);
}

// Characters that would break a tag when written into the definition.
bool IsNameCharacter(char c, bool element) {
    if (ascii::IsSpace(static_cast<unsigned char>(c))) return false;
    switch (c) {
        case '<':
        case '>':
        case '/':
        case '=':
        case '"':
        case '&': return false;
        case '[':
        case ']': return !element;
        default: return true;
    }
}

void CheckName(int line, std::string_view name, bool element) {
    const char* what = element ? "element" : "attribute";
    if (name.empty()) Fail(line, std::string("an ") + what + " needs a name");
    for (char c : name)
        if (!IsNameCharacter(c, element))
            Fail(line, std::string(what) + " name '" + std::string(name) + "' contains '" + c + "'");
}

// Files are named relative to the folder, with '/' between parts, and may
// not climb out of it.
void CheckPath(int line, std::string_view path) {
    if (path.empty()) Fail(line, "a file name is missing after '<'");
    if (path.front() == '/' || path.find('\\') != std::string_view::npos || path.find(':') != std::string_view::npos)
        Fail(line, "'" + std::string(path) + "' must be a relative path with '/' between folders");
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find('/', start);
        if (end == std::string_view::npos) end = path.size();
        std::string_view part = path.substr(start, end - start);
        if (part.empty() || part == "." || part == "..")
            Fail(line, "'" + std::string(path) + "' must stay inside the folder");
        start = end + 1;
    }
}

// "= text", "< path", "<< path" or nothing.
ManifestValue ParseValue(int line, std::string_view rest) {
    std::size_t i = 0;
    while (i < rest.size() && rest[i] == ' ') ++i;
    rest.remove_prefix(i);
    ManifestValue value;
    if (rest.empty()) return value;
    if (rest[0] == '=') {
        rest.remove_prefix(1);
        if (!rest.empty() && rest[0] == ' ') rest.remove_prefix(1);
        value.source = ValueSource::kText;
        value.text = std::string(rest);
        return value;
    }
    if (rest[0] == '<') {
        bool verbatim = rest.size() > 1 && rest[1] == '<';
        value.source = verbatim ? ValueSource::kTextFile : ValueSource::kBase64File;
        value.text = std::string(ascii::Trim(rest.substr(verbatim ? 2 : 1)));
        CheckPath(line, value.text);
        return value;
    }
    Fail(line, "expected '= text', '< file' or '<< file', found '" + std::string(rest) + "'");
}

void AppendValue(std::string& out, const ManifestValue& value) {
    switch (value.source) {
        case ValueSource::kNone: break;
        case ValueSource::kText: out += value.text.empty() ? " =" : " = " + value.text; break;
        case ValueSource::kBase64File: out += " < " + value.text; break;
        case ValueSource::kTextFile: out += " << " + value.text; break;
    }
}

void AppendElement(std::string& out, const ManifestElement& element, int depth) {
    std::string indent(static_cast<std::size_t>(depth * kIndentStep), ' ');
    out += indent + "[" + element.name + "]";
    AppendValue(out, element.value);
    out += "\n";
    for (const ManifestAttribute& attribute : element.attributes) {
        out += indent + std::string(kIndentStep, ' ') + attribute.name;
        AppendValue(out, attribute.value);
        out += "\n";
    }
    for (const ManifestElement& child : element.children) AppendElement(out, child, depth + 1);
}

const char kHeader[] =
    "# Extension definition source: \"pwext pack FOLDER\" turns this folder into\n"
    "# extension.xml and \"pwext unpack\" turns a definition back into a folder.\n"
    "#\n"
    "# [NAME] starts an element; the lines indented below it are its attributes\n"
    "# and child elements. A value \"= text\" is stored as written (entity\n"
    "# references such as &amp; stay as they are), \"< file\" stores the file\n"
    "# Base64-encoded and \"<< file\" stores the file's text unchanged. The writer\n"
    "# orders attributes by its hash buckets; within a bucket the one listed\n"
    "# first is written first.\n"
    "\n";

}  // namespace

ManifestElement ParseManifest(std::string_view text) {
    std::optional<ManifestElement> root;
    struct Open {
        int indent;
        ManifestElement* element;
    };
    std::vector<Open> open;
    std::map<int, std::set<std::string>> attributeNames;  // by the element's line

    int lineNumber = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(at, end - at);
        at = end + 1;
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);

        std::size_t indent = 0;
        while (indent < line.size() && (line[indent] == ' ' || line[indent] == '\t')) {
            if (line[indent] == '\t') Fail(lineNumber, "indent with blanks, not tabs");
            ++indent;
        }
        std::string_view content = line.substr(indent);
        if (content.empty() || content[0] == '#') continue;

        while (!open.empty() && open.back().indent >= static_cast<int>(indent)) open.pop_back();

        if (content[0] == '[') {
            std::size_t close = content.find(']');
            if (close == std::string_view::npos) Fail(lineNumber, "missing ']' after the element name");
            ManifestElement element;
            element.name = std::string(content.substr(1, close - 1));
            CheckName(lineNumber, element.name, true);
            element.value = ParseValue(lineNumber, content.substr(close + 1));
            element.line = lineNumber;
            if (open.size() >= static_cast<std::size_t>(kMaxNesting))
                Fail(lineNumber, "elements nested more than " + std::to_string(kMaxNesting) + " levels deep");
            ManifestElement* added;
            if (open.empty()) {
                if (root) Fail(lineNumber, "a second top-level element [" + element.name + "]; there is one root");
                root = std::move(element);
                added = &*root;
            } else {
                ManifestElement* parent = open.back().element;
                if (parent->value.source != ValueSource::kNone)
                    Fail(lineNumber, "[" + parent->name + "] has a value, so it cannot have child elements");
                parent->children.push_back(std::move(element));
                added = &parent->children.back();
            }
            open.push_back({static_cast<int>(indent), added});
            continue;
        }

        if (open.empty()) Fail(lineNumber, "an attribute outside any element: '" + std::string(content) + "'");
        std::size_t nameEnd = 0;
        while (nameEnd < content.size() && IsNameCharacter(content[nameEnd], false)) ++nameEnd;
        ManifestAttribute attribute;
        attribute.name = std::string(content.substr(0, nameEnd));
        CheckName(lineNumber, attribute.name, false);
        attribute.value = ParseValue(lineNumber, content.substr(nameEnd));
        if (attribute.value.source == ValueSource::kNone)
            Fail(lineNumber, "attribute '" + attribute.name + "' needs a value ('= text', '< file' or '<< file')");
        ManifestElement* owner = open.back().element;
        if (!owner->children.empty())
            Fail(lineNumber,
                 "attribute '" + attribute.name + "' must come before the child elements of [" + owner->name + "]");
        if (!attributeNames[owner->line].insert(attribute.name).second)
            Fail(lineNumber, "attribute '" + attribute.name + "' appears twice in [" + owner->name + "]");
        owner->attributes.push_back(std::move(attribute));
    }
    if (!root) throw DefinitionError("the manifest has no element");
    return std::move(*root);
}

std::string FormatManifest(const ManifestElement& root) {
    std::string out = kHeader;
    AppendElement(out, root, 0);
    return out;
}

}  // namespace definition
