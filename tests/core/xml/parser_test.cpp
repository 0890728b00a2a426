#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

TEST(ClassifyTag, KindsAndInnerText) {
    std::string inner;
    EXPECT_EQ(CXmlDocument::ClassifyTag("<A x=\"1\">", inner), 0);
    EXPECT_EQ(inner, "A x=\"1\"");
    EXPECT_EQ(CXmlDocument::ClassifyTag("</A>", inner), 1);
    EXPECT_EQ(inner, "A");
    EXPECT_EQ(CXmlDocument::ClassifyTag("<B y=\"2\"/>", inner), 2);
    EXPECT_EQ(inner, "B y=\"2\"");
    EXPECT_EQ(CXmlDocument::ClassifyTag("<B />", inner), 2);
    EXPECT_EQ(inner, "B ");
    EXPECT_EQ(CXmlDocument::ClassifyTag("<?xml version=\"1.0\"?>", inner), -1);
    EXPECT_EQ(CXmlDocument::ClassifyTag("<!-- c -->", inner), -1);
    EXPECT_EQ(CXmlDocument::ClassifyTag("", inner), -1);
    EXPECT_EQ(inner, "");
    // "</>" is an end tag that the closing "/>" turns into an empty element.
    EXPECT_EQ(CXmlDocument::ClassifyTag("</>", inner), 2);
    EXPECT_EQ(inner, "");
}

TEST(Parser, ElementsValuesAndEmptyTags) {
    CXmlDocument doc;
    EXPECT_EQ(doc.Parse("<R><A>hello</A><B/></R>"), 1);
    CXmlElement* root = doc.GetRoot();
    EXPECT_EQ(root->GetName(), "R");
    EXPECT_EQ(root->GetRawValue(), "");
    ASSERT_EQ(root->GetChildCount(), 2u);
    EXPECT_EQ(root->GetChild(0)->GetName(), "A");
    EXPECT_EQ(root->GetChild(0)->GetRawValue(), "hello");
    EXPECT_EQ(root->GetChild(0)->GetParent(), root);
    EXPECT_EQ(root->GetChild(1)->GetName(), "B");
    EXPECT_EQ(root->GetChild(1)->GetChildCount(), 0u);
}

TEST(Parser, LastContentBeforeATagWins) {
    CXmlDocument doc;
    doc.Parse("<R>one<A/>two</R>");
    EXPECT_EQ(doc.GetRoot()->GetRawValue(), "two");
    doc.Parse("<R>  padded \r\n</R>trailing text is never stored");
    EXPECT_EQ(doc.GetRoot()->GetRawValue(), "padded");
}

TEST(Parser, DeclarationLineBreakEndsUpInTheRootName) {
    CXmlDocument doc;
    doc.Parse("<?xml version=\"1.0\"?>\r\n<R a=\"1\"><C/></R>");
    EXPECT_EQ(doc.GetRoot()->GetName(), "\r\nR");
    EXPECT_EQ(doc.GetRoot()->GetAttribute("a"), "1");
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetName(), "C");
}

TEST(Parser, GreaterThanAlwaysClosesATag) {
    CXmlDocument doc;
    doc.Parse("<R a=\"x>y\"><B/></R>");
    // The first '>' ends the root tag, so the attribute value is cut, and the
    // rest up to the next '<' is content.
    EXPECT_EQ(doc.GetRoot()->GetAttribute("a"), "x");
    // A bare '>' in content starts an element with an empty name.
    doc.Parse("<R>a > b<C/></R>");
    ASSERT_EQ(doc.GetRoot()->GetChildCount(), 1u);
    CXmlElement* unnamed = doc.GetRoot()->GetChild(0);
    EXPECT_EQ(unnamed->GetName(), "");
    ASSERT_EQ(unnamed->GetChildCount(), 1u);
    EXPECT_EQ(unnamed->GetChild(0)->GetName(), "C");
}

TEST(Parser, UnbalancedTagsOnlyMoveTheInsertionPoint) {
    CXmlDocument doc;
    doc.Parse("<R></X></Y></Z><A/></R>");
    ASSERT_EQ(doc.GetRoot()->GetChildCount(), 1u);  // end tags stop at the root
    doc.Parse("<R><A><B></R><C/>");
    // A is never closed, so C nests under A.
    CXmlElement* a = doc.GetRoot()->GetChild(0);
    ASSERT_EQ(a->GetChildCount(), 2u);
    EXPECT_EQ(a->GetChild(1)->GetName(), "C");
}

TEST(Parser, CommentsAndIgnoredTagsPrefixTheNextName) {
    CXmlDocument doc;
    doc.Parse("<R><!-- note --> <A/></R>");
    ASSERT_EQ(doc.GetRoot()->GetChildCount(), 1u);
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetName(), "");  // " <A" splits at the blank
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetAttributeText(), "A");
}

