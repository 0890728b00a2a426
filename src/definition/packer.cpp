#include "definition/packer.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "xml/base64.h"
#include "xml/xml_document.h"

namespace definition {
namespace {

std::string Where(const ManifestElement& element) {
    return "manifest line " + std::to_string(element.line) + ", [" + element.name + "]";
}

// The reader ends a tag at any '>' and starts one at any '<'; attribute
// values also end at a double quote. Such characters must be written as
// entity references.
void CheckStorable(std::string_view text, bool attribute, const std::string& what) {
    for (char c : text) {
        if (c == '<' || c == '>' || (attribute && c == '"'))
            throw DefinitionError(what + " contains '" + c + "'; write it as " +
                                  (c == '<'   ? "&lt;"
                                   : c == '>' ? "&gt;"
                                              : "&quot;"));
    }
}

std::string ResolveValue(const ManifestValue& value, const FileReader& readFile) {
    switch (value.source) {
        case ValueSource::kNone: return std::string();
        case ValueSource::kText: return value.text;
        case ValueSource::kBase64File: return EncodeBase64Lines(readFile(value.text));
        case ValueSource::kTextFile: return readFile(value.text);
    }
    return std::string();
}

void Fill(CXmlElement& target, const ManifestElement& source, const FileReader& readFile) {
    target.SetName(source.name);
    std::string value = ResolveValue(source.value, readFile);
    if (source.value.source != ValueSource::kNone && value.empty())
        throw DefinitionError(Where(source) + ": the value is empty; leave it out instead");
    CheckStorable(value, false, Where(source) + "'s value");
    target.SetRawValue(value);

    for (auto it = source.attributes.rbegin(); it != source.attributes.rend(); ++it) {
        std::string text = ResolveValue(it->value, readFile);
        CheckStorable(text, true, Where(source) + " attribute '" + it->name + "'");
        target.GetAttributes().Set(it->name, text);
    }
    for (const ManifestElement& child : source.children) {
        CXmlElement* added = target.AppendChild(std::make_unique<CXmlElement>());
        Fill(*added, child, readFile);
    }
}

}  // namespace

std::string EncodeBase64Lines(std::string_view bytes) { return Base64Encode(bytes, 76) + "\r\n"; }

std::string PackManifest(const ManifestElement& root, const FileReader& readFile) {
    if (root.name != "EXTENSION")
        throw DefinitionError("the top-level element is [" + root.name + "]; a definition's root is [EXTENSION]");
    CXmlDocument document;
    Fill(*document.GetRoot(), root, readFile);
    return document.GetXml();
}

std::string PackFolder(const std::string& folder) {
    namespace fs = std::filesystem;
    const fs::path base(folder);
    auto read = [&base](const std::string& path) {
        fs::path full = base / fs::path(path);
        std::error_code error;
        if (fs::is_directory(full, error)) throw DefinitionError("'" + full.string() + "' is a folder, not a file");
        std::ifstream in(full, std::ios::binary);
        if (!in) throw DefinitionError("cannot read '" + full.string() + "'");
        std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (in.bad()) throw DefinitionError("cannot read '" + full.string() + "'");
        return data;
    };
    std::string manifest;
    try {
        manifest = read(kManifestName);
    } catch (const DefinitionError&) {
        throw DefinitionError("'" + folder + "' has no readable " + kManifestName);
    }
    return PackManifest(ParseManifest(manifest), read);
}

}  // namespace definition
