// The rest of CPagewrightExtension's exported members (the .def file gives
// them their MSVC-decorated names): constructor, destructor and the
// protected operations. Same conventions as the slots: thiscall with an
// explicit self, CString results through the hidden result pointer.
#include <windows.h>

#include <string>

#include "win/extension_object.h"
#include "win/mfc42_runtime.h"
#include "win/thiscall.h"

using mfc42::CStringLayout;

extern "C" {

CPagewrightExtension* PW_THISCALL PwConstruct(CPagewrightExtension* self) { return ConstructExtension(self); }

void PW_THISCALL PwDestruct(CPagewrightExtension* self) { DestroyExtension(self); }

void PW_THISCALL PwReplaceVariables(CPagewrightExtension* self, CStringLayout* text) {
    CExtensionEngine* engine = EngineOf(self);
    if (!engine || !text) return;
    try {
        std::string replaced(mfc42::View(text));
        engine->ReplaceVariables(replaced);
        mfc42::AssignString(text, replaced);
    } catch (...) {
    }
}

void PW_THISCALL PwUpdateHtml(CPagewrightExtension* self, int publishing) {
    CExtensionEngine* engine = EngineOf(self);
    if (!engine) return;
    try {
        engine->UpdateHtml(publishing);
    } catch (...) {
    }
}

CStringLayout* PW_THISCALL PwGetGalleryCode(CPagewrightExtension* self, CStringLayout* result, CXmlElement* property,
                                            const char* value, int keepPaths) {
    std::string markup;
    CExtensionEngine* engine = EngineOf(self);
    if (engine && property) {
        try {
            markup = engine->GetGalleryCode(*property, value ? value : "", keepPaths);
        } catch (...) {
            markup.clear();
        }
    }
    mfc42::ConstructString(result, markup);
    return result;
}

void PW_THISCALL PwProcessFiles(CPagewrightExtension* self, CXmlElement* parent, const char* folder) {
    CExtensionEngine* engine = EngineOf(self);
    if (!engine || !parent) return;
    try {
        engine->ProcessFiles(*parent, folder ? folder : "");
    } catch (...) {
    }
}

// Accepts a font by value and deliberately does nothing with it.
void PW_THISCALL PwSetFont(CPagewrightExtension*, LOGFONTA) {}

}  // extern "C"
