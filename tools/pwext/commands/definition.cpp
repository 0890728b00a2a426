// pwext definition: the built-in definition, byte for byte as the plug-in
// carries it in its "extension.xml" resource.
#include "command.h"
#include "definition/builtin_definition.h"
#include "pwext_io.h"

namespace pwext {
namespace {

int RunDefinition(Args args) {
    if (!args.empty()) throw UsageError{"usage: pwext definition (prints the built-in definition)"};
    WriteOutput(BuiltinDefinition());
    return 0;
}

}  // namespace

PWEXT_COMMAND(definition, "definition", "print the built-in extension definition (extension.xml)", RunDefinition);

}  // namespace pwext
