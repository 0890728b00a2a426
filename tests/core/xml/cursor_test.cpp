#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

class Cursor : public ::testing::Test {
protected:
    void SetUp() override { doc.Parse("<R><A>1</A><b>2</b><A>3</A><C><D/><E/></C></R>"); }
    CXmlElement* root() { return doc.GetRoot(); }
    CXmlDocument doc;
};

TEST_F(Cursor, FirstAndNextWalkAllChildrenRegardlessOfName) {
    std::string names;
    for (CXmlElement* e = root()->GetFirstChild(); e; e = root()->GetNextChild()) names += e->GetName();
    EXPECT_EQ(names, "AbAC");
    EXPECT_EQ(root()->GetNextChild(), nullptr);
}

TEST_F(Cursor, FindChildIgnoresCaseReturnsTheFirstAndContinuesBehindIt) {
    CXmlElement* b = root()->FindChild("B");
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->GetRawValue(), "2");
    EXPECT_EQ(root()->GetSearchName(), "B");
    EXPECT_EQ(root()->GetNextChild()->GetRawValue(), "3");
    EXPECT_EQ(root()->FindChild("a")->GetRawValue(), "1");
    EXPECT_EQ(root()->GetNextChild()->GetName(), "b");
}

TEST_F(Cursor, MissingChildEndsTheCursor) {
    root()->GetFirstChild();
    EXPECT_EQ(root()->FindChild("Z"), nullptr);
    EXPECT_EQ(root()->GetNextChild(), nullptr);
}

TEST_F(Cursor, FindInTheMiddleOfAWalkMovesThatWalk) {
    root()->GetFirstChild();  // A, cursor at b
    root()->FindChild("C");   // cursor ends (C is last)
    EXPECT_EQ(root()->GetNextChild(), nullptr);
    root()->GetFirstChild();
    CXmlElement* c = root()->FindChild("c");
    // Walks over different elements do not disturb each other.
    EXPECT_EQ(c->GetFirstChild()->GetName(), "D");
    root()->FindChild("A");
    EXPECT_EQ(c->GetNextChild()->GetName(), "E");
    EXPECT_EQ(root()->GetNextChild()->GetName(), "b");
}

TEST_F(Cursor, LastChildLeavesNoPositionEvenIfChildrenAreAddedLater) {
    CXmlElement* c = root()->FindChild("C");
    c->FindChild("E");
    doc.AddChild(c, "F", std::nullopt, std::nullopt);
    EXPECT_EQ(c->GetNextChild(), nullptr);
    EXPECT_EQ(c->FindChild("D")->GetName(), "D");
    EXPECT_EQ(c->GetNextChild()->GetName(), "E");
    EXPECT_EQ(c->GetNextChild()->GetName(), "F");
}

TEST(Element, EmptyElementHasNoChildren) {
    CXmlElement e;
    EXPECT_EQ(e.GetFirstChild(), nullptr);
    EXPECT_EQ(e.GetNextChild(), nullptr);
    EXPECT_EQ(e.FindChild(""), nullptr);
    EXPECT_EQ(e.GetAttribute("x"), "");
    EXPECT_EQ(e.GetParent(), nullptr);
}

}  // namespace
