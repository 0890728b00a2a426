#include "host_options.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "definition/builtin_definition.h"
#include "html/image_list.h"
#include "html/definition_model.h"
#include "pwext_io.h"
#if defined(PW_HAVE_LIBXSLT)
#include "platform/libxslt_transformer.h"
#endif

namespace pwext {

std::string OptionValue(const Args& args, std::size_t& i, const std::string& command) {
    if (i + 1 >= args.size()) throw UsageError{command + ": " + args[i] + " needs a value"};
    return args[++i];
}

int ParseInt(const std::string& text, const std::string& what) {
    errno = 0;
    char* end = nullptr;
    long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno == ERANGE || value < INT_MIN || value > INT_MAX)
        throw UsageError{"bad " + what + " '" + text + "'"};
    return static_cast<int>(value);
}

HostOptions TakeHostOptions(Args& args, const std::string& command) {
    HostOptions options;
    Args rest;
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string& a = args[i];
        if (a == "--definition") {
            options.definitionFile = OptionValue(args, i, command);
        } else if (a == "--record") {
            options.recordFile = OptionValue(args, i, command);
        } else if (a == "--site") {
            options.siteFile = OptionValue(args, i, command);
        } else if (a == "--set") {
            std::string assignment = OptionValue(args, i, command);
            std::size_t equals = assignment.find('=');
            if (equals == std::string::npos)
                throw UsageError{command + ": --set needs VAR=VALUE, got '" + assignment + "'"};
            options.sets.emplace_back(assignment.substr(0, equals), assignment.substr(equals + 1));
        } else if (a == "--images") {
            options.haveImages = true;
            while (i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0)
                options.images.push_back(std::move(args[++i]));
        } else {
            rest.push_back(std::move(a));
        }
    }
    args.swap(rest);
    return options;
}

namespace {

// The first image-list property's variable, or empty when there is none.
std::string FirstImageListVariable(CExtensionEngine& engine) {
    std::string variable;
    ForEachProperty(*engine.GetDefinition().GetRoot(), [&variable](const CXmlElement& property) {
        PropertyRule rule = ReadPropertyRule(property);
        if (variable.empty() && rule.type == PropertyType::kImageList) variable = rule.variable;
    });
    return variable;
}

// What --set NAME=VALUE sets: the variable NAME when a property has it; else
// the variable of the property called NAME (ignoring case, as in
// "FontSize"); else NAME itself when it is spelled like a variable
// ("$extra$": the record keeps any key). Anything else would change nothing
// the page shows, so it is refused.
std::string SetTarget(CExtensionEngine& engine, const std::string& name) {
    std::string byVariable, byName;
    ForEachProperty(*engine.GetDefinition().GetRoot(), [&](const CXmlElement& property) {
        PropertyRule rule = ReadPropertyRule(property);
        if (rule.variable == name) byVariable = rule.variable;
        if (byName.empty() && ascii::EqualsNoCase(CXmlDocument::Unescape(property.GetAttribute("name")), name))
            byName = rule.variable;
    });
    if (!byVariable.empty()) return byVariable;
    if (!byName.empty()) return byName;
    if (name.size() >= 2 && name.front() == '$' && name.back() == '$') return name;
    throw UsageError{"--set " + name + ": no property has that name or variable (variables look like $name$)"};
}

std::string FileNamePart(const std::string& path) {
    std::size_t last = path.find_last_of("/\\");
    return last == std::string::npos ? path : path.substr(last + 1);
}

}  // namespace

Host::Host(const HostOptions& options, std::unique_ptr<CFileSystem> fileSystem)
    : fileSystem_(fileSystem ? std::move(fileSystem) : CreateNativeFileSystem()) {
#if defined(PW_HAVE_LIBXSLT)
    transformer_ = CreateLibxsltTransformer();
#endif
    std::string definition =
        options.definitionFile.empty() ? std::string(BuiltinDefinition()) : ReadInput(options.definitionFile);
    ExtensionServices services;
    services.fileSystem = fileSystem_.get();
    services.transformer = transformer_.get();
    engine_ = std::make_unique<CExtensionEngine>(definition, services);
    RequireWholeDocument(engine_->GetDefinition(),
                         options.definitionFile.empty() ? "the built-in definition" : options.definitionFile);

    if (!options.recordFile.empty()) {
        std::string bytes = ReadInput(options.recordFile);
        CMemoryByteSource source(bytes);
        RecordReadResult result = engine_->LoadRecord(source);
        if (!result.ok()) throw Failure{"bad project record '" + options.recordFile + "': " + result.message};
    }
    for (const auto& [name, value] : options.sets) engine_->SetValue(SetTarget(*engine_, name), value);
    if (options.haveImages) {
        std::string variable = FirstImageListVariable(*engine_);
        if (variable.empty()) throw Failure{"--images: the definition has no image-list property"};
        std::vector<ImageListEntry> images;
        images.reserve(options.images.size());
        for (const std::string& path : options.images) {
            ImageListEntry entry;
            entry.fileName = path;
            entry.title = FileNamePart(path);
            images.push_back(entry);
        }
        engine_->SetValue(variable, WriteImageList(images));
    }
    if (!options.siteFile.empty()) {
        engine_->SetSiteStructure(ReadInput(options.siteFile));
        RequireWholeDocument(engine_->GetSiteStructureDocument(), options.siteFile);
    }
    // An image list too deep for the XML model would silently give no
    // gallery in the plug-in; here it is an error.
    ForEachProperty(*engine_->GetDefinition().GetRoot(), [this](const CXmlElement& property) {
        if (ReadPropertyRule(property).type != PropertyType::kImageList) return;
        if (CXmlDocument::NestsTooDeep(engine_->CurrentValueOf(property)))
            throw TooDeep("the image list of " + ReadPropertyRule(property).variable);
    });
    engine_->UpdateHtml(0);
}

void Host::RequireWithinSizeLimit() const {
    if (engine_->ExceededSizeLimit())
        throw Failure{"the property values expand to more than " +
                      std::to_string(CExtensionEngine::kMaxSubstitutedText >> 20) +
                      " MB of text; variables were left in place"};
}

}  // namespace pwext
