#include "message_box_trap.h"

namespace {

int g_trapped = 0;

void PrintQuoted(const char* text) {
    fputc('"', stderr);
    for (const char* p = text ? text : ""; *p; ++p) {
        if (*p == '"' || *p == '\\') fputc('\\', stderr);
        fputc(*p, stderr);
    }
    fputc('"', stderr);
}

int WINAPI TrappedMessageBoxA(HWND, LPCSTR text, LPCSTR caption, UINT type) {
    ++g_trapped;
    fprintf(stderr, "pwhost: message box 0x%08x ", type);
    PrintQuoted(text);
    fputc(' ', stderr);
    PrintQuoted(caption);
    fputc('\n', stderr);
    fflush(stderr);
    return IDOK;
}

}  // namespace

bool TrapMessageBoxes(HMODULE module) {
    BYTE* base = reinterpret_cast<BYTE*>(module);
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (dir.VirtualAddress == 0) return false;
    for (auto* desc = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + dir.VirtualAddress); desc->Name; ++desc) {
        if (lstrcmpiA(reinterpret_cast<const char*>(base + desc->Name), "user32.dll") != 0) continue;
        auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + (desc->OriginalFirstThunk ? desc->OriginalFirstThunk : desc->FirstThunk));
        auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + desc->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            auto* byName = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (strcmp(reinterpret_cast<const char*>(byName->Name), "MessageBoxA") != 0) continue;
            DWORD old = 0;
            VirtualProtect(&slots->u1.Function, sizeof(DWORD), PAGE_READWRITE, &old);
            slots->u1.Function = reinterpret_cast<DWORD>(&TrappedMessageBoxA);
            VirtualProtect(&slots->u1.Function, sizeof(DWORD), old, &old);
            return true;
        }
    }
    return false;
}

int TrappedMessageBoxes() { return g_trapped; }
