// The string rules of HTML generation that touch no file system.
#include <gtest/gtest.h>

#include "html/color_type.h"
#include "html/gallery_list.h"
#include "html/image_list.h"
#include "html/published_names.h"
#include "html/site_structure.h"
#include "html/stylesheet_safety.h"
#include "html/text_replace.h"
#include "xml/xml_document.h"

TEST(ReplaceAll, ReplacesLeftToRightWithoutOverlapOrRescan) {
    std::string text = "$a$$a$ and $a$";
    EXPECT_EQ(ReplaceAll(text, "$a$", "x$a$"), 3u);
    EXPECT_EQ(text, "x$a$x$a$ and x$a$");

    std::string overlapping = "aaaa";
    ReplaceAll(overlapping, "aa", "b");
    EXPECT_EQ(overlapping, "bb");
}

TEST(ReplaceAll, WithinALimitLeavesTheTextAsItIsWhenItWouldGrowPast) {
    std::string text = "$a$ $a$";
    EXPECT_FALSE(ReplaceAllWithin(text, "$a$", std::string(10, 'x'), 20));
    EXPECT_EQ(text, "$a$ $a$");
    EXPECT_TRUE(ReplaceAllWithin(text, "$a$", std::string(9, 'x'), 20));
    EXPECT_EQ(text.size(), 19u);
    EXPECT_TRUE(ReplaceAllWithin(text, "x", "", 1));  // shrinking always fits
}

TEST(ImageList, WritesChildrenInOrderAndOnlyWhenSetAndReadsNothingFromNoXml) {
    std::string text = WriteImageList({{"C:\\p\\a.jpg", "Tea & cake", "", "http://x/", "_blank"}, {"b.png"}});
    CXmlDocument list;
    list.Parse(text);
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n", 0), 0u);
    ASSERT_EQ(list.GetRoot()->GetChildCount(), 2u);
    CXmlElement* first = list.GetRoot()->GetChild(0);
    ASSERT_EQ(first->GetChildCount(), 4u);
    EXPECT_EQ(first->GetChild(0)->GetName(), "FILENAME");
    EXPECT_EQ(first->GetChild(1)->GetName(), "URL");
    EXPECT_EQ(first->GetChild(2)->GetName(), "TARGET");
    EXPECT_EQ(first->GetChild(3)->GetName(), "TITLE");
    EXPECT_EQ(first->GetChild(3)->GetValue(), "Tea & cake");
    EXPECT_EQ(list.GetRoot()->GetChild(1)->GetChildCount(), 1u);
    EXPECT_EQ(WriteImageList({}), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<GALLERY>\r\n</GALLERY>\r\n");
    EXPECT_TRUE(ReadImageList("these are not the images you are looking for").empty());
}

std::string AsIs(std::string_view name) { return std::string(name); }

TEST(GalleryList, PublishedNamesAreUrlsThatStayInTheImageFolder) {
    // The name is what follows the last '\\' or '/'; "." and ".." are none.
    // What a URL cannot carry as it is, is percent-encoded from UTF-8.
    std::string list = WriteImageList({{"C:\\x\\y\\../../pic.jpg"},
                                       {"/home/u/caf\xc3\xa9 #1?.jpg"},
                                       {"d:\\100%+a&b=c.png"},
                                       {"C:\\pics\\.."},
                                       {"C:\\\xe9t\xe9.jpg"}});
    auto latin1 = [](std::string_view name) {
        std::string utf8;
        for (unsigned char c : name) {
            if (c < 0x80)
                utf8 += static_cast<char>(c);
            else
                utf8 += {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
        }
        return utf8;
    };
    CXmlDocument out;
    out.Parse(RewriteImageListForPage(list, "my pics", latin1).value());
    auto name = [&out](std::size_t i) { return out.GetChildValue(out.GetRoot()->GetChild(i), "FILENAME"); };
    EXPECT_EQ(name(0), "my%20pics/pic.jpg");
    EXPECT_EQ(name(1), "my%20pics/caf%C3%83%C2%A9%20%231%3F.jpg");
    EXPECT_EQ(name(2), "my%20pics/100%25%2Ba%26b%3Dc.png");
    EXPECT_EQ(name(3), "my%20pics/");
    EXPECT_EQ(name(4), "my%20pics/%C3%A9t%C3%A9.jpg");

    EXPECT_EQ(PublishedFileName("a/b\\c.jpg"), "c.jpg");
    EXPECT_EQ(PublishedFileName("."), "");
    EXPECT_EQ(PublishedFileName("dir/"), "");
    EXPECT_EQ(PublishedFileName(std::string_view("a/..\0x", 6)), "");
    EXPECT_EQ(PublishedFileName(std::string_view("C:\\secret\0/x.png", 16)), "");
    EXPECT_TRUE(StaysInsideFolder("css/x..y/a.css"));
    for (const char* name : {"../x", "a/../../x", "a\\..\\..", "/etc/x", "\\x", "C:x", "c:\\x"})
        EXPECT_FALSE(StaysInsideFolder(name)) << name;
    EXPECT_FALSE(StaysInsideFolder(std::string_view("..\0/x", 5)));
}

TEST(GalleryList, NamesEndAtABlankAndElementsInsideAreNoPart) {
    // As the style sheet's parser reads them: the Files dialog, the pictures
    // published and the page agree on every picture.
    const char* odd = "<LIST>\n<IMAGE\n><FILENAME\t>C:\\a.jpg</FILENAME></IMAGE>"
                      "<IMAGE><FILENAME><B>x</B>b.jpg</FILENAME><TITLE\r\n>t</TITLE></IMAGE></LIST>";
    std::vector<ImageListEntry> rows = ReadImageList(odd);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fileName, "C:\\a.jpg");
    EXPECT_EQ(rows[1].fileName, "b.jpg");
    EXPECT_EQ(rows[1].title, "t");
    std::string text = RewriteImageListForPage(odd, "p", AsIs).value();
    EXPECT_EQ(text.find("<B>"), std::string::npos);
    CXmlDocument out;
    out.Parse(text);
    EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(0), "FILENAME"), "p/a.jpg");
    EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(1), "FILENAME"), "p/b.jpg");
}

