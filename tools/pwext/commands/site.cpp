// pwext site FILE [--current] [--page NAME]: searches of a site structure.
#include "command.h"
#include "host_options.h"
#include "pwext_io.h"

namespace pwext {
namespace {

int RunSite(Args args) {
    HostOptions options = TakeHostOptions(args, "site");
    std::string file, page;
    bool byName = false, current = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--current") {
            current = true;
        } else if (args[i] == "--page") {
            page = OptionValue(args, i, "site");
            byName = true;
        } else if (args[i].rfind("--", 0) == 0 || !file.empty()) {
            throw UsageError{"site: unexpected '" + args[i] + "'"};
        } else {
            file = args[i];
        }
    }
    if (file.empty()) throw UsageError{"usage: pwext site FILE [--current | --page NAME]"};
    if (current && byName) throw UsageError{"site: give either --current or --page"};

    options.siteFile = file;
    Host host(options);
    CExtensionEngine& engine = host.Engine();
    CXmlElement* found = byName ? engine.FindPageByName(page) : engine.FindCurrentPage();
    if (!found)
        throw Failure{byName ? "no page named '" + page + "' in '" + file + "'" : "no current page in '" + file + "'"};
    WriteOutput("{\"name\": " + JsonLatin1(found->GetAttribute("name")) +
                ", \"url\": " + JsonLatin1(found->GetAttribute("url")) + "}\n");
    return 0;
}

}  // namespace

PWEXT_COMMAND(site, "site", "FILE [--current | --page NAME]: find a page in a site structure", RunSite);

}  // namespace pwext
