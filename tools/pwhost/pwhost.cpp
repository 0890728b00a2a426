// pwhost: a stand-in for the web-page editor that hosts the plug-in, built
// the way the editor is built (MSVC conventions, the shared MFC 4.2 run time
// as mfc42.dll beside it), so that every call below crosses the boundary
// exactly as the editor's calls do.
//
//   pwhost DLL [--set VAR=VALUE]... [--record FILE] [--site FILE] COMMAND ...
//
// --record loads a stored project record through Serialize, as reopening a
// project does; --set then loads one more record holding the given values
// (the object ID kept from --record); --site hands a site-structure file to
// SetSiteStructure. Commands:
//   info                      JSON of the small operations
//   toolbar-text N            GetToolbarText into an N-byte buffer
//   toolbar-bitmap FILE.bmp   GetToolbarBitmap, saved as a 24-bit BMP
//   html body [--publish CONTEXT] [--repeat N] | head | tail | design
//                             --repeat: GetHtml N times, the mean time per
//                             call in milliseconds on stderr, the last text out
//                             design: the page the design view's snapshot
//                             loaded last, as the htmlfile stand-in recorded
//                             it (render method 2, stand-in registered)
//   copy-files OUTPUT IMAGES
//   urls [--set-url N=TEXT]...
//   save FILE                 storing Serialize into FILE
//   draw FILE.bmp W H [--rect L,T,R,B] [--page]
//                             Draw into a white bitmap, or with --page into a
//                             page of 8-pixel squares, white and #CFE0F5, the
//                             top-left one white
//   properties [STEP]... [publish OUTPUT]
//                             the Properties dialog over a real window, driven
//                             by the steps of dialog_script.h when given; then
//                             CopyFiles(OUTPUT, OUTPUT) when asked
//   runtime                   checks of the shared run time (see below)
//   delete-null               DeleteExtensionObject(nullptr)
//   odd-arguments             every operation with null and out-of-range arguments
//
// Exit codes: 0 done, 1 the plug-in misbehaved, 2 bad command line.
#include "extension_interface.h"
#include "dialog_script.h"
#include "host_io.h"
#include "message_box_trap.h"

extern "C" {
__declspec(dllimport) CArchive* StandInOpenArchive(BOOL loading, const void* bytes, UINT length, int bufferSize);
__declspec(dllimport) UINT StandInArchiveContents(CArchive* archive, const BYTE** bytes);
__declspec(dllimport) void StandInCloseArchive(CArchive* archive);
__declspec(dllimport) int StandInLiveStrings();
__declspec(dllimport) int StandInForeignFrees();
__declspec(dllimport) int StandInLibrariesOf(HMODULE module);
}

