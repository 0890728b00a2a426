#pragma once
// The link history combo box: the host's recently used links, read from its
// per-user registry settings (HKCU\Software\<key>\<profile>\<section>, values
// <section>0, <section>1, ... until the first empty or missing one). Each
// value is "display text|data"; the list shows the display text and keeps
// the data beside it. The plug-in only reads the history.
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

class HostSettings;

class LinkHistoryCombo {
public:
    static constexpr int kMaximumEntries = 16;

    LinkHistoryCombo() = default;
    ~LinkHistoryCombo();
    LinkHistoryCombo(const LinkHistoryCombo&) = delete;
    LinkHistoryCombo& operator=(const LinkHistoryCombo&) = delete;

    // Appends the history of section to combo. Nothing happens when the
    // host has no registry location or the key cannot be opened.
    void LoadHistory(HWND combo, HostSettings& settings, const char* section);

    // The data text of a list entry (empty for none).
    std::string DataOf(int index) const;

private:
    HWND combo_ = nullptr;
    HKEY key_ = nullptr;
    std::string section_;
    std::vector<std::unique_ptr<std::string>> data_;
};
