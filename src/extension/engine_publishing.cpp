// Publishing: payload files from the definition, the files of file
// properties and the pictures of image lists.
//
// Every name that comes from a definition or an image list is kept inside
// the folder it is published into: a picture is published under the text
// after the last '\' or '/' of its path, and FILE and FOLDER names that are
// absolute or climb out with ".." are left out (published_names.h).
#include <utility>
#include <vector>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "html/published_names.h"
#include "html/definition_model.h"
#include "platform/file_system.h"
#include "xml/ascii.h"
#include "xml/base64.h"

namespace {

std::string_view WithoutTrailing(std::string_view text, char c) {
    while (!text.empty() && text.back() == c) text.remove_suffix(1);
    return text;
}

void AddCopy(PublishPlan& plan, std::string source, std::string target) {
    PublishStep step;
    step.action = PublishStep::Action::kCopy;
    step.source = std::move(source);
    step.target = std::move(target);
    plan.steps.push_back(std::move(step));
}

}  // namespace

int CExtensionEngine::CopyFiles(std::string_view outputFolder, std::string_view imageFolder) {
    RunPlan(PlanCopyFiles(outputFolder, imageFolder));
    return 1;
}

PublishPlan CExtensionEngine::PlanCopyFiles(std::string_view outputFolder, std::string_view imageFolder) {
    const char separator = Separator();
    const bool windows = separator == '\\';

    // An image folder directly inside the output folder names the page
    // context: lower case on Windows, whose file names ignore case, as it
    // is on POSIX systems, whose names do not.
    std::string output(outputFolder), images(imageFolder);
    if (windows) {
        output = ascii::Lower(output);
        images = ascii::Lower(images);
    }
    output.resize(WithoutTrailing(output, separator).size());
    images.resize(WithoutTrailing(images, separator).size());
    std::size_t last = images.rfind(separator);
    if (last != std::string::npos && images.compare(0, last, output) == 0) pageContext_ = images.substr(last + 1);

    PublishPlan plan;
    const CXmlElement& root = *definition_.GetRoot();
    if (const CXmlElement* payload = FirstChildNamed(root, definition::kFiles)) {
        std::string folder(WithoutTrailing(outputFolder, separator));
        folder += separator;
        PlanPayload(*payload, folder, plan);
    }

    std::string pictureFolder(WithoutTrailing(imageFolder, '/'));
    pictureFolder += '/';
    ForEachProperty(root, [&](const CXmlElement& property) {
        PropertyRule rule = ReadPropertyRule(property);
        if (rule.type == PropertyType::kFile) {
            // The host passes the output folder with its separator; none
            // is added here.
            std::string value = CurrentValueOf(property);
            std::string_view name = PublishedFileName(value);
            if (name.empty()) {
                if (!value.empty())
                    plan.leftOut.push_back("the file '" + value + "' of " + rule.variable + " names no file");
                return;
            }
            AddCopy(plan, value, std::string(outputFolder) + std::string(name));
        } else if (rule.type == PropertyType::kImageList) {
            CXmlDocument list;
            ParseImageList(list, CurrentValueOf(property));
            if (list.IsTruncated()) {
                plan.leftOut.push_back("the image list of " + rule.variable + " nests deeper than " +
                                       std::to_string(CXmlDocument::kMaxDepth) + " levels");
                return;
            }
            CXmlElement* listRoot = list.GetRoot();
            for (std::size_t i = 0; i < listRoot->GetChildCount(); ++i) {
                CXmlElement* image = listRoot->GetChild(i);
                if (!ascii::EqualsNoCase(image->GetName(), definition::kImage)) continue;
                std::string source = list.GetChildValue(image, "FILENAME");
                if (source.empty()) continue;
                std::string_view name = PublishedFileName(source);
                if (name.empty()) {
                    plan.leftOut.push_back("the picture '" + source + "' of " + rule.variable + " names no file");
                    continue;
                }
                AddCopy(plan, source, pictureFolder + std::string(name));
            }
        }
    });
    return plan;
}

void CExtensionEngine::ProcessFiles(const CXmlElement& parent, std::string_view folder) {
    PublishPlan plan;
    PlanPayload(parent, folder, plan);
    RunPlan(plan);
}

void CExtensionEngine::PlanPayload(const CXmlElement& parent, std::string_view folder, PublishPlan& plan) {
    const char separator = Separator();

    // Depth first in document order, with an explicit stack so that a
    // definition nested arbitrarily deep cannot exhaust the call stack. A
    // FOLDER that leaves its folder is left out with everything in it.
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
        if (ascii::EqualsNoCase(child.GetName(), definition::kFolder)) {
            const std::string& name = child.GetAttribute("name");
            if (!StaysInsideFolder(name)) {
                plan.leftOut.push_back("the definition's FOLDER '" + name + "' leaves the output folder");
                continue;
            }
            path += name;
            path += separator;
            PublishStep step;
            step.action = PublishStep::Action::kMakeFolders;
            step.target = path;
            plan.steps.push_back(std::move(step));
        } else if (ascii::EqualsNoCase(child.GetName(), definition::kFile)) {
            const std::string& name = child.GetAttribute("filename");
            if (!StaysInsideFolder(name)) {
                plan.leftOut.push_back("the definition's FILE '" + name + "' leaves the output folder");
                continue;
            }
            PublishStep step;
            step.action = PublishStep::Action::kWrite;
            step.target = path + name;
            step.content = Base64DecodeOrKeep(child.GetValue());
            if (child.GetAttribute("process_file") == "1") ReplaceVariables(step.content);
            plan.steps.push_back(std::move(step));
        }
        stack.push_back({&child, std::move(path), 0});
    }
}

void CExtensionEngine::RunPlan(const PublishPlan& plan) {
    if (!services_.fileSystem) return;
    CFileSystem& files = *services_.fileSystem;
    for (const PublishStep& step : plan.steps) {
        switch (step.action) {
            case PublishStep::Action::kMakeFolders: CreateDirectoryPath(step.target); break;
            case PublishStep::Action::kWrite: files.WriteWholeFile(step.target, step.content); break;
            case PublishStep::Action::kCopy: files.CopyFileOverwriting(step.source, step.target); break;
        }
    }
}

bool CExtensionEngine::CreateDirectoryPath(std::string_view path) {
    if (!services_.fileSystem) return false;
    const char separator = Separator();
    for (std::size_t k = path.find(separator, 1); k != std::string_view::npos; k = path.find(separator, k + 1))
        services_.fileSystem->CreateFolder(std::string(path.substr(0, k)));
    return services_.fileSystem->CreateFolder(std::string(path)).ok();
}
