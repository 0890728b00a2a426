// pwext html body|head|tail: the HTML an extension object gives its host.
#include "command.h"
#include "host_options.h"
#include "pwext_io.h"

namespace pwext {
namespace {

const char kUsage[] = "usage: pwext html body|head|tail [--publish] [--context TEXT] [host options]";

int RunHtml(Args args) {
    HostOptions options = TakeHostOptions(args, "html");
    if (args.empty()) throw UsageError{kUsage};
    const std::string part = args[0];
    bool publish = false, haveContext = false;
    std::string context;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--publish") {
            publish = true;
        } else if (args[i] == "--context") {
            context = OptionValue(args, i, "html");
            haveContext = true;
        } else {
            throw UsageError{"html: unexpected '" + args[i] + "'"};
        }
    }
    if (part != "body" && part != "head" && part != "tail") throw UsageError{kUsage};
    if (part != "body" && (publish || haveContext))
        throw UsageError{"html " + part + ": --publish and --context apply to the body only"};
    if (haveContext && !publish) throw UsageError{"html body: --context needs --publish"};

    Host host(options);
    CExtensionEngine& engine = host.Engine();
    std::string html;
    if (part == "head") {
        html = engine.GetHeaderHtml();
    } else if (part == "tail") {
        html = engine.GetStartofPageHTML();
    } else if (publish) {
        html = engine.GetHtml(context.c_str());
    } else {
        engine.UpdateHtml(0);
        html = engine.GetHtmlCache();
    }
    host.RequireWithinSizeLimit();
    WriteOutput(html);
    return 0;
}

}  // namespace

PWEXT_COMMAND(html, "html", "body|head|tail [--publish] [--context TEXT]: the object's HTML", RunHtml);

}  // namespace pwext
