#include "win/definition_resource.h"

#include "platform/own_module.h"

std::string LoadDefinitionText() {
    HMODULE module = OwnModule();
    HRSRC found = FindResourceA(module, "extension.xml", "XML");
    if (!found) return {};
    HGLOBAL loaded = LoadResource(module, found);
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    DWORD size = SizeofResource(module, found);
    if (!bytes || size == 0) return {};
    return std::string(static_cast<const char*>(bytes), size);
}
