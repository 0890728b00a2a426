// A definition and property values through the engine: the three pieces of
// page HTML, in the design view and published, with the gallery rewriting
// behind them; publishing, where every file lands inside the output folder
// or the image folder; and the links, whose numbering holds together.
#include "fuzz_services.h"

namespace {

// path is folder followed by names, none of them "..", separated by either
// slash (the host's image copies go to "folder\/name").
bool Inside(const std::string& path, const std::string& folder) {
    if (path.compare(0, folder.size(), folder) != 0) return false;
    std::string rest = path.substr(folder.size());
    std::size_t start = 0;
    while (start <= rest.size()) {
        std::size_t end = rest.find_first_of("/\\", start);
        if (end == std::string::npos) end = rest.size();
        if (rest.compare(start, end - start, "..") == 0 && end - start == 2) return false;
        start = end + 1;
    }
    return true;
}

void Run(std::string_view definition, const std::string& context, FuzzedDataProvider& in, PathStyle style) {
    FuzzedEngine fuzzed(definition, style);
    fuzzed.SetValues(in);
    fuzzed.engine.UpdateHtml(0);
    fuzzed.engine.GetHtml(context.c_str());
    fuzzed.engine.GetHeaderHtml();
    fuzzed.engine.GetStartofPageHTML();

    std::string output = style == PathStyle::kWindows ? "C:\\site\\" : "/site/";
    std::string images = output + "images";
    PublishPlan plan = fuzzed.engine.PlanCopyFiles(output, images);
    // A NUL would end a path early at the file system.
    for (const PublishStep& step : plan.steps)
        Require(Inside(step.target, output) && step.target.find('\0') == std::string::npos &&
                step.source.find('\0') == std::string::npos);
    fuzzed.engine.RunPlan(plan);

    int count = fuzzed.engine.GetURLCount();
    Require(count >= 0);
    for (int i = 0; i < count && i < 8; ++i) {
        fuzzed.engine.GetURL(i);
        fuzzed.engine.SetURL(i, "x");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    PathStyle style = in.ConsumeBool() ? PathStyle::kWindows : PathStyle::kPosix;
    std::string definition = in.ConsumeRandomLengthString(16384);
    std::string context = in.ConsumeRandomLengthString(64);
    Run(definition, context, in, style);
    return 0;
}
