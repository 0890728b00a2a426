// pwext unpack: an extension definition turned into a source folder (a
// manifest and the decoded templates, payload files and pictures) that
// "pwext pack" turns back into the same bytes.
#include <filesystem>
#include <iostream>

#include "command.h"
#include "definition/unpacker.h"
#include "pwext_io.h"

namespace pwext {
namespace {

namespace fs = std::filesystem;

int RunUnpack(Args args) {
    if (args.size() != 2) throw UsageError{"usage: pwext unpack FILE FOLDER (FILE may be '-' for standard input)"};
    const std::string& file = args[0];
    const fs::path folder(args[1]);

    definition::UnpackedDefinition unpacked;
    try {
        unpacked = definition::UnpackDefinition(ReadInput(file));
    } catch (const definition::DefinitionError& e) {
        throw Failure{"unpack: " + file + ": " + e.what()};
    }

    // Never mix an unpacked definition with files already there.
    std::error_code error;
    if (fs::exists(folder, error)) {
        if (!fs::is_directory(folder, error)) throw Failure{"unpack: '" + folder.string() + "' is not a folder"};
        if (!fs::is_empty(folder, error)) throw Failure{"unpack: '" + folder.string() + "' is not empty"};
    }
    auto makeFolder = [&](const fs::path& path) {
        fs::create_directories(path, error);
        if (error) throw Failure{"unpack: cannot create '" + path.string() + "': " + error.message()};
    };
    makeFolder(folder);
    for (const definition::UnpackedFile& f : unpacked.files) {
        fs::path target = folder / fs::path(f.path);
        makeFolder(target.parent_path());
        WriteFileAtomically(target.string(), f.bytes);
    }
    WriteFileAtomically((folder / "manifest.txt").string(), unpacked.manifest);

    if (!unpacked.repackProblem.empty())
        std::cerr << "pwext: note: " << file << " cannot be packed again as it is (" << unpacked.repackProblem
                  << "); edit " << (folder / "manifest.txt").string() << " first\n";
    else if (!unpacked.exact)
        std::cerr << "pwext: note: " << file
                  << " is not in the packer's layout; packing the folder gives an equivalent, not identical, file\n";
    return 0;
}

}  // namespace

PWEXT_COMMAND(unpack, "unpack", "FILE FOLDER: turn a definition into a source folder for 'pack'", RunUnpack);

}  // namespace pwext
