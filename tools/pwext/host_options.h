#pragma once
// pwext as a host of the extension engine: the options every hosting command
// accepts, and the host object that builds an engine from them.
//
//   --definition FILE   the extension definition (default: the built-in one)
//   --record FILE       load a project record first
//   --set VAR=VALUE     set a property value by its variable ($fontsize$) or
//                       its name (FontSize); repeatable; after --record
//   --images FILE...    the first image-list property's list, as the Files
//                       dialog writes it: FILENAME the path, TITLE its name
//   --site FILE         the site structure
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "command.h"
#include "extension/extension_engine.h"
#include "platform/file_system.h"
#include "platform/xslt_transformer.h"

namespace pwext {

struct HostOptions {
    std::string definitionFile;
    std::string recordFile;
    std::vector<std::pair<std::string, std::string>> sets;
    std::vector<std::string> images;
    bool haveImages = false;
    std::string siteFile;
};

// Removes the host options from args and returns them; what is left is the
// command's own. Throws UsageError for a malformed option.
HostOptions TakeHostOptions(Args& args, const std::string& command);

// Owns the platform services and the engine built from the options.
class Host {
public:
    // fileSystem: the one publishing uses (null: the machine's own).
    explicit Host(const HostOptions& options, std::unique_ptr<CFileSystem> fileSystem = nullptr);
    CExtensionEngine& Engine() { return *engine_; }
    // Throws Failure when substitution left variables in place because the
    // text would have grown too large (the plug-in does so silently).
    void RequireWithinSizeLimit() const;
    CFileSystem& FileSystem() { return *fileSystem_; }

private:
    std::unique_ptr<CFileSystem> fileSystem_;
    std::unique_ptr<CXsltTransformer> transformer_;
    std::unique_ptr<CExtensionEngine> engine_;
};

// The value of an option that needs one; throws UsageError when missing.
std::string OptionValue(const Args& args, std::size_t& i, const std::string& command);

// A decimal int, or UsageError naming what it is.
int ParseInt(const std::string& text, const std::string& what);

}  // namespace pwext
