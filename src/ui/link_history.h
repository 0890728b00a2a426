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

class CHostSettings;

class CLinkHistoryCombo {
public:
    static constexpr int kMaximumEntries = 16;

    CLinkHistoryCombo() = default;
    ~CLinkHistoryCombo();
    CLinkHistoryCombo(const CLinkHistoryCombo&) = delete;
    CLinkHistoryCombo& operator=(const CLinkHistoryCombo&) = delete;

    // Appends the history of section to combo. Nothing happens when the
    // host has no registry location or the key cannot be opened.
    void LoadHistory(HWND combo, CHostSettings& settings, const char* section);

private:
    HKEY m_key = nullptr;
    std::string m_section;
    std::vector<std::unique_ptr<std::string>> m_data;
};
