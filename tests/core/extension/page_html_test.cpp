// The object's construction and its three pieces of page HTML.
#include <gtest/gtest.h>

#include "extension/definition_root.h"
#include "extension/extension_engine.h"
#include "test_definition.h"

using testdef::Definition;

TEST(Construction, ReadsRootAttributesLikeTheHost) {
    CExtensionEngine plain(Definition().Text(), {});
    int w = -1, h = -1;
    plain.GetMinimumSize(w, h);
    EXPECT_EQ(w, 0);  // absent reads as 0, not the default 10
    EXPECT_EQ(h, 0);
    EXPECT_FALSE(plain.UseDIV());
    EXPECT_EQ(plain.GetRenderMethod(), 0);

    CExtensionEngine set(
        Definition().Root("title=\"T\" text=\"Tool\" minwidth=\"50\" minheight=\"7x\" usediv=\"1\" rendermethod=\"2\"").Text(),
        {});
    set.GetMinimumSize(w, h);
    EXPECT_EQ(w, 50);
    EXPECT_EQ(h, 7);
    EXPECT_TRUE(set.UseDIV());
    EXPECT_EQ(set.GetRenderMethod(), 2);
    EXPECT_EQ(set.GetToolbarText(), "Tool");

    for (const char* flag : {"true", "01", " 1"}) {
        std::string root = std::string("usediv=\"") + flag + "\"";
        EXPECT_FALSE(ReadDefinitionRootAttributes(Definition().Root(root).Text()).useDiv) << flag;
    }
}

TEST(PageHtml, HeadAndStartOfPageAreSubstitutedTemplates) {
    std::string text = Definition()
                           .Head("<link href=\"$css$\">\r\n<script></script>")
                           .Tail("<p>$css$</p>")
                           .Categories({{"G", {{"$css$", "2", "s.css"}}}})
                           .Text();
    CExtensionEngine engine(text, {});
    EXPECT_EQ(engine.GetHeaderHtml(), "<link href=\"s.css\">\r\n<script></script>");
    EXPECT_EQ(engine.GetStartofPageHTML(), "<p>s.css</p>");
}

TEST(PageHtml, MissingTemplatesGiveEmptyTextAndKeepTheCache) {
    CExtensionEngine engine(Definition().Categories({{"G", {{"$x$", "2", "v"}}}}).Text(), {});
    EXPECT_EQ(engine.GetHeaderHtml(), "");
    EXPECT_EQ(engine.GetStartofPageHTML(), "");
    EXPECT_EQ(engine.GetHtmlCache(), "");
    EXPECT_EQ(engine.GetHtml("ctx"), "");
    EXPECT_EQ(engine.GetPageContext(), "ctx");
}

TEST(PageHtml, SnapshotHookRunsOnlyForDesignViewUpdatesWithRenderMethodTwo) {
    std::vector<std::string> snapshots;
    ExtensionServices services;
    services.onDesignHtml = [&snapshots](const std::string& html) { snapshots.push_back(html); };

    CExtensionEngine drawn(Definition().Root("rendermethod=\"2\"").Body("<i>$x$</i>").Text(), services);
    ASSERT_EQ(snapshots.size(), 1u);  // from the constructor, without PROPERTIES
    EXPECT_EQ(snapshots[0], "<i>$x$</i>");
    drawn.GetHtml("");
    EXPECT_EQ(snapshots.size(), 1u);
    drawn.ReplaceValues(CHashedStringMap());
    EXPECT_EQ(snapshots.size(), 2u);

    CExtensionEngine placeholder(Definition().Root("rendermethod=\"0\"").Body("<i/>").Text(), services);
    EXPECT_EQ(snapshots.size(), 2u);
}

TEST(PageHtml, GetHtmlLeavesThePublishedFormInTheCache) {
    std::string text =
        Definition().Body("$f$").Categories({{"G", {{"$f$", "3", "C:\\a\\b.gif"}}}}).Text();
    CExtensionEngine engine(text, {});
    EXPECT_EQ(engine.GetHtml(nullptr), "b.gif");
    EXPECT_EQ(engine.GetHtmlCache(), "b.gif");
    EXPECT_EQ(engine.GetPageContext(), "");
}
