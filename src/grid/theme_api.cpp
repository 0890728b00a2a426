#include "grid/theme_api.h"

const ThemeApi* ThemeApi::Get() {
    static ThemeApi api;
    static bool loaded = false;
    if (!loaded) {
        loaded = true;
        if (HMODULE dll = LoadLibraryA("uxtheme.dll")) {
            api.OpenThemeData = reinterpret_cast<decltype(api.OpenThemeData)>(
                reinterpret_cast<void*>(GetProcAddress(dll, "OpenThemeData")));
            api.CloseThemeData = reinterpret_cast<decltype(api.CloseThemeData)>(
                reinterpret_cast<void*>(GetProcAddress(dll, "CloseThemeData")));
            api.DrawThemeBackground = reinterpret_cast<decltype(api.DrawThemeBackground)>(
                reinterpret_cast<void*>(GetProcAddress(dll, "DrawThemeBackground")));
            api.IsThemeActive = reinterpret_cast<decltype(api.IsThemeActive)>(
                reinterpret_cast<void*>(GetProcAddress(dll, "IsThemeActive")));
            if (!api.OpenThemeData || !api.CloseThemeData || !api.DrawThemeBackground || !api.IsThemeActive)
                api = ThemeApi();
        }
    }
    return (api.OpenThemeData && api.Active()) ? &api : nullptr;
}
