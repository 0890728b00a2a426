// Site structures: the searches for the current page and for a page by name.
#include "fuzz_services.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    std::string name = in.ConsumeRandomLengthString(32);
    FuzzedEngine fuzzed("<EXTENSION/>");
    fuzzed.engine.SetSiteStructure(in.ConsumeRemainingBytesAsString());
    CXmlElement* current = fuzzed.engine.FindCurrentPage();
    fuzzed.engine.FindPageByName(name);
    if (current) fuzzed.engine.FindPageByName(name, current);
    return 0;
}
