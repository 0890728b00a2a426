// Publishing and links: whatever the definition and the values say, every
// file lands inside the output folder or the image folder, and the link
// numbering holds together.
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

void Publish(std::string_view definition, FuzzedDataProvider& in, PathStyle style) {
    FuzzedEngine fuzzed(definition, style);
    fuzzed.SetValues(in);
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
    Publish(definition, in, style);
    return 0;
}
