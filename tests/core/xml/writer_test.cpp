#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

const std::string kDecl = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

TEST(Writer, ValuesInlineChildrenIndentedWithTabs) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("R");
    doc.AddChild(doc.GetRoot(), "A", std::string_view("x"), std::nullopt);
    EXPECT_EQ(doc.GetXml(), kDecl + "<R>\r\n\t<A>x</A>\r\n</R>\r\n");
}

TEST(Writer, EmptyElementsAtDepthTwoGetTwoIndentedLines) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("R");
    CXmlElement* a = doc.AddChild(doc.GetRoot(), "A", std::nullopt, std::nullopt);
    doc.AddChild(a, "B", std::nullopt, std::nullopt);
    EXPECT_EQ(doc.GetXml(), kDecl + "<R>\r\n\t<A>\r\n\t\t<B>\r\n\t\t</B>\r\n\t</A>\r\n</R>\r\n");
}

TEST(Writer, ValueAndChildrenShareTheStartLineAndTheEndTagIsNotIndented) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("R");
    CXmlElement* a = doc.AddChild(doc.GetRoot(), "A", std::string_view("v"), std::nullopt);
    doc.AddChild(a, "B", std::string_view("w"), std::nullopt);
    EXPECT_EQ(doc.GetXml(), kDecl + "<R>\r\n\t<A>v\t\t<B>w</B>\r\n</A>\r\n</R>\r\n");
}

TEST(Writer, AttributesInHashOrderEachFollowedByABlank) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("FILE");
    doc.GetRoot()->GetAttributes().Set("process_file", "1");
    doc.GetRoot()->GetAttributes().Set("filename", "a.css");
    EXPECT_EQ(doc.GetXml(), kDecl + "<FILE filename=\"a.css\" process_file=\"1\" >\r\n</FILE>\r\n");
    // The attribute text is rebuilt from the map by the writer.
    EXPECT_EQ(doc.GetRoot()->GetAttributeText(), "filename=\"a.css\" process_file=\"1\" ");
}

TEST(Writer, RootWithValueAndRootNameFromAParsedDeclaration) {
    CXmlDocument doc;
    doc.Parse("<?xml version=\"1.0\"?>\r\n<R>text</R>");
    EXPECT_EQ(doc.GetXml(), kDecl + "<\r\nR>text</\r\nR>\r\n");
}

TEST(Writer, RoundTripKeepsAttributesOrderAndLeafValues) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("GALLERY");
    CXmlElement* image = doc.AddChild(doc.GetRoot(), "IMAGE", std::nullopt, std::string_view("n=\"1\" m=\"2\""));
    doc.AddChild(image, "FILENAME", std::string_view("C:\\a<b>&.jpg"), std::nullopt);
    doc.AddChild(image, "TITLE", std::string_view("say \"hi\""), std::nullopt);
    doc.AddChild(doc.GetRoot(), "IMAGE", std::nullopt, std::nullopt);
    std::string xml = doc.GetXml();

    CXmlDocument back;
    back.Parse(xml);
    EXPECT_EQ(back.GetRoot()->GetName(), "\r\nGALLERY");
    ASSERT_EQ(back.GetRoot()->GetChildCount(), 2u);
    CXmlElement* first = back.GetRoot()->GetChild(0);
    EXPECT_EQ(first->GetAttribute("n"), "1");
    EXPECT_EQ(first->GetAttribute("m"), "2");
    EXPECT_EQ(back.GetChildValue(first, "filename"), "C:\\a<b>&.jpg");
    EXPECT_EQ(back.GetChildValue(first, "TITLE"), "say \"hi\"");
    // Writing the re-read tree again gives the same text but for the root name.
    std::string again = back.GetXml();
    back.GetRoot()->SetName("GALLERY");
    EXPECT_EQ(back.GetXml(), xml);
    EXPECT_NE(again, xml);
}

TEST(Writer, ElementWithValueAndChildrenComesBackWithoutItsValue) {
    CXmlDocument doc;
    doc.GetRoot()->SetName("R");
    CXmlElement* a = doc.AddChild(doc.GetRoot(), "A", std::string_view("v"), std::nullopt);
    doc.AddChild(a, "B", std::string_view("w"), std::nullopt);
    CXmlDocument back;
    back.Parse(doc.GetXml());
    EXPECT_EQ(back.GetRoot()->GetChild(0)->GetRawValue(), "");
    EXPECT_EQ(back.GetRoot()->GetChild(0)->GetChild(0)->GetRawValue(), "w");
}

TEST(TreeEditing, AddChildTrimsNamesAndLeavesParentNull) {
    CXmlDocument doc;
    CXmlElement* c = doc.AddChild(doc.GetRoot(), "  NAME \t", std::string_view("a<b"), std::nullopt);
    EXPECT_EQ(c->GetName(), "NAME");
    EXPECT_EQ(c->GetRawValue(), "a&lt;b");
    EXPECT_EQ(c->GetValue(), "a<b");
    EXPECT_EQ(c->GetParent(), nullptr);
    CXmlElement* empty = doc.AddChild(doc.GetRoot(), "E", std::string_view(""), std::nullopt);
    EXPECT_EQ(empty->GetRawValue(), "");
}

TEST(TreeEditing, SetChildValueUpdatesTheFirstMatchOrAppends) {
    CXmlDocument doc;
    doc.Parse("<R><A>1</A><a>2</a></R>");
    doc.SetChildValue(doc.GetRoot(), "a", "x&y", std::string_view("k=\"v\""));
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetRawValue(), "x&amp;y");
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetAttribute("k"), "v");
    EXPECT_EQ(doc.GetRoot()->GetChild(1)->GetRawValue(), "2");
    doc.SetChildValue(doc.GetRoot(), "B", "new", std::nullopt);
    ASSERT_EQ(doc.GetRoot()->GetChildCount(), 3u);
    EXPECT_EQ(doc.GetRoot()->GetChild(2)->GetName(), "B");
    EXPECT_EQ(doc.GetChildValue(doc.GetRoot(), "b"), "new");
    EXPECT_EQ(doc.GetChildValue(doc.GetRoot(), "missing"), "");
}

TEST(TreeEditing, ClearKeepsOnlyTheRootAttributeMap) {
    CXmlDocument doc;
    doc.Parse("<R a=\"1\">v<C/></R>");
    doc.GetRoot()->FindChild("C");
    doc.Clear();
    EXPECT_EQ(doc.GetRoot()->GetName(), "");
    EXPECT_EQ(doc.GetRoot()->GetRawValue(), "");
    EXPECT_EQ(doc.GetRoot()->GetAttributeText(), "");
    EXPECT_EQ(doc.GetRoot()->GetSearchName(), "");
    EXPECT_EQ(doc.GetRoot()->GetChildCount(), 0u);
    EXPECT_EQ(doc.GetRoot()->GetNextChild(), nullptr);
    EXPECT_EQ(doc.GetRoot()->GetAttribute("a"), "1");
}

}  // namespace
