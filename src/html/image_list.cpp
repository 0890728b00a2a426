#include "html/image_list.h"

#include "xml/xml_document.h"

std::string WriteImageList(const std::vector<ImageListEntry>& images) {
    CXmlDocument list;
    CXmlElement* root = list.GetRoot();
    root->SetName("GALLERY");
    auto addIfSet = [&list](CXmlElement* image, const char* name, const std::string& text) {
        if (!text.empty()) list.AddChild(image, name, text, std::nullopt);
    };
    for (const ImageListEntry& entry : images) {
        CXmlElement* image = list.AddChild(root, "IMAGE", std::nullopt, std::nullopt);
        addIfSet(image, "FILENAME", entry.fileName);
        addIfSet(image, "URL", entry.link);
        addIfSet(image, "TARGET", entry.target);
        addIfSet(image, "TITLE", entry.title);
        addIfSet(image, "DESCRIPTION", entry.description);
    }
    return list.GetXml();
}
