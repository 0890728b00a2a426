// Image lists: any list text is rewritten for a page without harm, in one
// pass or through the tree alike, and a list the Files dialog writes is the
// text of its tree and reads back with one IMAGE per picture.
#include "html/gallery_list.h"
#include "html/image_list.h"
#include "html/published_names.h"
#include "fuzz_services.h"

#include <utility>

#include "xml/ascii.h"
#include "xml/xml_document.h"

namespace {

std::string AsIs(std::string_view name) { return std::string(name); }

// The list's text rewritten for a page as its tree is; nothing when the
// tree is cut short. Returns the tree's text.
std::string RequireSameRewrite(std::string_view text, const std::string& context) {
    CXmlDocument list;
    const bool whole = ParseImageList(list, text);
    std::string expected = RewriteImageListForPage(list, context, AsIs);
    std::optional<std::string> rewritten = RewriteImageListForPage(text, context, AsIs);
    Require(rewritten ? whole && *rewritten == expected : !whole);
    return expected;
}

std::size_t CountImages(CXmlDocument& list) {
    std::size_t images = 0;
    for (std::size_t i = 0; i < list.GetRoot()->GetChildCount(); ++i)
        images += ascii::EqualsNoCase(list.GetRoot()->GetChild(i)->GetName(), "IMAGE");
    return images;
}

// The list as the tree of its elements writes it: WriteImageList must give
// the same text.
std::string WrittenAsATree(const std::vector<ImageListEntry>& images) {
    CXmlDocument list;
    CXmlElement* root = list.GetRoot();
    root->SetName("GALLERY");
    for (const ImageListEntry& entry : images) {
        CXmlElement* image = list.AddChild(root, "IMAGE", std::nullopt, std::nullopt);
        for (const auto& [name, text] : {std::pair<const char*, const std::string&>{"FILENAME", entry.fileName},
                                         {"URL", entry.link}, {"TARGET", entry.target}, {"TITLE", entry.title},
                                         {"DESCRIPTION", entry.description}})
            if (!text.empty()) list.AddChild(image, name, text, std::nullopt);
    }
    return list.GetXml();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    std::string context = in.ConsumeRandomLengthString(64);
    std::string text = in.ConsumeRandomLengthString(8192);
    // The page shows a picture for every row of the Files dialog.
    CXmlDocument page;
    page.Parse(RequireSameRewrite(text, context));
    Require(CountImages(page) == ReadImageList(text).size());

    std::vector<ImageListEntry> entries;
    while (in.remaining_bytes() > 0 && entries.size() < 16) {
        ImageListEntry e;
        e.fileName = in.ConsumeRandomLengthString(256);
        e.title = in.ConsumeRandomLengthString(64);
        e.link = in.ConsumeRandomLengthString(64);
        e.description = in.ConsumeRandomLengthString(64);
        PublishedFileName(e.fileName);
        entries.push_back(e);
    }
    const std::string list = WriteImageList(entries);
    Require(list == WrittenAsATree(entries));
    CXmlDocument written;
    written.Parse(RequireSameRewrite(list, context));
    Require(CountImages(written) == entries.size());
    return 0;
}