TEST(Parser, EmptyTextGivesAnEmptyRoot) {
    CXmlDocument doc;
    doc.Parse("");
    EXPECT_EQ(doc.GetRoot()->GetName(), "");
    EXPECT_EQ(doc.GetRoot()->GetChildCount(), 0u);
    doc.Parse("no tags at all");
    EXPECT_EQ(doc.GetRoot()->GetRawValue(), "");
}

TEST(Parser, ReparseKeepsTheOldRootAttributes) {
    CXmlDocument doc;
    doc.Parse("<R a=\"1\"><X/></R>");
    doc.Parse("<S b=\"2\"/>");
    EXPECT_EQ(doc.GetRoot()->GetName(), "S");
    EXPECT_EQ(doc.GetRoot()->GetAttribute("a"), "1");
    EXPECT_EQ(doc.GetRoot()->GetAttribute("b"), "2");
    EXPECT_EQ(doc.GetRoot()->GetChildCount(), 0u);
    EXPECT_EQ(doc.GetRoot()->GetAttributeText(), "b=\"2\"");
    EXPECT_EQ(doc.GetSourceText(), "<S b=\"2\"/>");
}

TEST(Parser, ValuesAreBinarySafe) {
    CXmlDocument doc;
    std::string text("<R><A>x\0y</A></R>", 17);
    doc.Parse(text);
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetRawValue(), std::string("x\0y", 3));
}

TEST(Parser, NamesAreNotTrimmed) {
    CXmlDocument doc;
    doc.Parse("<R><B /><C\tx=\"1\"/></R>");
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetName(), "B");  // split at the blank
    EXPECT_EQ(doc.GetRoot()->GetChild(1)->GetName(), "C\tx=\"1\"");
}

TEST(ParseAttributes, QuotesBlanksAndRepeats) {
    CXmlElement e;
    e.ParseAttributes("a = \"x y\" b=\"\"");
    EXPECT_EQ(e.GetAttribute("a"), "x y");
    EXPECT_EQ(e.GetAttribute("b"), "");
    EXPECT_EQ(e.GetAttributes().Size(), 2u);

    CXmlElement f;
    f.ParseAttributes("q=\"a&amp;b\" k=\"first\" k=\"last\" tail");
    EXPECT_EQ(f.GetAttribute("k"), "last");     // the last one wins
    EXPECT_EQ(f.GetAttribute("q"), "a&amp;b");  // not decoded
    EXPECT_EQ(f.GetAttribute("K"), "");         // case-sensitive
    EXPECT_EQ(f.GetAttributes().Size(), 2u);    // the fragment without '=' is dropped

    // Single quotes are no delimiters: the value runs to the next double quote.
    CXmlElement s;
    s.ParseAttributes("k='single' q=\"x\"");
    EXPECT_EQ(s.GetAttribute("k"), "x");
    EXPECT_EQ(s.GetAttributes().Size(), 1u);

    CXmlElement g;
    g.ParseAttributes("open=\"never closed");
    EXPECT_EQ(g.GetAttribute("open"), "never closed");
    CXmlElement h;
    h.ParseAttributes("noquote=bare");
    EXPECT_TRUE(h.GetAttributes().Contains("noquote"));
}

std::string Nested(int depth) {
    std::string text;
    text.reserve(static_cast<std::size_t>(depth) * 7);
    for (int i = 0; i < depth; ++i) text += "<a>";
    for (int i = 0; i < depth; ++i) text += "</a>";
    return text;
}

TEST(Parser, StopsAtTheNestingLimitAndSaysSo) {
    for (int depth : {CXmlDocument::kMaxDepth, CXmlDocument::kMaxDepth + 1, 1000000}) {
        CXmlDocument doc;
        doc.Parse("<r><kept/>" + Nested(depth - 1) + "<after/></r>");
        EXPECT_EQ(doc.IsTruncated(), depth > CXmlDocument::kMaxDepth) << depth;
        CXmlElement* e = doc.GetRoot();
        ASSERT_EQ(e->GetChildCount(), depth > CXmlDocument::kMaxDepth ? 2u : 3u) << depth;
        EXPECT_EQ(e->GetChild(0)->GetName(), "kept");
        int levels = 1;
        for (e = e->GetChild(1); e->GetChildCount() == 1; e = e->GetChild(0)) ++levels;
        EXPECT_EQ(levels, std::min(depth, CXmlDocument::kMaxDepth) - 1) << depth;
    }
    CXmlDocument again;
    again.Parse("<a/>");
    EXPECT_FALSE(again.IsTruncated());
}

TEST(Writer, DeepestTreesAreWrittenWithOneTabPerLevel) {
    const int depth = CXmlDocument::kMaxDepth;
    CXmlDocument doc;
    doc.Parse(Nested(depth));
    std::string xml = doc.GetXml();
    std::size_t tabs = 0;
    for (char c : xml) tabs += c == '\t';
    EXPECT_EQ(tabs, static_cast<std::size_t>(depth - 1) * depth);
}

}  // namespace
