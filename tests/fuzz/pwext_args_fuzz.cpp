// pwext's command-line options: any arguments are taken apart into host
// options and the rest, or refused with a usage error; nothing else escapes.
#include "fuzz_services.h"
#include "host_options.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    pwext::Args args;
    while (in.remaining_bytes() > 0 && args.size() < 32)
        args.push_back(in.ConsumeBool() ? in.PickValueInArray({"--definition", "--record", "--set", "--images",
                                                               "--site", "--", "-", "x=y"})
                                        : in.ConsumeRandomLengthString(32));
    pwext::Args copy = args;
    try {
        pwext::HostOptions options = pwext::TakeHostOptions(args, "fuzz");
        Require(args.size() <= copy.size());
        for (const auto& [name, value] : options.sets) Require(name.find('=') == std::string::npos);
    } catch (const pwext::UsageError&) {
    }
    for (const std::string& a : copy) {
        try {
            pwext::ParseInt(a, "number");
        } catch (const pwext::UsageError&) {
        }
    }
    return 0;
}