namespace {

int Fail(const char* what, const char* detail = "") {
    fprintf(stderr, "pwhost: %s%s\n", what, detail);
    return 1;
}

int Usage(const char* what, const char* detail = "") {
    fprintf(stderr, "pwhost: %s%s\n", what, detail);
    return 2;
}

bool ParseInt(const char* text, int& value) {
    if (!text || !*text) return false;
    char* end = nullptr;
    long v = strtol(text, &end, 10);
    if (*end) return false;
    value = static_cast<int>(v);
    return true;
}

// Archive buffer size: the environment may shrink it to exercise refills.
int ArchiveBufferSize() {
    const char* text = getenv("PWHOST_ARCHIVE_BUFFER");
    int size = 0;
    return ParseInt(text, size) && size > 0 ? size : 4096;
}

// --- project records, as the editor's archive holds them -----------------------

void AppendArchiveString(Bytes& out, const char* text, UINT length) {
    if (length < 255) {
        out.AppendByte(static_cast<BYTE>(length));
    } else if (length < 0xfffe) {
        out.AppendByte(0xff);
        out.AppendWord(static_cast<WORD>(length));
    } else {
        out.AppendByte(0xff);
        out.AppendWord(0xffff);
        out.AppendDword(length);
    }
    out.Append(text, length);
}

// --- the plug-in --------------------------------------------------------------

struct Plugin {
    HMODULE module = nullptr;
    CreateExtensionObjectFn create = nullptr;
    DeleteExtensionObjectFn destroy = nullptr;
    GetToolbarBitmapFn toolbarBitmap = nullptr;
    GetToolbarTextFn toolbarText = nullptr;
    CPagewrightExtension* object = nullptr;
};

bool LoadPlugin(const char* path, Plugin& plugin) {
    plugin.module = LoadLibraryA(path);
    if (!plugin.module) return false;
    plugin.create = reinterpret_cast<CreateExtensionObjectFn>(GetProcAddress(plugin.module, "CreateExtensionObject"));
    plugin.destroy = reinterpret_cast<DeleteExtensionObjectFn>(GetProcAddress(plugin.module, "DeleteExtensionObject"));
    plugin.toolbarBitmap = reinterpret_cast<GetToolbarBitmapFn>(GetProcAddress(plugin.module, "GetToolbarBitmap"));
    plugin.toolbarText = reinterpret_cast<GetToolbarTextFn>(GetProcAddress(plugin.module, "GetToolbarText"));
    TrapMessageBoxes(plugin.module);
    return plugin.create && plugin.destroy && plugin.toolbarBitmap && plugin.toolbarText;
}

// Serialize in loading mode over bytes. An archive exception is reported on
// standard error and the session goes on, as the editor keeps the object.
void LoadRecord(CPagewrightExtension* object, const BYTE* bytes, UINT size) {
    CArchive* archive = StandInOpenArchive(TRUE, bytes, size, ArchiveBufferSize());
    try {
        object->Serialize(*archive);
    } catch (CArchiveException* e) {
        fprintf(stderr, "pwhost: Serialize raised CArchiveException cause %d file \"%s\"\n", e->m_cause,
                e->m_strFileName.GetText());
        delete e;
    }
    StandInCloseArchive(archive);
}

// Serialize in storing mode; the record's bytes are appended to out.
void StoreRecord(CPagewrightExtension* object, Bytes& out) {
    CArchive* archive = StandInOpenArchive(FALSE, nullptr, 0, ArchiveBufferSize());
    object->Serialize(*archive);
    const BYTE* bytes = nullptr;
    UINT size = StandInArchiveContents(archive, &bytes);
    out.Append(bytes, size);
    StandInCloseArchive(archive);
}

void PrintCString(const CString& s) { PrintJsonString(s.GetText(), s.GetLength()); }

// --- commands -----------------------------------------------------------------

int CommandInfo(Plugin& plugin) {
    CPagewrightExtension* o = plugin.object;
    int width = -1, height = -1;
    o->GetMinimumSize(width, height);
    char toolbar[256];
    plugin.toolbarText(toolbar, sizeof toolbar);
    o->SetUniqueName("pwhost-unique-name");
    printf("{\"version\":%d,\"minWidth\":%d,\"minHeight\":%d,\"useDiv\":%d,\"toolbarText\":", o->GetVersion(), width,
           height, o->UseDIV());
    PrintJsonString(toolbar);
    printf(",\"urlCount\":%d,\"bkColor\":", o->GetURLCount());
    PrintCString(o->GetBkColor());
    printf(",\"bkImage\":");
    PrintCString(o->GetBkImage());
    printf(",\"uniqueName\":");
    PrintCString(o->GetUniqueName());
    printf(",\"pngFix\":%d}\n", o->IncludePngFix());
    return 0;
}

int CommandToolbarText(Plugin& plugin, int size) {
    // Guard bytes around the buffer catch writes outside it.
    const int guard = 16;
    char* block = static_cast<char*>(malloc(size + 2 * guard + 1));
    memset(block, '#', size + 2 * guard + 1);
    char* buffer = block + guard;
    int returned = plugin.toolbarText(buffer, size);
    bool intact = true;
    for (int i = 0; i < guard; ++i)
        if (block[i] != '#' || buffer[size + i] != '#') intact = false;
    printf("{\"returned\":%d,\"buffer\":", returned);
    if (size > 0) {
        const char* end = static_cast<const char*>(memchr(buffer, 0, size));
        PrintJsonString(buffer, end ? static_cast<int>(end - buffer) : size);
    } else {
        printf("null");
    }
    printf(",\"guardIntact\":%s}\n", intact ? "true" : "false");
    free(block);
    return intact ? 0 : Fail("GetToolbarText wrote outside its buffer");
}

int CommandToolbarBitmap(Plugin& plugin, const char* path) {
    HBITMAP bitmap = plugin.toolbarBitmap();
    if (!bitmap) return Fail("GetToolbarBitmap returned no bitmap");
    BITMAP info = {};
    GetObjectA(bitmap, sizeof info, &info);
    bool saved = SaveBitmapAsBmp(bitmap, path);
    bool deleted = DeleteObject(bitmap) != 0;
    printf("{\"width\":%ld,\"height\":%ld,\"bitsPixel\":%d,\"deviceDependent\":%s,\"deleted\":%s}\n", info.bmWidth,
           info.bmHeight, info.bmBitsPixel, info.bmBits ? "false" : "true", deleted ? "true" : "false");
    return saved ? 0 : Fail("cannot save ", path);
}

int CommandHtml(Plugin& plugin, int argc, char** argv) {
    if (argc < 1) return Usage("html needs body, head or tail");
    CPagewrightExtension* o = plugin.object;
    const char* which = argv[0];
    if (strcmp(which, "body") == 0) {
        const char* context = "";
        long repeat = 1;
        for (int i = 1; i < argc; i += 2) {
            if (i + 1 >= argc) return Usage("html body takes --publish CONTEXT and --repeat N");
            if (strcmp(argv[i], "--publish") == 0)
                context = argv[i + 1];
            else if (strcmp(argv[i], "--repeat") == 0 && (repeat = strtol(argv[i + 1], nullptr, 10)) > 0)
                continue;
            else
                return Usage("html body takes --publish CONTEXT and --repeat N");
        }
        LARGE_INTEGER frequency, start, end;
        QueryPerformanceFrequency(&frequency);
        QueryPerformanceCounter(&start);
        for (long i = 1; i < repeat; ++i) o->GetHtml(context);
        CString html = o->GetHtml(context);
        QueryPerformanceCounter(&end);
        if (repeat > 1)
            fprintf(stderr, "%.3f ms per GetHtml\n",
                    1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) / static_cast<double>(frequency.QuadPart) /
                        static_cast<double>(repeat));
        fwrite(html.GetText(), 1, html.GetLength(), stdout);
    } else if (strcmp(which, "head") == 0 && argc == 1) {
        CString html = o->GetHeaderHtml();
        fwrite(html.GetText(), 1, html.GetLength(), stdout);
    } else if (strcmp(which, "tail") == 0 && argc == 1) {
        CString html = o->GetStartofPageHTML();
        fwrite(html.GetText(), 1, html.GetLength(), stdout);
    } else if (strcmp(which, "design") == 0 && argc == 1) {
        // The stand-in is loaded by the snapshot renderer's first render.
        HMODULE stand_in = GetModuleHandleA("pwhtmlfile_double.dll");
        using LoadedFn = const char* (*)(int*);
        auto loaded = stand_in ? reinterpret_cast<LoadedFn>(GetProcAddress(stand_in, "HtmlDoubleLoaded")) : nullptr;
        if (!loaded)
            return Fail("no design view HTML: the plug-in rendered no snapshot with the htmlfile stand-in", "");
        int length = 0;
        const char* page = loaded(&length);
        fwrite(page, 1, static_cast<size_t>(length), stdout);
    } else {
        return Usage("unknown html part: ", which);
    }
    return 0;
}

