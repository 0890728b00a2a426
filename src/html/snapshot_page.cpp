#include "html/snapshot_page.h"

std::string SnapshotPageText(std::string_view bodyHtml) {
    static constexpr std::string_view kBefore =
        "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n"
        "<html>\r\n"
        "<head>\r\n"
        "<title></title>\r\n"
        "</head>\r\n"
        "<body bgcolor=\"transparent\">\r\n"
        "<span>\r\n";
    static constexpr std::string_view kAfter =
        "</span>\r\n"
        "</body>\r\n"
        "</html>\r\n";
    std::string page;
    page.reserve(kBefore.size() + bodyHtml.size() + kAfter.size());
    page.append(kBefore).append(bodyHtml).append(kAfter);
    return page;
}
