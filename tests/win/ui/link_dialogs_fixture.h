#pragma once
// Driving the link dialogs from tests: a script of steps, one per dialog
// that opens (each step runs inside that dialog's modal loop and should end
// it), fake host settings, and small helpers that act on controls the way
// the user's input does (sending the notifications the dialog sees).
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/window_text.h"
#include "ui/link_type.h"  // GetControlText
#include "ui/picker_tree.h"  // TreeItemText
#include "ui/host_settings.h"
#include "xml/xml_document.h"

using DialogStep = std::function<void(HWND dialog)>;

// Settings kept in memory; the link history's registry location is a test
// key below HKEY_CURRENT_USER\Software, emptied before and after each test.
class FakeHostSettings : public CHostSettings {
public:

    std::string GetString(const char* section, const char* entry) override;
    void WriteString(const char* section, const char* entry, const std::string& value) override;
    bool GetRegistryLocation(std::string& registryKey, std::string& profileName) override;

    std::map<std::string, std::string> values;  // "section/entry" -> text
};

class LinkDialogsTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Steps for the dialogs that open next, in order. A dialog that opens
    // when no step is left, or whose step returns without ending it, is
    // cancelled, so a failing test cannot hang.
    void Then(DialogStep step) { steps_.push_back(std::move(step)); }

    // A site structure from XML text, kept for the test's duration.
    CXmlDocument* Site(const std::string& xml);
    // Writes URL_History values (0, 1, ...) into the test's registry key.
    void WriteHistory(const std::vector<std::string>& entries);

    FakeHostSettings settings_;

private:
    std::deque<DialogStep> steps_;
    std::unique_ptr<CXmlDocument> site_;
};

// --- acting on a dialog's controls ------------------------------------------------
void Click(HWND dialog, int id);
void ChooseComboEntry(HWND dialog, int id, int index);
void TypeComboText(HWND dialog, int id, const std::string& text);
void TypeEditText(HWND dialog, int id, const std::string& text);
int ComboSelection(HWND dialog, int id);
int ComboCount(HWND dialog, int id);
std::string ComboEntry(HWND dialog, int id, int index);
bool Visible(HWND dialog, int id);
bool Enabled(HWND dialog, int id);
// The controls as an internal page link shows them: type Internal Web Page,
// label "&Page:", the page display and Select in view, the link box and
// Favorites hidden.
void ExpectPageLinkControls(HWND dialog);

// --- list and tree controls -----------------------------------------------------
void SelectRow(HWND dialog, int row);  // selects and focuses only this row
void ClearRowSelection(HWND dialog);
int RowCount(HWND dialog);
std::string RowText(HWND dialog, int row);

// Tree items by their texts, depth-first.
HTREEITEM FindTreeItem(HWND tree, const std::string& text);
// The texts of item's children (the root items for null).
std::vector<std::string> TreeChildren(HWND tree, HTREEITEM item);
// A double click on the item as the tree reports it to the dialog.
void DoubleClickTreeItem(HWND dialog, int treeId, HTREEITEM item);

// Catches message boxes of this thread while alive: records their texts and
// closes them.
class MessageBoxCatcher {
public:
    MessageBoxCatcher();
    ~MessageBoxCatcher();
    std::vector<std::string> texts;

private:
    HHOOK hook_ = nullptr;
};
