#include "ui/link_history.h"

#include "ui/host_settings.h"

namespace {

constexpr DWORD kValueCapacity = 260;

// A REG_SZ value as text, empty when it is missing or of another kind.
std::string ReadText(HKEY key, const std::string& name) {
    char buffer[kValueCapacity + 1] = {};
    DWORD size = kValueCapacity;
    DWORD kind = 0;
    if (RegQueryValueExA(key, name.c_str(), nullptr, &kind, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS)
        return {};
    if (kind != REG_SZ && kind != REG_EXPAND_SZ) return {};
    buffer[size < kValueCapacity ? size : kValueCapacity] = 0;
    return buffer;
}

}  // namespace

CLinkHistoryCombo::~CLinkHistoryCombo() {
    if (m_key) RegCloseKey(m_key);
}

void CLinkHistoryCombo::LoadHistory(HWND combo, CHostSettings& settings, const char* section) {
    std::string registryKey, profileName;
    if (!combo || !settings.GetRegistryLocation(registryKey, profileName)) return;
    std::string path = "Software\\" + registryKey + "\\" + profileName + "\\" + section;
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                        &key, nullptr) != ERROR_SUCCESS)
        return;
    if (m_key) RegCloseKey(m_key);
    m_key = key;
    m_section = section;

    for (int index = 0; index < kMaximumEntries; ++index) {
        std::string text = ReadText(m_key, m_section + std::to_string(index));
        if (text.empty()) break;
        std::size_t bar = text.find('|');
        auto data = std::make_unique<std::string>(bar == std::string::npos ? std::string() : text.substr(bar + 1));
        std::string display = text.substr(0, bar);
        LRESULT at = SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(display.c_str()));
        if (at < 0) break;
        SendMessageA(combo, CB_SETITEMDATA, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(data.get()));
        m_data.push_back(std::move(data));
    }
}
