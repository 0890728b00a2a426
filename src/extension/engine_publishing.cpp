// Publishing: payload files from the definition, the files of file
// properties and the pictures of image lists.
#include <utility>
#include <vector>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "html/property_walk.h"
#include "platform/file_system.h"
#include "xml/ascii.h"
#include "xml/base64.h"

namespace {

std::string_view WithoutTrailing(std::string_view text, char c) {
    while (!text.empty() && text.back() == c) text.remove_suffix(1);
    return text;
}

}  // namespace

int CExtensionEngine::CopyFiles(std::string_view outputFolder, std::string_view imageFolder) {
    const char separator = Separator();

    // An image folder directly inside the output folder names the page
    // context, lower case.
    std::string output = ascii::Lower(outputFolder);
    output.resize(WithoutTrailing(output, separator).size());
    std::string images = ascii::Lower(imageFolder);
    images.resize(WithoutTrailing(images, separator).size());
    std::size_t last = images.rfind(separator);
    if (last != std::string::npos && images.compare(0, last, output) == 0) pageContext_ = images.substr(last + 1);

    if (!services_.fileSystem) return 1;
    CFileSystem& files = *services_.fileSystem;

    const CXmlElement& root = *definition_.GetRoot();
    if (const CXmlElement* payload = FirstChildNamed(root, "FILES")) {
        std::string folder(WithoutTrailing(outputFolder, separator));
        folder += separator;
        ProcessFiles(*payload, folder);
    }

    ForEachProperty(root, [&](const CXmlElement& property) {
        int type = ReadPropertyRule(property).type;
        if (type == 3) {
            // The host passes the output folder with its separator; none
            // is added here.
            std::string value = CurrentValueOf(property);
            std::string destination(outputFolder);
            destination += FileNameAfterLast(value, separator);
            files.CopyFileOverwriting(value, destination);
        } else if (type == 6) {
            CXmlDocument list;
            list.Parse(CurrentValueOf(property));
            CXmlElement* listRoot = list.GetRoot();
            std::string folder(WithoutTrailing(imageFolder, '/'));
            folder += '/';
            for (std::size_t i = 0; i < listRoot->GetChildCount(); ++i) {
                CXmlElement* image = listRoot->GetChild(i);
                if (!ascii::EqualsNoCase(image->GetName(), "IMAGE")) continue;
                std::string source = list.GetChildValue(image, "FILENAME");
                if (source.empty()) continue;
                files.CopyFileOverwriting(source, folder + std::string(FileNameAfterLast(source, separator)));
            }
        }
    });
    return 1;
}

void CExtensionEngine::ProcessFiles(const CXmlElement& parent, std::string_view folder) {
    if (!services_.fileSystem) return;
    const char separator = Separator();

    // Depth first in document order, with an explicit stack so that a
    // definition nested arbitrarily deep cannot exhaust the call stack.
    struct Level {
        const CXmlElement* element;
        std::string folder;
        std::size_t next;
    };
    std::vector<Level> stack;
    stack.push_back({&parent, std::string(folder), 0});
    while (!stack.empty()) {
        Level& level = stack.back();
        if (level.next == level.element->GetChildCount()) {
            stack.pop_back();
            continue;
        }
        const CXmlElement& child = *level.element->GetChild(level.next++);
        std::string path = level.folder;
        if (ascii::EqualsNoCase(child.GetName(), "FOLDER")) {
            path += child.GetAttribute("name");
            path += separator;
            CreateDirectoryPath(path);
        } else if (ascii::EqualsNoCase(child.GetName(), "FILE")) {
            std::string content = Base64DecodeOrKeep(child.GetValue());
            if (child.GetAttribute("process_file") == "1") ReplaceVariables(content);
            services_.fileSystem->WriteWholeFile(path + child.GetAttribute("filename"), content);
        }
        stack.push_back({&child, std::move(path), 0});
    }
}

bool CExtensionEngine::CreateDirectoryPath(std::string_view path) {
    if (!services_.fileSystem) return false;
    const char separator = Separator();
    for (std::size_t k = path.find(separator, 1); k != std::string_view::npos; k = path.find(separator, k + 1))
        services_.fileSystem->CreateFolder(std::string(path.substr(0, k)));
    return services_.fileSystem->CreateFolder(std::string(path));
}
