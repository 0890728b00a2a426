// What the generated documents of the XML model stage cannot show: a second
// parse into the same document, and the depth limit.
#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

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
        const std::string text = "<r><kept/>" + Nested(depth - 1) + "<after/></r>";
        doc.Parse(text);
        EXPECT_EQ(doc.IsTruncated(), depth > CXmlDocument::kMaxDepth) << depth;
        EXPECT_EQ(CXmlDocument::NestsTooDeep(text), doc.IsTruncated()) << depth;
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
