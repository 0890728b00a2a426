// CPagewrightExtension's operations as the host calls them: MSVC thiscall
// (this in ECX, arguments on the stack, callee pops), a CString result
// constructed by us at the hidden result address that precedes the
// arguments and returned in EAX, references as pointers. g++'s own C++ ABI
// differs, so the table is written out by hand from plain functions with an
// explicit `self`, in the host's slot order.
//
// No operation lets anything escape to the host: a missing object, null
// arguments or an exception inside give the operation's empty answer. The
// one deliberate exception is Serialize's end-of-file, raised for the host.
#include <windows.h>

#include <string>

#include "render/design_view.h"
#include "ui/properties_dialog.h"
#include "win/archive_byte_stream.h"
#include "win/extension_object.h"
#include "win/mfc42_runtime.h"
#include "win/thiscall.h"

using mfc42::CStringLayout;

namespace {

// Fills the host's result slot; an empty string when there is no text.
CStringLayout* Return(CStringLayout* result, const std::string& text) {
    mfc42::ConstructString(result, text);
    return result;
}

// Runs body for a string result; any failure gives the empty string.
template <typename Body>
CStringLayout* StringResult(CStringLayout* result, CPagewrightExtension* self, Body body) {
    std::string text;
    try {
        if (CExtensionEngine* engine = EngineOf(self)) text = body(*engine);
    } catch (...) {
        text.clear();
    }
    return Return(result, text);
}

template <typename Body>
void Guarded(CPagewrightExtension* self, Body body) {
    try {
        if (CExtensionEngine* engine = EngineOf(self)) body(*engine);
    } catch (...) {
    }
}

const char* OrEmpty(const char* text) { return text ? text : ""; }

enum class SerializeOutcome { kDone, kEndOfData };

// Everything Serialize does that owns resources, finished before returning.
__attribute__((noinline)) SerializeOutcome SerializeParts(CPagewrightExtension* self, void* archive) {
    CExtensionEngine* engine = EngineOf(self);
    if (!engine || !archive || !mfc42::CanTransfer()) return SerializeOutcome::kDone;
    try {
        if (mfc42::IsLoading(archive)) {
            CArchiveByteSource source(archive);
            if (!engine->LoadRecord(source).ok()) return SerializeOutcome::kEndOfData;
        } else {
            CArchiveByteSink sink(archive);
            engine->StoreRecord(sink);
        }
    } catch (...) {
    }
    return SerializeOutcome::kDone;
}

// Pair by pair, as the host's run time copies its maps: inside a hash
// bucket the copy lists the keys in the opposite order, so a map copied
// there and back has its old order again (and the project record with it).
void CopyPairs(const CHashedStringMap& from, CHashedStringMap& to) {
    from.ForEach([&to](const std::string& key, const std::string& value) { to.Set(key, value); });
}

}  // namespace

