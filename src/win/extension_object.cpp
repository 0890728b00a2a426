#include "win/extension_object.h"

#include <windows.h>

#include <new>
#include <vector>

#include "html/definition_model.h"
#include "win/definition_resource.h"
#include "xml/base64.h"

namespace {

ExtensionServices ServicesOf(CFileSystem* fileSystem, CXsltTransformer* transformer, CHtmlSnapshot* snapshot) {
    ExtensionServices services;
    services.fileSystem = fileSystem;
    services.transformer = transformer;
    services.onDesignHtml = [snapshot](const std::string& html) { snapshot->Render(html); };
    return services;
}

// The picture travels Base64-encoded in the definition's IMAGE element. The
// picture loaders read files, so the decoded bytes go through a temporary
// file "~pw....tmp" that is deleted again at once. A picture that does not
// decode leaves the preview empty.
void LoadPreviewPicture(CPreviewImage& preview, CXmlDocument& definition) {
    CXmlElement* image = definition.GetRoot()->FindChild(definition::kImage);
    if (!image) return;
    std::string text = image->GetValue();
    int length = static_cast<int>(text.size());
    std::vector<unsigned char> bytes(text.size() + 1, 0);
    if (!Base64Decode(text.data(), length, bytes.data(), &length)) return;

    char folder[MAX_PATH] = {};
    char file[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, folder);
    GetTempFileNameA(folder, "~pw", 0, file);
    HANDLE handle =
        CreateFileA(file, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(handle, bytes.data(), static_cast<DWORD>(length), &written, nullptr);
        CloseHandle(handle);
    }
    preview.Load(file, nullptr);
    DeleteFileA(file);
}

}  // namespace

CExtensionParts::CExtensionParts()
    : fileSystem(CreateNativeFileSystem()),
      engine(LoadDefinitionText(), ServicesOf(fileSystem.get(), &transformer, &snapshot)) {
    LoadPreviewPicture(preview, engine.GetDefinition());
}

CPagewrightExtension* ConstructExtension(CPagewrightExtension* self) {
    if (!self) return self;
    self->slots = PwExtensionSlots;
    self->parts = nullptr;
    try {
        self->parts = new CExtensionParts;
    } catch (...) {
        self->parts = nullptr;
    }
    return self;
}

void DestroyExtension(CPagewrightExtension* self) {
    if (!self) return;
    delete self->parts;
    self->parts = nullptr;
}