// The property values as the object would store them, as a JSON object.
void PrintStoredValues(CPagewrightExtension* o) {
    Bytes record;
    StoreRecord(o, record);
    putchar('{');
    UINT at = 8;
    auto readLength = [&](UINT& length) -> bool {
        if (at + 1 > record.size) return false;
        length = record.data[at++];
        if (length < 255) return true;
        if (at + 2 > record.size) return false;
        length = *reinterpret_cast<WORD*>(record.data + at);
        at += 2;
        if (length < 0xffff) return true;
        if (at + 4 > record.size) return false;
        length = *reinterpret_cast<DWORD*>(record.data + at);
        at += 4;
        return true;
    };
    UINT pairs = 0;
    if (at + 2 <= record.size) {
        pairs = *reinterpret_cast<WORD*>(record.data + at);
        at += 2;
        if (pairs == 0xffff && at + 4 <= record.size) {
            pairs = *reinterpret_cast<DWORD*>(record.data + at);
            at += 4;
        }
    }
    for (UINT i = 0; i < pairs; ++i) {
        UINT keyLength = 0, valueLength = 0;
        if (!readLength(keyLength) || at + keyLength > record.size) break;
        const char* key = reinterpret_cast<const char*>(record.data + at);
        at += keyLength;
        if (!readLength(valueLength) || at + valueLength > record.size) break;
        const char* value = reinterpret_cast<const char*>(record.data + at);
        at += valueLength;
        if (i) putchar(',');
        PrintJsonString(key, keyLength);
        putchar(':');
        PrintJsonString(value, valueLength);
    }
    putchar('}');
}

