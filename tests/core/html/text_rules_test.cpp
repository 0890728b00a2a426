// The string rules of HTML generation that touch no file system.
#include <gtest/gtest.h>

#include "html/color_type.h"
#include "html/gallery_list.h"
#include "html/image_list.h"
#include "html/site_structure.h"
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

TEST(ReplaceAll, IsCaseSensitiveAndIgnoresEmptyVariables) {
    std::string text = "$Images$ $images$";
    ReplaceAll(text, "$images$", "X");
    EXPECT_EQ(text, "$Images$ X");
    EXPECT_EQ(ReplaceAll(text, "", "Y"), 0u);
    EXPECT_FALSE(ContainsVariable(text, ""));
}

TEST(ColorType, ChoosesTheWrittenForm) {
    EXPECT_EQ(ApplyColorType("#FF8000", ""), "#FF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "0"), "#FF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "1"), "0xFF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "2"), "FF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "3"), "#FF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", " 1 "), "0xFF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "\t2\r\n"), "FF8000");
    EXPECT_EQ(ApplyColorType("#FF8000", "blue"), "#FF8000");
    EXPECT_EQ(ApplyColorType("#A#B", "1"), "0xA0xB");
}

TEST(DeclarationStrip, DropsEverythingThroughTheDeclarationEnd) {
    EXPECT_EQ(StripXmlDeclaration("<?xml version=\"1.0\"?>\n<img/>"), "\n<img/>");
    EXPECT_EQ(StripXmlDeclaration("lead<?xml?>rest"), "rest");
    EXPECT_EQ(StripXmlDeclaration("<img/>"), "<img/>");
    EXPECT_EQ(StripXmlDeclaration("<?xml version but no end"), "<?xml version but no end");
}

TEST(ImageList, WritesChildrenInOrderAndOnlyWhenSet) {
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
}

TEST(GalleryList, PrefixesFileNamesWithThePageContext) {
    std::string list = WriteImageList({{"C:\\Pictures\\a.jpg", "A"}, {"plain.png"}});
    for (const char* context : {"pics", "pics/", "pics///"}) {
        CXmlDocument out;
        out.Parse(RewriteImageListForPage(list, context, '\\'));
        EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(0), "FILENAME"), "pics/a.jpg") << context;
        EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(1), "FILENAME"), "pics/plain.png") << context;
        EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(0), "TITLE"), "A");
    }
    CXmlDocument bare;
    bare.Parse(RewriteImageListForPage(list, "", '\\'));
    EXPECT_EQ(bare.GetChildValue(bare.GetRoot()->GetChild(0), "FILENAME"), "/a.jpg");
}

TEST(GalleryList, RenamesTheRootAndAddsMissingFileNames) {
    std::string text = RewriteImageListForPage("<LIST><IMAGE><TITLE>t</TITLE></IMAGE><OTHER/></LIST>", "p", '\\');
    CXmlDocument out;
    out.Parse(text);
    EXPECT_NE(text.find("<GALLERY>"), std::string::npos);
    EXPECT_EQ(out.GetChildValue(out.GetRoot()->GetChild(0), "FILENAME"), "p/");
    EXPECT_EQ(out.GetRoot()->GetChild(1)->GetChildCount(), 0u);
}

TEST(SiteSearch, DescendsPreOrderIgnoringCase) {
    CXmlDocument site;
    site.Parse(
        "<site><folder name=\"Docs\"><page name=\"Intro\" url=\"docs/intro.html\"/>"
        "<folder name=\"deep\"><page name=\"here\" current_page=\"TRUE\"/></folder></folder>"
        "<page name=\"intro\" url=\"intro.html\"/></site>");
    CXmlElement* current = FindCurrentPageBelow(*site.GetRoot());
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(current->GetAttribute("name"), "here");
    CXmlElement* intro = FindPageByNameBelow(*site.GetRoot(), "INTRO");
    ASSERT_NE(intro, nullptr);
    EXPECT_EQ(intro->GetAttribute("url"), "docs/intro.html");
    EXPECT_EQ(FindPageByNameBelow(*site.GetRoot(), "missing"), nullptr);
    // The start element itself is not a candidate.
    EXPECT_EQ(FindPageByNameBelow(*site.GetRoot()->GetChild(0), "Docs"), nullptr);
}
