#include "message_box_trap.h"

#include "import_patch.h"

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
    return ReplaceImport(module, "user32.dll", "MessageBoxA", reinterpret_cast<void*>(&TrappedMessageBoxA)) != nullptr;
}

int TrappedMessageBoxes() { return g_trapped; }