int CommandUrls(Plugin& plugin, int argc, char** argv) {
    CPagewrightExtension* o = plugin.object;
    for (int i = 0; i < argc; ++i) {
        if (strcmp(argv[i], "--set-url") != 0 || i + 1 >= argc) return Usage("urls takes --set-url N=TEXT");
        char* arg = argv[++i];
        char* equals = strchr(arg, '=');
        int index = 0;
        if (!equals) return Usage("--set-url needs N=TEXT: ", arg);
        *equals = 0;
        if (!ParseInt(arg, index)) return Usage("--set-url needs a number: ", arg);
        o->SetURL(index, equals + 1);
    }
    int count = o->GetURLCount();
    printf("{\"count\":%d,\"urls\":[", count);
    for (int i = 0; i < count; ++i) {
        if (i) putchar(',');
        PrintCString(o->GetURL(i));
    }
    printf("],\"values\":");
    PrintStoredValues(o);
    printf("}\n");
    return 0;
}

int CommandSave(Plugin& plugin, const char* path) {
    Bytes record;
    StoreRecord(plugin.object, record);
    return WriteWholeFile(path, record.data, record.size) ? 0 : Fail("cannot write ", path);
}

int CommandDraw(Plugin& plugin, int argc, char** argv) {
    int width = 0, height = 0;
    if (argc < 3 || !ParseInt(argv[1], width) || !ParseInt(argv[2], height) || width <= 0 || height <= 0 ||
        width > 4096 || height > 4096)
        return Usage("draw needs FILE.bmp W H");
    RECT rect = {0, 0, width, height};
    bool page = false;
    for (int i = 3; i < argc; ++i) {
        if (strcmp(argv[i], "--rect") == 0 && i + 1 < argc) {
            long l, t, r, b;
            if (sscanf(argv[++i], "%ld,%ld,%ld,%ld", &l, &t, &r, &b) != 4) return Usage("--rect needs L,T,R,B");
            rect = {l, t, r, b};
        } else if (strcmp(argv[i], "--page") == 0) {
            page = true;
        } else {
            return Usage("draw takes only --rect L,T,R,B and --page");
        }
    }
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    HDC dc = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap) return Fail("cannot make the drawing surface");
    HGDIOBJ old = SelectObject(dc, bitmap);
    int stride = (width * 3 + 3) & ~3;
    memset(bits, 0xff, stride * height);
    for (int y = 0; page && y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (((x / 8 + y / 8) & 1) == 0) continue;
            BYTE* pixel = static_cast<BYTE*>(bits) + y * stride + x * 3;
            pixel[0] = 0xF5;  // blue, green, red
            pixel[1] = 0xE0;
            pixel[2] = 0xCF;
        }
    }
    HGDIOBJ fontBefore = GetCurrentObject(dc, OBJ_FONT);
    COLORREF textBefore = GetTextColor(dc);
    int modeBefore = GetBkMode(dc);
    plugin.object->Draw(dc, &rect);
    GdiFlush();
    // The host's DC must come back as it was given.
    bool restored = GetCurrentObject(dc, OBJ_FONT) == fontBefore && GetTextColor(dc) == textBefore &&
                    GetBkMode(dc) == modeBefore && GetCurrentObject(dc, OBJ_BITMAP) == bitmap;
    SelectObject(dc, old);
    bool saved = SaveBitmapAsBmp(bitmap, argv[0]);
    DeleteObject(bitmap);
    DeleteDC(dc);
    printf("{\"dcRestored\":%s}\n", restored ? "true" : "false");
    if (!saved) return Fail("cannot save ", argv[0]);
    return restored ? 0 : Fail("Draw left the device context changed");
}

// The host's frame shows the object as the design view would.
CPagewrightExtension* g_shownObject = nullptr;

LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        RECT client;
        GetClientRect(window, &client);
        FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        RECT object = {24, 24, 214, 214};
        if (g_shownObject) g_shownObject->Draw(dc, &object);
        EndPaint(window, &paint);
        return 0;
    }
    return DefWindowProcA(window, message, w, l);
}

