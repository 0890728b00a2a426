// Variable substitution: document order, type rules, the image-list guard
// and the differences between design view and published page.
#include <gtest/gtest.h>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "test_definition.h"

using testdef::Category;
using testdef::Definition;

namespace {

std::string Substituted(CExtensionEngine& engine, std::string text) {
    engine.ReplaceVariables(text);
    return text;
}

}  // namespace

class ImageListSubstitution : public ::testing::Test {
protected:
    std::string DefinitionText(const std::string& body) {
        return Definition()
            .Body(body)
            .Categories({{"General", {{"$images$", "6", "", "", "S[$flag$]"}, {"$flag$", "0", "false"}}}})
            .Text();
    }
    testdef::RecordingTransformer xslt;
    ExtensionServices Services() {
        ExtensionServices s;
        s.transformer = &xslt;
        return s;
    }
};

TEST_F(ImageListSubstitution, NoTransformationWithoutTheVariableInTheText) {
    CExtensionEngine engine(DefinitionText("<div>no gallery</div>"), Services());
    engine.SetValue("$images$", WriteImageList({{"C:\\p\\a.jpg"}}));
    engine.UpdateHtml(0);
    engine.GetHtml("pics");
    EXPECT_EQ(Substituted(engine, "$Images$ stays"), "$Images$ stays");
    EXPECT_TRUE(xslt.calls.empty());
}

TEST_F(ImageListSubstitution, EmptyListStillAsksTheXmlComponent) {
    // The component is what reports its own absence, so it is asked even
    // for the empty default list; the design view hands the list over as is.
    CExtensionEngine engine(DefinitionText("<div>$images$</div>"), Services());
    ASSERT_EQ(xslt.calls.size(), 1u);
    EXPECT_EQ(xslt.calls[0].first, "");
}

TEST_F(ImageListSubstitution, ReplaceVariablesAlwaysRewritesFileNames) {
    CExtensionEngine engine(DefinitionText(""), Services());
    engine.SetValue("$images$", WriteImageList({{"C:\\Pictures\\a.jpg"}}));
    engine.SetPageContext("");
    Substituted(engine, "$images$");
    ASSERT_EQ(xslt.calls.size(), 1u);
    EXPECT_NE(xslt.calls[0].first.find("<FILENAME>/a.jpg</FILENAME>"), std::string::npos);
}

TEST_F(ImageListSubstitution, AValueMentioningItsOwnVariableDoesNotRecurseForever) {
    CExtensionEngine engine(DefinitionText("<div>$images$</div>"), Services());
    engine.SetValue("$images$", WriteImageList({{"C:\\p\\a.jpg", "see $images$"}}));
    xslt.calls.clear();
    engine.UpdateHtml(0);
    ASSERT_EQ(xslt.calls.size(), 1u);
    EXPECT_NE(xslt.calls[0].first.find("<TITLE>see </TITLE>"), std::string::npos);
}

TEST_F(ImageListSubstitution, ListsThatCouldReachOutsideNestTooDeepOrCostTooMuchGetNoGalleryOnly) {
    CExtensionEngine engine(DefinitionText("<div>$images$</div>"), Services());
    std::string deep = "<GALLERY>", large = "<GALLERY>";
    for (int i = 0; i < CXmlDocument::kMaxDepth; ++i) deep += "<IMAGE>";
    for (std::size_t i = 0; i < CExtensionEngine::kMaxGalleryTags; ++i) large += "<a/>";
    for (const std::string& list :
         {std::string("<!DOCTYPE GALLERY SYSTEM 'file:///etc/passwd'><GALLERY/>"), deep, large}) {
        engine.SetValue("$images$", list);
        xslt.calls.clear();
        engine.UpdateHtml(0);
        EXPECT_EQ(engine.GetHtmlCache(), "<div></div>");
        EXPECT_EQ(engine.GetHtml("pics"), "<div></div>");
        EXPECT_TRUE(xslt.calls.empty());
    }
    // A value substituted into a style sheet already made once can make it
    // reach outside.
    engine.SetValue("$images$", WriteImageList({{"a.jpg"}}));
    for (const char* flag : {"false", "<xsl:include href='x.xsl'/>"}) {
        engine.SetValue("$flag$", flag);
        xslt.calls.clear();
        engine.UpdateHtml(0);
        EXPECT_EQ(xslt.calls.size(), flag[0] == 'f' ? 1u : 0u) << flag;
    }
}

TEST(Substitution, ReadsTheDefinitionTextNotLaterTreeChanges) {
    CExtensionEngine engine(Definition().Categories({{"G", {{"$x$", "2", "original"}}}}).Text(), {});
    CXmlElement* property =
        engine.GetDefinition().GetRoot()->FindChild("PROPERTIES")->FindChild("CATEGORY")->FindChild("PROPERTY");
    property->GetAttributes().Set("value", "changed");
    EXPECT_EQ(Substituted(engine, "$x$"), "original");
}
