// Which rows a store gives, without a window: the two orders, the filter,
// collapsed items and the defaults "modified" is measured against.
#include <gtest/gtest.h>

#include "grid/cell_string.h"
#include "grid/grid_rows.h"

namespace {

using Names = std::vector<std::string>;

CExtPropertyValue* AddValue(CExtPropertyItem* parent, const char* name, const char* description = "") {
    auto* value = new CExtPropertyValue(name, description);
    parent->ItemInsert(value);
    value->ValueActiveGetByRTC<CExtGridCellString>()->SetText(name);
    return value;
}

// "Look" (Title, Color, Align described as a placement), "Behavior" (Path
// with a child Extension), "Extra" (apple, Zebra, path: equal names but for
// case), and "Empty" without values.
struct Store {
    CExtPropertyStore store{"Test"};
    CExtPropertyItem* behavior = nullptr;
    CExtPropertyValue* path = nullptr;
    Store() {
        auto* look = new CExtPropertyCategory("Look");
        store.ItemInsert(look);
        for (const char* name : {"Title", "Color"}) AddValue(look, name);
        AddValue(look, "Align", "Placement of text.");
        behavior = new CExtPropertyCategory("Behavior");
        store.ItemInsert(behavior);
        path = AddValue(behavior, "Path");
        AddValue(path, "Extension");
        auto* extra = new CExtPropertyCategory("Extra");
        store.ItemInsert(extra);
        for (const char* name : {"apple", "Zebra", "path"}) AddValue(extra, name);
        store.ItemInsert(new CExtPropertyCategory("Empty"));
    }
};

Names RowNames(const CExtGridRows& rows) {
    Names names;
    for (int i = 0; i < rows.Count(); ++i) names.push_back(rows.Item(i)->NameGet());
    return names;
}

TEST(GridRows, OrderFilterAndCollapsedItems) {
    struct Case {
        bool sorted;
        const char* filter;
        bool collapseBehavior, expandPath;
        Names rows;
    };
    const Case cases[] = {
        {false, "", false, false,
         {"Look", "Title", "Color", "Align", "Behavior", "Path", "Extra", "apple", "Zebra", "path", "Empty"}},
        {false, "", true, true, {"Look", "Title", "Color", "Align", "Behavior", "Extra", "apple", "Zebra", "path", "Empty"}},
        {false, "", false, true,
         {"Look", "Title", "Color", "Align", "Behavior", "Path", "Extension", "Extra", "apple", "Zebra", "path",
          "Empty"}},
        // Case is ignored; of names equal but for case, capitals come first.
        {true, "", false, false, {"Align", "apple", "Color", "Path", "path", "Title", "Zebra"}},
        // Name or description, ignoring case; categories without a match go.
        {false, "CO", false, false, {"Look", "Color"}},
        {false, "placement", false, false, {"Look", "Align"}},
        // Matches show whatever was collapsed, children included.
        {false, "ext", true, false, {"Look", "Align", "Behavior", "Path", "Extension"}},
        {true, "PATH", false, false, {"Path", "path"}},
        {false, "nothing like this", false, false, {}},
    };
    for (const Case& c : cases) {
        Store s;
        s.behavior->SetExpanded(!c.collapseBehavior);
        s.path->SetExpanded(c.expandPath);
        CExtGridRows rows;
        rows.Build(&s.store, c.sorted, c.filter);
        EXPECT_EQ(RowNames(rows), c.rows) << "sorted " << c.sorted << ", filter '" << c.filter << "'";
    }
}

TEST(GridRows, DepthAndLookupOutsideTheRows) {
    Store s;
    CExtGridRows rows;
    rows.Build(&s.store, false, "");
    EXPECT_EQ(rows.Depth(rows.Find(s.path)), 0);
    s.path->SetExpanded(true);
    rows.Build(&s.store, false, "");
    EXPECT_EQ(rows.Depth(rows.Find(s.path->ItemGetAt(0))), 1);
    EXPECT_EQ(rows.Item(rows.Count()), nullptr);
}

TEST(GridRows, DefaultsAreTakenOnceForEveryValueShownOrNot) {
    Store s;
    s.behavior->SetExpanded(false);
    CExtGridRows::TakeDefaults(&s.store);
    auto* extension = static_cast<CExtPropertyValue*>(s.path->ItemGetAt(0));
    static_cast<CExtGridCellString*>(extension->ValueActiveGet())->SetText("changed");
    CExtGridRows::TakeDefaults(&s.store);
    EXPECT_TRUE(extension->HasDefault());
    EXPECT_TRUE(extension->IsModified());
}

}  // namespace
