// The lenient Base64 decoder: it never writes past the capacity it is
// given, reports the full length whatever the capacity, and decodes what the
// encoder wrote back to the same bytes.
#include <cstring>
#include <vector>

#include "fuzz_services.h"
#include "xml/base64.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    int wanted = in.ConsumeIntegral<int>();
    std::string text = in.ConsumeRemainingBytesAsString();
    int full = 0;
    Require(!Base64Decode(text.data(), static_cast<int>(text.size()), nullptr, &full));
    int capacity = wanted < 0 ? 0 : wanted % (full + 2);
    // An exact-size heap buffer: a write past the capacity is caught.
    std::vector<unsigned char> buffer(static_cast<std::size_t>(capacity));
    int length = capacity;
    bool ok = Base64Decode(text.data(), static_cast<int>(text.size()), capacity ? buffer.data() : nullptr, &length);
    Require(length == full);
    Require(ok == (capacity > 0 && capacity >= full));
    if (ok && full > 0) {
        std::string again = Base64Encode(
            std::string_view(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(full)), 76);
        Require(Base64DecodeOrKeep(again) ==
                std::string(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(full)));
    }
    return 0;
}
