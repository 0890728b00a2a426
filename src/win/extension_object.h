#pragma once
// The object the host holds. Its first member points at the table of 22
// operations (extension_slots.cpp) that the host calls by slot with MSVC's
// conventions; the rest of it is ours. It stays two pointers wide, so a host
// that allocates it from an MSVC declaration of the class always has room.
//
// Behind it, CExtensionParts holds the engine, the Windows services the
// engine borrows (the Windows file system and the MSXML transformer), the
// preview picture that render method 1 draws and the HTML snapshot of render
// method 2, which every design-view update of the engine renders again.
#include <memory>

#include "extension/extension_engine.h"
#include "platform/file_system.h"
#include "render/html_snapshot.h"
#include "render/preview_image.h"
#include "platform/msxml_transformer.h"

struct CExtensionParts {
    // Builds the engine, then loads the preview picture from the
    // definition's IMAGE element when there is one.
    CExtensionParts();

    CPreviewImage preview;
    // Before the engine: the engine's constructor renders the first snapshot.
    CHtmlSnapshot snapshot;
    std::unique_ptr<CFileSystem> fileSystem;
    CMsxmlTransformer transformer;
    CExtensionEngine engine;
};

struct CPagewrightExtension {
    const void* const* slots;
    CExtensionParts* parts;
};

// The table the host sees (exported as CPagewrightExtension's vftable).
extern "C" const void* const PwExtensionSlots[22];

// Constructs in place: the slot table, then the parts. On failure (no
// memory) parts stays null and every operation answers with its defaults.
CPagewrightExtension* ConstructExtension(CPagewrightExtension* self);
// Destroys the parts; the memory itself is the caller's.
void DestroyExtension(CPagewrightExtension* self);

// The engine behind an object, or null for a null or failed object.
inline CExtensionEngine* EngineOf(CPagewrightExtension* self) {
    return self && self->parts ? &self->parts->engine : nullptr;
}
