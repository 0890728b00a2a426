// pwext pack: a definition source folder (manifest.txt and the files it
// names) packed into an extension definition, as the build packs the
// built-in one.
#include "command.h"
#include "definition/packer.h"
#include "host_options.h"
#include "io.h"

namespace pwext {
namespace {

int RunPack(const Args& args) {
    const char* usage = "usage: pwext pack FOLDER [-o FILE]";
    std::string folder, output;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-o") {
            if (i + 1 >= args.size()) throw UsageError{std::string("pack: -o needs a file name; ") + usage};
            output = args[++i];
        } else if (args[i].size() > 1 && args[i][0] == '-') {
            throw UsageError{"pack: unknown option '" + args[i] + "'"};
        } else if (folder.empty()) {
            folder = args[i];
        } else {
            throw UsageError{std::string("pack: give one folder; ") + usage};
        }
    }
    if (folder.empty()) throw UsageError{usage};

    std::string xml;
    try {
        xml = definition::PackFolder(folder);
    } catch (const definition::DefinitionError& e) {
        throw Failure{"pack: " + folder + ": " + e.what()};
    }
    RefuseEntriesLeavingTheirFolder(xml, "pack", folder);
    if (output.empty() || output == "-")
        WriteOutput(xml);
    else
        WriteFileAtomically(output, xml);
    return 0;
}

}  // namespace

PWEXT_COMMAND(pack, "pack", "FOLDER [-o FILE]: pack a definition source folder into extension.xml", RunPack);

}  // namespace pwext
