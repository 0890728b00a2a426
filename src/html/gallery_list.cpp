#include "html/gallery_list.h"

#include "html/published_names.h"
#include "xml/ascii.h"
#include "xml/xml_document.h"

std::string RewriteImageListForPage(CXmlDocument& list, std::string_view pageContext, const NameToUtf8Fn& toUtf8) {
    CXmlElement* root = list.GetRoot();
    root->SetName("GALLERY");

    std::string_view context = pageContext;
    while (!context.empty() && context.back() == '/') context.remove_suffix(1);
    const std::string folder = UrlPathOf(toUtf8(context)) + '/';

    for (std::size_t i = 0; i < root->GetChildCount(); ++i) {
        CXmlElement* image = root->GetChild(i);
        if (!ascii::EqualsNoCase(image->GetName(), "IMAGE")) continue;
        std::string fileName = list.GetChildValue(image, "FILENAME");
        std::string published = folder + UrlPathOf(toUtf8(PublishedFileName(fileName)));
        list.SetChildValue(image, "FILENAME", published, std::nullopt);
    }
    return list.GetXml();
}

std::string StripXmlDeclaration(std::string text) {
    std::size_t start = text.find("<?xml");
    if (start == std::string::npos) return text;
    std::size_t end = text.find("?>", start);
    if (end == std::string::npos) return text;
    return text.substr(end + 2);
}
