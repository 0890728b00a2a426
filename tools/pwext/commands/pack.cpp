// pwext pack: a definition source folder (manifest.txt and the files it
// names) packed into an extension definition, as the build packs the
// built-in one.
#include "command.h"
#include "definition/manifest.h"
#include "definition/packer.h"
#include "definition_checks.h"
#include "pwext_io.h"

namespace pwext {
namespace {

// The line of every element of the folder's manifest in document order: the
// packed definition has the same elements in the same order, so problems
// found in it point at the manifest.
std::vector<int> ManifestLines(const std::string& folder) {
    definition::ManifestElement root = definition::ParseManifest(ReadInput(folder + "/" + definition::kManifestName));
    std::vector<int> lines;
    std::vector<const definition::ManifestElement*> stack = {&root};
    while (!stack.empty()) {
        const definition::ManifestElement* element = stack.back();
        stack.pop_back();
        lines.push_back(element->line);
        for (auto it = element->children.rbegin(); it != element->children.rend(); ++it) stack.push_back(&*it);
    }
    return lines;
}

int RunPack(Args args) {
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
    RefuseDefinitionErrors(xml, "pack", folder + "/" + definition::kManifestName, ManifestLines(folder));
    if (output.empty() || output == "-")
        WriteOutput(xml);
    else
        WriteFileAtomically(output, xml);
    return 0;
}

}  // namespace

PWEXT_COMMAND(pack, "pack", "FOLDER [-o FILE]: pack a definition source folder into extension.xml", RunPack);

}  // namespace pwext