TEST(StylesheetSafety, RefusesWhatCouldReadFilesOrReachTheNetwork) {
    const std::string head = "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">";
    for (const char* body :
         {"<xsl:template match='/'><img src='{FILENAME}' alt='a documented (sic) picture'/></xsl:template>",
          "<xsl:template match='/'><xsl:for-each select=\"GALLERY/IMAGE\"/></xsl:template>"})
        EXPECT_FALSE(StylesheetReachesOutside(head + body + "</xsl:stylesheet>")) << body;
    for (const char* body :
         {"<xsl:value-of select=\"document('file:///etc/passwd')\"/>",
          "<xsl:copy-of select=\"DOCUMENT\n ('http://127.0.0.1/')\"/>",
          "<xsl:value-of select=\"docu&#109;ent&#x28;'x')\"/>", "<xsl:import href='other.xsl'/>",
          "<x:include href='o.xsl'/>", "<import xmlns='http://www.w3.org/1999/XSL/Transform' href='o.xsl'/>",
          "<exsl:document href='out.html'/>", "<ms:script xmlns:ms='urn:schemas-microsoft-com:xslt'>x</ms:script>"})
        EXPECT_TRUE(StylesheetReachesOutside(head + body + "</xsl:stylesheet>")) << body;
    EXPECT_TRUE(StylesheetReachesOutside("<!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>" + head));
    EXPECT_TRUE(DeclaresDocumentType("<?xml?><!doctype GALLERY SYSTEM 'http://x/'><GALLERY/>"));
    EXPECT_FALSE(DeclaresDocumentType("<GALLERY><IMAGE><TITLE>&lt;!DOCTYPE</TITLE></IMAGE></GALLERY>"));
}
