// pwext info: a readable summary of an extension definition (the built-in
// one, or --definition FILE): root attributes, the object's settings as an
// extension object reads them, categories and properties, payload files,
// the toolbar bitmap and the templates.
#include <cstdint>
#include <cstdio>

#include "command.h"
#include "definition/builtin_definition.h"
#include "definition/unpacker.h"  // AttributeNamesInOrder
#include "extension/definition_root.h"
#include "html/definition_model.h"
#include "definition_checks.h"
#include "pwext_io.h"
#include "xml/ascii.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace pwext {
namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string Padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

// The bytes a value decodes to, as the plug-in decodes payloads.
std::string Decoded(const CXmlElement& element) { return Base64DecodeOrKeep(element.GetValue()); }

std::string BitmapSummary(const std::string& bytes) {
    std::string out = std::to_string(bytes.size()) + " bytes";
    if (bytes.size() < 30 || bytes.compare(0, 2, "BM") != 0) return out + ", not a Windows bitmap";
    auto little = [&bytes](std::size_t at, int count) {
        std::uint32_t v = 0;
        for (int i = count - 1; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(bytes[at + i]);
        return v;
    };
    int width = static_cast<std::int32_t>(little(18, 4));
    int height = static_cast<std::int32_t>(little(22, 4));
    return out + ", " + std::to_string(width) + " x " + std::to_string(height < 0 ? -height : height) + ", " +
           std::to_string(little(28, 2)) + "-bit";
}

void DescribeFiles(CXmlElement& parent, const std::string& folder, std::string& out, int depth = 0) {
    if (depth >= definition::kMaxNesting) throw Failure{"info: folders nested too deep"};
    for (std::size_t i = 0; i < parent.GetChildCount(); ++i) {
        CXmlElement& child = *parent.GetChild(i);
        if (ascii::EqualsNoCase(child.GetName(), definition::kFolder)) {
            std::string path = folder + child.GetAttribute("name") + "/";
            out += "  " + path + "\n";
            DescribeFiles(child, path, out, depth + 1);
        } else if (ascii::EqualsNoCase(child.GetName(), definition::kFile)) {
            std::string size = std::to_string(Decoded(child).size());
            out += "  " + Padded(folder + child.GetAttribute("filename"), 20) + " " +
                   std::string(size.size() < 6 ? 6 - size.size() : 0, ' ') + size + " bytes" +
                   (child.GetAttribute("process_file") == "1" ? "  (variables replaced)" : "") + "\n";
        }
    }
}

std::string Summary(CXmlDocument& document) {
    CXmlElement& root = *document.GetRoot();
    std::string out = "root attributes:\n";
    for (const std::string& name : definition::AttributeNamesInOrder(root.GetAttributeText()))
        out += "  " + Padded(name, 14) + Quoted(root.GetAttribute(name)) + "\n";

    DefinitionRootAttributes object = ReadDefinitionRootAttributes(root);
    out += "object:\n";
    out += "  minimum size  " + std::to_string(object.minWidth) + " x " + std::to_string(object.minHeight) + "\n";
    out += std::string("  use DIV       ") + (object.useDiv ? "yes" : "no") + "\n";
    out += "  render method " + std::to_string(object.renderMethod) + " (" +
           RenderMethodName(static_cast<RenderMethod>(object.renderMethod)) + ")\n";

    out += "properties:\n";
    int count = 0;
    ForEachCategory(root, [&](const CXmlElement& category) {
        out += "  [" + category.GetAttribute("name") + "]\n";
        ForEachPropertyIn(category, [&](const CXmlElement& property) {
            ++count;
            PropertyType type = ReadPropertyRule(property).type;
            out += "    " + Padded(property.GetAttribute("name"), 18) + "type " +
                   std::to_string(static_cast<int>(type)) + " (" + PropertyTypeName(type) + "), variable " +
                   CXmlDocument::Unescape(property.GetAttribute("variable")) + ", default " +
                   Quoted(CXmlDocument::Unescape(property.GetAttribute("value"))) + "\n";
            out += "      " + CXmlDocument::Unescape(property.GetAttribute("description")) + "\n";
            if (type == PropertyType::kColor) out += "      colour type " + property.GetAttribute("colortype") + "\n";
            if (type == PropertyType::kChoice)
                out += "      choices " + CXmlDocument::Unescape(property.GetAttribute("options")) + "\n";
            std::string gallery = property.GetAttribute("gallerytemplate");
            if (type == PropertyType::kImageList || !gallery.empty())
                out += "      gallery template " + std::to_string(Base64DecodeOrKeep(gallery).size()) + " bytes\n";
        });
    });
    if (count == 0) out += "  none\n";

    out += "files:\n";
    std::string files;
    if (CXmlElement* element = root.FindChild(definition::kFiles)) DescribeFiles(*element, "", files);
    out += files.empty() ? "  none\n" : files;

    CXmlElement* bitmap = root.FindChild(definition::kBitmap);
    out +=
        "toolbar bitmap: " + (bitmap ? BitmapSummary(Decoded(*bitmap)) : std::string("none (resource 31550)")) + "\n";
    CXmlElement* image = root.FindChild(definition::kImage);
    out += "preview image: " + (image ? std::to_string(Decoded(*image).size()) + " bytes" : std::string("none")) + "\n";
    out += "templates:\n";
    for (std::string_view name : {definition::kHtmlHead, definition::kHtmlBody, definition::kHtmlTail}) {
        CXmlElement* element = root.FindChild(name);
        out += "  " + Padded(std::string(name), 10) +
               (element ? std::to_string(Decoded(*element).size()) + " bytes" : std::string("missing")) + "\n";
    }
    return out;
}

int RunInfo(Args args) {
    std::string file;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--definition" && i + 1 < args.size() && file.empty()) {
            file = args[++i];
        } else {
            throw UsageError{"usage: pwext info [--definition FILE]"};
        }
    }
    std::string text = file.empty() ? std::string(BuiltinDefinition()) : ReadInput(file);
    std::string label = file.empty() ? std::string("built-in definition") : file;
    if (ascii::Trim(text).empty()) throw Failure{"info: " + label + " is empty"};

    CXmlDocument document;
    document.Parse(text);
    RequireWholeDocument(document, "info: " + label);
    std::string rootName(ascii::Trim(document.GetRoot()->GetName()));
    if (rootName != "EXTENSION")
        throw Failure{"info: " + label + " is not an extension definition (" +
                      (rootName.empty() ? std::string("no root element") : "its root element is '" + rootName + "'") +
                      ", not EXTENSION)"};
    WriteOutput(label + ": " + std::to_string(text.size()) + " bytes\n" + Summary(document));
    RefuseDefinitionErrors(text, "info", label);
    return 0;
}

}  // namespace

PWEXT_COMMAND(info, "info", "[--definition FILE]: summary of a definition (default: the built-in one)", RunInfo);

}  // namespace pwext
