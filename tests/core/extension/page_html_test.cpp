// The object's construction and its three pieces of page HTML.
#include <gtest/gtest.h>

#include "extension/definition_root.h"
#include "extension/extension_engine.h"
#include "test_definition.h"

using testdef::Definition;

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
    std::string text = Definition().Body("$f$").Categories({{"G", {{"$f$", "3", "C:\\a\\b.gif"}}}}).Text();
    CExtensionEngine engine(text, {});
    EXPECT_EQ(engine.GetHtml(nullptr), "b.gif");
    EXPECT_EQ(engine.GetHtmlCache(), "b.gif");
    EXPECT_EQ(engine.GetPageContext(), "");
}
