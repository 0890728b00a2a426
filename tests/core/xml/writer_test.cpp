// Editing a tree in place. The writer's layout for parsed documents is
// checked against the XML model stage.
#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

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
    doc.Parse("<R><A j=\"0\">1</A><a>2</a></R>");
    doc.SetChildValue(doc.GetRoot(), "a", "x&y", std::string_view("k=\"v\""));
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetRawValue(), "x&amp;y");
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetAttribute("k"), "v");
    EXPECT_EQ(doc.GetRoot()->GetChild(0)->GetAttribute("j"), "0");  // the parsed map is merged into
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
