// Image lists: any list text is rewritten for a page without harm, and a
// list the Files dialog writes reads back with one IMAGE per picture.
#include "html/gallery_list.h"
#include "html/image_list.h"
#include "html/published_names.h"
#include "fuzz_services.h"
#include "xml/xml_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    std::string context = in.ConsumeRandomLengthString(64);
    CXmlDocument list;
    list.Parse(in.ConsumeRandomLengthString(8192));
    RewriteImageListForPage(list, context, [](std::string_view name) { return std::string(name); });

    std::vector<ImageListEntry> entries;
    while (in.remaining_bytes() > 0 && entries.size() < 16) {
        ImageListEntry e;
        e.fileName = in.ConsumeRandomLengthString(256);
        e.title = in.ConsumeRandomLengthString(64);
        e.link = in.ConsumeRandomLengthString(64);
        PublishedFileName(e.fileName);
        entries.push_back(e);
    }
    CXmlDocument written;
    written.Parse(WriteImageList(entries));
    std::size_t images = 0;
    for (std::size_t i = 0; i < written.GetRoot()->GetChildCount(); ++i)
        images += written.GetRoot()->GetChild(i)->GetName() == "IMAGE";
    Require(images == entries.size());
    return 0;
}