// The dialog over a real frame window; with steps, driven by them (see
// dialog_script.h), without, left to whoever sits at the screen. Reports
// what the dialog showed, the values the object keeps afterwards and its
// published HTML.
int CommandProperties(Plugin& plugin, int stepCount, char** steps) {
    WNDCLASSA frameClass = {};
    frameClass.lpfnWndProc = FrameProc;
    frameClass.hInstance = GetModuleHandleA(nullptr);
    frameClass.lpszClassName = "PwHostFrame";
    frameClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    RegisterClassA(&frameClass);
    g_shownObject = plugin.object;
    HWND frame = CreateWindowExA(0, "PwHostFrame", "pwhost", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1000, 640, nullptr,
                                 nullptr, frameClass.hInstance, nullptr);
    if (!frame) return Fail("cannot create the host window");
    UpdateWindow(frame);
    // "publish OUTPUT" is no dialog step: it runs CopyFiles afterwards.
    const char* publishTo = nullptr;
    if (stepCount > 0 && strncmp(steps[stepCount - 1], "publish ", 8) == 0) publishTo = steps[--stepCount] + 8;
    DialogScriptReport report;
    if (stepCount > 0) StartDialogScript(frame, stepCount, steps, &report);
    plugin.object->Properties(frame);
    StopDialogScript();
    if (publishTo) plugin.object->CopyFiles(publishTo, publishTo);
    bool frameEnabled = IsWindowEnabled(frame) != FALSE;
    g_shownObject = nullptr;
    DestroyWindow(frame);
    printf("{\"returned\":true,\"frameEnabled\":%s", frameEnabled ? "true" : "false");
    if (stepCount > 0) {
        printf(",\"frameDisabled\":%s,\"caption\":", report.frameDisabled ? "true" : "false");
        PrintJsonString(report.caption);
        printf(",\"developer\":");
        PrintJsonString(report.developer);
        printf(",\"website\":");
        PrintJsonString(report.website);
        printf(",\"rows\":%s", report.rows ? report.rows : "null");
    }
    printf(",\"values\":");
    PrintStoredValues(plugin.object);
    printf(",\"html\":");
    CString html = plugin.object->GetHtml("");
    PrintCString(html);
    printf(",\"head\":");
    CString head = plugin.object->GetHeaderHtml();
    PrintCString(head);
    printf("}\n");
    free(report.rows);
    if (stepCount > 0 && !report.found) return Fail("the Properties dialog never appeared");
    if (report.failed) return Fail("script: ", report.failure);
    return 0;
}

// The run time as the plug-in leaves it: one CDynLinkLibrary for the loaded
// plug-in, none after unloading it, no string freed that MFC did not make.
int CommandRuntime(Plugin& plugin) {
    int afterLoad = StandInLibrariesOf(plugin.module);
    plugin.destroy(plugin.object);
    plugin.object = nullptr;
    int liveStrings = StandInLiveStrings();
    HMODULE module = plugin.module;
    FreeLibrary(plugin.module);
    plugin.module = nullptr;
    int afterUnload = StandInLibrariesOf(module);
    printf("{\"librariesAfterLoad\":%d,\"librariesAfterUnload\":%d,\"liveStrings\":%d,\"foreignFrees\":%d}\n",
           afterLoad, afterUnload, liveStrings, StandInForeignFrees());
    return 0;
}

