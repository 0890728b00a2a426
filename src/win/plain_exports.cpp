// The four functions the host finds by name. Default C calling convention,
// undecorated names (see slidewave.def).
#include <windows.h>

#include <cstdlib>
#include <string>

#include "extension/definition_root.h"
#include "html/definition_model.h"
#include "render/bitmap_stream_reader.h"
#include "win/definition_resource.h"
#include "win/extension_object.h"
#include "platform/own_module.h"
#include "win/thiscall.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace {

constexpr WORD kToolbarBitmapResource = 31550;

// The definition's BITMAP picture as a device-dependent bitmap, or null.
HBITMAP DefinitionBitmap() {
    CXmlDocument definition;
    definition.Parse(LoadDefinitionText());
    CXmlElement* element = definition.GetRoot()->FindChild(definition::kBitmap);
    if (!element) return nullptr;
    std::string text = element->GetValue();
    std::string bytes(text.size() + 1, '\0');
    Base64Outcome decoded =
        Base64DecodeInto(text.data(), static_cast<int>(text.size()), reinterpret_cast<unsigned char*>(&bytes[0]),
                         static_cast<int>(text.size()));
    if (!decoded.ok) return nullptr;
    bytes.resize(static_cast<std::size_t>(decoded.length));
    HBITMAP bitmap = nullptr;
    return LoadBitmapFromStream(bytes, &bitmap) ? bitmap : nullptr;
}

}  // namespace

extern "C" {

CPagewrightExtension* CreateExtensionObject() {
    void* memory = std::malloc(sizeof(CPagewrightExtension));
    if (!memory) return nullptr;
    CPagewrightExtension* object = ConstructExtension(static_cast<CPagewrightExtension*>(memory));
    if (!object->parts) {
        std::free(memory);
        return nullptr;
    }
    return object;
}

// Destroys through slot 0 with the freeing flag, as the host's own delete would.
void DeleteExtensionObject(CPagewrightExtension* object) {
    if (!object) return;
    using DeletingDestructor = void*(PW_THISCALL*)(CPagewrightExtension*, unsigned);
    reinterpret_cast<DeletingDestructor>(const_cast<void*>(object->slots[0]))(object, 1);
}

int GetToolbarText(char* buffer, int size) {
    std::string title;
    try {
        title = ReadDefinitionRootAttributes(LoadDefinitionText()).title;
    } catch (...) {
        title = "Untitled";
    }
    if (buffer && size > 0) lstrcpynA(buffer, title.c_str(), size);
    int length = static_cast<int>(title.size());
    return length < size ? length : size;
}

// The caller owns the returned bitmap.
HBITMAP GetToolbarBitmap() {
    HBITMAP bitmap = nullptr;
    try {
        bitmap = DefinitionBitmap();
    } catch (...) {
        bitmap = nullptr;
    }
    if (!bitmap) bitmap = LoadBitmapA(OwnModule(), MAKEINTRESOURCEA(kToolbarBitmapResource));
    return bitmap;
}

}  // extern "C"
