// A definition and property values to the three pieces of page HTML, in the
// design view and published, with the gallery rewriting behind them.
#include "fuzz_services.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    std::string context = in.ConsumeRandomLengthString(64);
    FuzzedEngine fuzzed(in.ConsumeRandomLengthString(16384));
    fuzzed.SetValues(in);
    CExtensionEngine& engine = fuzzed.engine;
    engine.UpdateHtml(0);
    engine.GetHtml(context.c_str());
    engine.GetHeaderHtml();
    engine.GetStartofPageHTML();
    return 0;
}
