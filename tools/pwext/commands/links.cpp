// pwext links: the link properties as the host enumerates and rewrites them.
#include "command.h"
#include "host_options.h"
#include "pwext_io.h"

namespace pwext {
namespace {

int RunLinks(Args args) {
    HostOptions options = TakeHostOptions(args, "links");
    std::vector<std::pair<int, std::string>> rewrites;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] != "--set-url") throw UsageError{"links: unexpected '" + args[i] + "'"};
        std::string assignment = OptionValue(args, i, "links");
        std::size_t equals = assignment.find('=');
        if (equals == std::string::npos) throw UsageError{"links: --set-url needs N=TEXT, got '" + assignment + "'"};
        rewrites.emplace_back(ParseInt(assignment.substr(0, equals), "link number"), assignment.substr(equals + 1));
    }

    Host host(options);
    CExtensionEngine& engine = host.Engine();
    for (const auto& [index, text] : rewrites) engine.SetURL(index, text);

    int count = engine.GetURLCount();
    std::string out = "{\"count\": " + std::to_string(count) + ", \"urls\": [";
    for (int i = 0; i < count; ++i) out += (i ? ", " : "") + JsonLatin1(engine.GetURL(i));
    out += "], \"values\": {";
    bool first = true;
    engine.GetValues().ForEach([&](const std::string& key, const std::string& value) {
        out += (first ? "" : ", ") + JsonLatin1(key) + ": " + JsonLatin1(value);
        first = false;
    });
    out += "}}\n";
    WriteOutput(out);
    return 0;
}

}  // namespace

PWEXT_COMMAND(links, "links", "[--set-url N=TEXT]...: link properties, after rewriting", RunLinks);

}  // namespace pwext
