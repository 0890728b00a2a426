#pragma once
// Small extension definitions for tests, built with the document writer the
// way real definitions are stored, and test doubles for the platform
// services.
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"
#include "platform/xslt_transformer.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace testdef {

struct Property {
    std::string variable, type, value;
    std::string colortype{};        // written only when not empty
    std::string gallerytemplate{};  // plain style sheet, stored as Base64
};

struct Category {
    std::string name;
    std::vector<Property> properties;
};

struct File {
    std::string name;
    std::string content;  // stored as Base64
    bool process = false;
};

class Definition {
public:
    Definition() {
        root_ = doc_.GetRoot();
        root_->SetName("EXTENSION");
    }

    Definition& Root(const std::string& attributes) {
        root_->SetAttributeText(attributes);
        root_->ParseAttributes(attributes);
        return *this;
    }
    Definition& Body(const std::string& html) { return Template("HTML_BODY", html); }
    Definition& Template(const std::string& element, const std::string& html) {
        doc_.AddChild(root_, element, Base64Encode(html, 76), std::nullopt);
        return *this;
    }

    Definition& Categories(const std::vector<Category>& categories) {
        CXmlElement* properties = doc_.AddChild(root_, "PROPERTIES", std::nullopt, std::nullopt);
        for (const Category& c : categories) {
            CXmlElement* category = doc_.AddChild(properties, "CATEGORY", std::nullopt, "name=\"" + c.name + "\"");
            for (const Property& p : c.properties) {
                std::string attributes = "name=\"" + p.variable + "\" type=\"" + p.type + "\" value=\"" + p.value +
                                         "\" variable=\"" + p.variable + "\"";
                if (!p.colortype.empty()) attributes += " colortype=\"" + p.colortype + "\"";
                if (!p.gallerytemplate.empty())
                    attributes += " gallerytemplate=\"" + Base64Encode(p.gallerytemplate) + "\"";
                doc_.AddChild(category, "PROPERTY", std::nullopt, attributes);
            }
        }
        return *this;
    }

    // FILES with the given files; folders are spelled "a/b/name" and nest.
    Definition& Files(const std::vector<File>& files) {
        CXmlElement* parent = doc_.AddChild(root_, "FILES", std::nullopt, std::nullopt);
        for (const File& f : files) {
            CXmlElement* at = parent;
            std::string rest = f.name;
            for (std::size_t slash; (slash = rest.find('/')) != std::string::npos; rest.erase(0, slash + 1))
                at = FolderIn(at, rest.substr(0, slash));
            doc_.AddChild(at, "FILE", Base64Encode(f.content, 76),
                          "filename=\"" + rest + "\" process_file=\"" + (f.process ? "1" : "0") + "\"");
        }
        return *this;
    }

    std::string Text() { return doc_.GetXml(); }

private:
    CXmlElement* FolderIn(CXmlElement* parent, const std::string& name) {
        for (std::size_t i = 0; i < parent->GetChildCount(); ++i) {
            CXmlElement* c = parent->GetChild(i);
            if (c->GetName() == "FOLDER" && c->GetAttribute("name") == name) return c;
        }
        return doc_.AddChild(parent, "FOLDER", std::nullopt, "name=\"" + name + "\"");
    }

    CXmlDocument doc_;
    CXmlElement* root_;
};

// Records every transformation and answers with a declaration followed by
// the style sheet and the list, so tests can see what went in.
class RecordingTransformer : public CXsltTransformer {
public:
    std::string Transform(std::string_view list, std::string_view stylesheet) override {
        calls.emplace_back(std::string(list), std::string(stylesheet));
        return "<?xml version=\"1.0\"?>[" + std::string(stylesheet) + "|" + std::string(list) + "]";
    }
    std::vector<std::pair<std::string, std::string>> calls;
};

// An in-memory file system with Windows or POSIX paths.
class MemoryFileSystem : public CFileSystem {
public:
    explicit MemoryFileSystem(PathStyle style = PathStyle::kWindows) : style_(style) {}

    PathStyle GetPathStyle() const override { return style_; }
    FileResult CreateFolder(const std::string& path) override {
        return folders.insert(path).second ? FileResult() : FileResult::Failed("exists");
    }
    FileResult CopyFileOverwriting(const std::string& from, const std::string& to) override {
        auto source = files.find(from);
        if (source == files.end()) return FileResult::Failed("cannot copy " + from);
        files[to] = source->second;
        return {};
    }
    FileResult WriteWholeFile(const std::string& path, std::string_view bytes) override {
        files[path] = std::string(bytes);
        return {};
    }

    std::map<std::string, std::string> files;
    std::set<std::string> folders;

private:
    PathStyle style_;
};

// A gallery style sheet that lists FILENAME and TITLE of every image.
inline const char* kListingStylesheet =
    "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">"
    "<xsl:output method=\"xml\"/>"
    "<xsl:template match=\"/\"><xsl:for-each select=\"GALLERY/IMAGE\">"
    "<img src=\"{FILENAME}\" alt=\"{TITLE}\"/></xsl:for-each></xsl:template>"
    "</xsl:stylesheet>";

}  // namespace testdef
