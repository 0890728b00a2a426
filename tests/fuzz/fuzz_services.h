#pragma once
// What the fuzz targets share: an engine over an in-memory file system and a
// transformer stand-in (the XSLT library is not what is fuzzed here), and a
// way to give every property of a definition a fuzzed value.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

#include "extension/extension_engine.h"
#include "extension/test_definition.h"
#include "html/definition_model.h"

// Aborts (a finding) when a property every input must keep is broken.
inline void Require(bool condition) {
    if (!condition) std::abort();
}

struct FuzzedEngine {
    testdef::MemoryFileSystem files;
    testdef::RecordingTransformer transformer;
    CExtensionEngine engine;

    FuzzedEngine(std::string_view definition, PathStyle style = PathStyle::kWindows)
        : files(style), engine(definition, Services()) {}

    // Gives each property (in document order) the next fuzzed value.
    void SetValues(FuzzedDataProvider& in) {
        ForEachProperty(*engine.GetDefinition().GetRoot(), [&](const CXmlElement& property) {
            if (in.remaining_bytes() == 0) return;
            engine.SetValue(ReadPropertyRule(property).variable, in.ConsumeRandomLengthString(2048));
        });
    }

private:
    ExtensionServices Services() {
        ExtensionServices s;
        s.fileSystem = &files;
        s.transformer = &transformer;
        return s;
    }
};
