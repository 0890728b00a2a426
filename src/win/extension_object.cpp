#include "win/extension_object.h"

#include <new>

#include "win/definition_resource.h"

namespace {

ExtensionServices ServicesOf(CFileSystem* fileSystem, CXsltTransformer* transformer) {
    ExtensionServices services;
    services.fileSystem = fileSystem;
    services.transformer = transformer;
    return services;
}

}  // namespace

CExtensionParts::CExtensionParts()
    : fileSystem(CreateNativeFileSystem()),
      engine(LoadDefinitionText(), ServicesOf(fileSystem.get(), &transformer)) {}

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