extern "C" {

// Slot 0: the deleting destructor; bit 0 of flags frees the memory.
void* PW_THISCALL PwDeletingDestructor(CPagewrightExtension* self, unsigned flags) {
    DestroyExtension(self);
    if (self && (flags & 1)) free(self);
    return self;
}

int PW_THISCALL PwGetVersion(CPagewrightExtension*) { return 2; }

void PW_THISCALL PwDraw(CPagewrightExtension* self, HDC dc, const RECT* rect) {
    if (!dc || !rect) return;
    Guarded(self, [&](CExtensionEngine& engine) {
        DrawDesignView(dc, *rect, engine.GetRenderMethod(), engine.GetToolbarText(), self->parts->preview,
                       self->parts->snapshot);
    });
}

// The dialog edits a copy of the values; only OK gives the copy back, and
// the design-view HTML is regenerated from it.
void PW_THISCALL PwProperties(CPagewrightExtension* self, HWND parent) {
    Guarded(self, [&](CExtensionEngine& engine) {
        CPropertiesDialog dialog(&engine.GetDefinition(), &engine.GetSiteStructureDocument());
        CopyPairs(engine.GetValues(), dialog.Values());
        if (dialog.DoModal(parent) != IDOK) return;
        CHashedStringMap values;
        CopyPairs(dialog.Values(), values);
        engine.ReplaceValues(values);
    });
}

CStringLayout* PW_THISCALL PwGetHtml(CPagewrightExtension* self, CStringLayout* result, const char* context) {
    return StringResult(result, self, [&](CExtensionEngine& engine) { return engine.GetHtml(OrEmpty(context)); });
}

CStringLayout* PW_THISCALL PwGetHeaderHtml(CPagewrightExtension* self, CStringLayout* result) {
    return StringResult(result, self, [](CExtensionEngine& engine) { return engine.GetHeaderHtml(); });
}

int PW_THISCALL PwCopyFiles(CPagewrightExtension* self, const char* outputFolder, const char* imageFolder) {
    Guarded(self, [&](CExtensionEngine& engine) { engine.CopyFiles(OrEmpty(outputFolder), OrEmpty(imageFolder)); });
    return 1;
}

void PW_THISCALL PwMove(CPagewrightExtension* self, const RECT* rect) {
    if (!rect) return;
    Guarded(self, [&](CExtensionEngine& engine) {
        ExtensionRect position;
        position.left = rect->left;
        position.top = rect->top;
        position.right = rect->right;
        position.bottom = rect->bottom;
        engine.Move(position);
    });
}

// Holds nothing of its own: when the record ends early, the archive's
// exception is raised from here after all our clean-up has run, and unwinds
// straight to the host.
void PW_THISCALL PwSerialize(CPagewrightExtension* self, void* archive) {
    if (SerializeParts(self, archive) == SerializeOutcome::kEndOfData) mfc42::ThrowEndOfFile(archive);
}

int PW_THISCALL PwUseDIV(CPagewrightExtension* self) {
    CExtensionEngine* engine = EngineOf(self);
    return engine ? (engine->UseDIV() ? 1 : 0) : 1;
}

void PW_THISCALL PwGetMinimumSize(CPagewrightExtension* self, int* width, int* height) {
    int w = 10, h = 10;
    if (CExtensionEngine* engine = EngineOf(self)) engine->GetMinimumSize(w, h);
    if (width) *width = w;
    if (height) *height = h;
}

CStringLayout* PW_THISCALL PwGetBkColor(CPagewrightExtension*, CStringLayout* result) { return Return(result, {}); }
CStringLayout* PW_THISCALL PwGetBkImage(CPagewrightExtension*, CStringLayout* result) { return Return(result, {}); }
CStringLayout* PW_THISCALL PwGetUniqueName(CPagewrightExtension*, CStringLayout* result) { return Return(result, {}); }

// The object keeps no unique name.
void PW_THISCALL PwSetUniqueName(CPagewrightExtension*, const char*) {}

void PW_THISCALL PwSetSiteStructure(CPagewrightExtension* self, const char* text) {
    Guarded(self, [&](CExtensionEngine& engine) { engine.SetSiteStructure(OrEmpty(text)); });
}

void PW_THISCALL PwSetID(CPagewrightExtension* self, int id) {
    Guarded(self, [&](CExtensionEngine& engine) { engine.SetID(id); });
}

int PW_THISCALL PwIncludePngFix(CPagewrightExtension*) { return 0; }

int PW_THISCALL PwGetURLCount(CPagewrightExtension* self) {
    int count = 0;
    Guarded(self, [&](CExtensionEngine& engine) { count = engine.GetURLCount(); });
    return count;
}

CStringLayout* PW_THISCALL PwGetURL(CPagewrightExtension* self, CStringLayout* result, int index) {
    return StringResult(result, self, [&](CExtensionEngine& engine) { return engine.GetURL(index); });
}

void PW_THISCALL PwSetURL(CPagewrightExtension* self, int index, const char* url) {
    Guarded(self, [&](CExtensionEngine& engine) { engine.SetURL(index, OrEmpty(url)); });
}

CStringLayout* PW_THISCALL PwGetStartofPageHTML(CPagewrightExtension* self, CStringLayout* result) {
    return StringResult(result, self, [](CExtensionEngine& engine) { return engine.GetStartofPageHTML(); });
}

const void* const PwExtensionSlots[22] = {
    reinterpret_cast<const void*>(&PwDeletingDestructor),  // 0
    reinterpret_cast<const void*>(&PwGetVersion),          // 1
    reinterpret_cast<const void*>(&PwDraw),                // 2
    reinterpret_cast<const void*>(&PwProperties),          // 3
    reinterpret_cast<const void*>(&PwGetHtml),             // 4
    reinterpret_cast<const void*>(&PwGetHeaderHtml),       // 5
    reinterpret_cast<const void*>(&PwCopyFiles),           // 6
    reinterpret_cast<const void*>(&PwMove),                // 7
    reinterpret_cast<const void*>(&PwSerialize),           // 8
    reinterpret_cast<const void*>(&PwUseDIV),              // 9
    reinterpret_cast<const void*>(&PwGetMinimumSize),      // 10
    reinterpret_cast<const void*>(&PwGetBkColor),          // 11
    reinterpret_cast<const void*>(&PwGetBkImage),          // 12
    reinterpret_cast<const void*>(&PwGetUniqueName),       // 13
    reinterpret_cast<const void*>(&PwSetUniqueName),       // 14
    reinterpret_cast<const void*>(&PwSetSiteStructure),    // 15
    reinterpret_cast<const void*>(&PwSetID),               // 16
    reinterpret_cast<const void*>(&PwIncludePngFix),       // 17
    reinterpret_cast<const void*>(&PwGetURLCount),         // 18
    reinterpret_cast<const void*>(&PwGetURL),              // 19
    reinterpret_cast<const void*>(&PwSetURL),              // 20
    reinterpret_cast<const void*>(&PwGetStartofPageHTML),  // 21
};

}  // extern "C"