// A careless host: null pointers and indexes out of range everywhere the
// declaration allows them. The plug-in must answer with empty results.
int CommandOddArguments(Plugin& plugin) {
    CPagewrightExtension* o = plugin.object;
    o->Draw(nullptr, nullptr);
    RECT rect = {0, 0, 10, 10};
    o->Draw(nullptr, &rect);
    o->Move(nullptr);
    CString html = o->GetHtml(nullptr);
    o->CopyFiles(nullptr, nullptr);
    o->SetUniqueName(nullptr);
    o->SetSiteStructure(nullptr);
    o->SetURL(-1, nullptr);
    o->SetURL(1000000, "x");
    CString url = o->GetURL(-5);
    CString beyond = o->GetURL(0x7fffffff);
    // Null references cannot be written in C++: through the slot instead.
    typedef void(__thiscall * MinimumSizeSlot)(CPagewrightExtension*, int*, int*);
    reinterpret_cast<MinimumSizeSlot>((*reinterpret_cast<void***>(o))[10])(o, nullptr, nullptr);
    o->SetID(-1);
    int size = plugin.toolbarText(nullptr, 16);
    int negative = plugin.toolbarText(nullptr, -3);
    printf("{\"survived\":true,\"urlLength\":%d,\"toolbarNull\":%d,\"toolbarNegative\":%d}\n",
           url.GetLength() + beyond.GetLength(), size, negative);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    _setmode(_fileno(stdout), _O_BINARY);
    if (argc < 3) return Usage("usage: pwhost DLL [--set VAR=VALUE]... [--record FILE] [--site FILE] COMMAND ...");

    Bytes setRecordPairs;
    UINT setCount = 0;
    const char* recordPath = nullptr;
    const char* sitePath = nullptr;
    int at = 2;
    for (; at < argc && strncmp(argv[at], "--", 2) == 0; ++at) {
        if (at + 1 >= argc) return Usage("missing value after ", argv[at]);
        const char* option = argv[at];
        char* value = argv[++at];
        if (strcmp(option, "--set") == 0) {
            char* equals = strchr(value, '=');
            if (!equals) return Usage("--set needs VAR=VALUE: ", value);
            AppendArchiveString(setRecordPairs, value, static_cast<UINT>(equals - value));
            AppendArchiveString(setRecordPairs, equals + 1, static_cast<UINT>(strlen(equals + 1)));
            ++setCount;
        } else if (strcmp(option, "--record") == 0) {
            recordPath = value;
        } else if (strcmp(option, "--site") == 0) {
            sitePath = value;
        } else {
            return Usage("unknown option ", option);
        }
    }
    if (at >= argc) return Usage("missing command");
    const char* command = argv[at++];
    int restc = argc - at;
    char** rest = argv + at;

    OleInitialize(nullptr);
    Plugin plugin;
    if (!LoadPlugin(argv[1], plugin)) return Fail("cannot load the plug-in ", argv[1]);

    int code = 0;
    if (strcmp(command, "toolbar-text") == 0) {
        int size = 0;
        if (restc != 1 || !ParseInt(rest[0], size) || size < 0 || size > 1 << 20)
            return Usage("toolbar-text needs a buffer size");
        return CommandToolbarText(plugin, size);
    }
    if (strcmp(command, "toolbar-bitmap") == 0) {
        if (restc != 1) return Usage("toolbar-bitmap needs FILE.bmp");
        return CommandToolbarBitmap(plugin, rest[0]);
    }
    if (strcmp(command, "delete-null") == 0) {
        plugin.destroy(nullptr);
        printf("{\"returned\":true}\n");
        return 0;
    }

    plugin.object = plugin.create();
    if (!plugin.object) return Fail("CreateExtensionObject returned null");

    int recordId = 0;
    if (recordPath) {
        Bytes record;
        if (!ReadWholeFile(recordPath, record)) return Fail("cannot read ", recordPath);
        if (record.size >= 8) recordId = *reinterpret_cast<int*>(record.data + 4);
        LoadRecord(plugin.object, record.data, record.size);
    }
    if (setCount > 0) {
        Bytes record;
        record.AppendDword(100);
        record.AppendDword(static_cast<DWORD>(recordId));
        if (setCount < 0xffff) {
            record.AppendWord(static_cast<WORD>(setCount));
        } else {
            record.AppendWord(0xffff);
            record.AppendDword(setCount);
        }
        record.Append(setRecordPairs.data, setRecordPairs.size);
        LoadRecord(plugin.object, record.data, record.size);
    }
    if (sitePath) {
        Bytes site;
        if (!ReadWholeFile(sitePath, site)) return Fail("cannot read ", sitePath);
        site.AppendByte(0);
        plugin.object->SetSiteStructure(reinterpret_cast<const char*>(site.data));
    }
    RECT position = {10, 20, 310, 220};
    plugin.object->Move(&position);

    if (strcmp(command, "info") == 0 && restc == 0) {
        code = CommandInfo(plugin);
    } else if (strcmp(command, "html") == 0) {
        code = CommandHtml(plugin, restc, rest);
    } else if (strcmp(command, "copy-files") == 0 && restc == 2) {
        int returned = plugin.object->CopyFiles(rest[0], rest[1]);
        printf("{\"returned\":%d}\n", returned);
    } else if (strcmp(command, "urls") == 0) {
        code = CommandUrls(plugin, restc, rest);
    } else if (strcmp(command, "save") == 0 && restc == 1) {
        code = CommandSave(plugin, rest[0]);
    } else if (strcmp(command, "draw") == 0) {
        code = CommandDraw(plugin, restc, rest);
    } else if (strcmp(command, "properties") == 0) {
        code = CommandProperties(plugin, restc, rest);
    } else if (strcmp(command, "odd-arguments") == 0 && restc == 0) {
        code = CommandOddArguments(plugin);
    } else if (strcmp(command, "runtime") == 0 && restc == 0) {
        return CommandRuntime(plugin);
    } else {
        code = Usage("unknown command or wrong arguments: ", command);
    }
    fflush(stdout);

    plugin.destroy(plugin.object);
    if (StandInForeignFrees() != 0) return Fail("the plug-in handed out strings that MFC did not make");
    return code;
}
