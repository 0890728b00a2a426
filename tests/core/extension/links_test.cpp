// Link properties as the host numbers them, with the deliberate carry-over
// of a match into later categories.
#include <gtest/gtest.h>

#include "extension/extension_engine.h"
#include "test_definition.h"

using testdef::Definition;

namespace {

std::string ThreeLinks() {
    return Definition()
        .Body("<a href=\"$a$\">$b$ $c$</a>")
        .Categories({{"First", {{"$a$", "8", "A"}, {"$text$", "2", "t"}, {"$b$", "8", "B"}}},
                     {"Empty", {{"$n$", "2", "n"}}},
                     {"Second", {{"$c$", "8", "C"}}}})
        .Text();
}

}  // namespace

TEST(Links, NoLinkPropertiesGiveNothing) {
    CExtensionEngine engine(Definition().Categories({{"G", {{"$x$", "2", "x"}}}}).Text(), {});
    EXPECT_EQ(engine.GetURLCount(), 0);
    EXPECT_EQ(engine.GetURL(0), "");
    engine.SetURL(0, "ignored");
    EXPECT_TRUE(engine.GetValues().Empty());
}

TEST(Links, AMatchCarriesIntoTheFirstLinkOfLaterCategories) {
    CExtensionEngine engine(ThreeLinks(), {});
    EXPECT_EQ(engine.GetURLCount(), 3);
    EXPECT_EQ(engine.GetURL(0), "C");
    EXPECT_EQ(engine.GetURL(1), "C");
    EXPECT_EQ(engine.GetURL(2), "C");
    EXPECT_EQ(engine.GetURL(3), "");
    EXPECT_EQ(engine.GetURL(-1), "");
}

TEST(Links, SetUrlWritesEveryMatch) {
    struct Case {
        int index;
        std::vector<std::string> set;
    };
    for (const Case& c : {Case{0, {"$a$", "$c$"}}, Case{1, {"$b$", "$c$"}}, Case{2, {"$c$"}}, Case{3, {}}}) {
        CExtensionEngine engine(ThreeLinks(), {});
        engine.SetURL(c.index, "new");
        std::vector<std::string> keys;
        for (const auto& [key, value] : engine.GetValues().Items()) {
            EXPECT_EQ(value, "new");
            keys.push_back(key);
        }
        std::sort(keys.begin(), keys.end());
        EXPECT_EQ(keys, c.set) << "SetURL(" << c.index << ")";
    }
}

TEST(Links, LinksInSeparateCategoriesAreNumberedInDocumentOrder) {
    std::string text = Definition()
                           .Body("$z$|$y$")
                           .Categories({{"Zeta", {{"$z$", "8", "first"}}}, {"Alpha", {{"$y$", "8", "second"}}}})
                           .Text();
    CExtensionEngine engine(text, {});
    engine.SetURL(1, "changed");
    EXPECT_EQ(engine.GetURL(1), "changed");
    EXPECT_EQ(engine.GetHtmlCache(), "first|second");  // no regeneration until the next update
    EXPECT_EQ(engine.GetHtml(""), "first|changed");
}
