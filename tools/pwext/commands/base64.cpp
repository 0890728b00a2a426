// pwext base64 decode: the lenient decoder with its capacity and length rules.
#include <climits>
#include <cstdio>
#include <string>
#include <vector>

#include "command.h"
#include "pwext_io.h"
#include "xml/base64.h"

namespace pwext {
namespace {

int ParseCapacity(const std::string& text) {
    if (text.empty()) throw UsageError{"base64 decode: --capacity needs a number"};
    long long value = 0;
    std::size_t i = 0;
    bool negative = false;
    if (text[0] == '-') {
        negative = true;
        i = 1;
    }
    if (i == text.size()) throw UsageError{"base64 decode: bad --capacity '" + text + "'"};
    for (; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9') throw UsageError{"base64 decode: bad --capacity '" + text + "'"};
        value = value * 10 + (text[i] - '0');
        if (value > INT_MAX) throw UsageError{"base64 decode: --capacity too large"};
    }
    return static_cast<int>(negative ? -value : value);
}

int RunBase64(Args args) {
    if (args.empty() || args[0] != "decode")
        throw UsageError{"usage: pwext base64 decode [--capacity N] [--json] [FILE|-]"};
    bool json = false, haveCapacity = false;
    int capacity = 0;
    std::string file;
    int files = 0;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--json") {
            json = true;
        } else if (args[i] == "--capacity") {
            if (i + 1 >= args.size()) throw UsageError{"base64 decode: --capacity needs a number"};
            capacity = ParseCapacity(args[++i]);
            haveCapacity = true;
        } else if (args[i].size() > 1 && args[i][0] == '-') {
            throw UsageError{"base64 decode: unknown option '" + args[i] + "'"};
        } else {
            file = args[i];
            ++files;
        }
    }
    if (files > 1) throw UsageError{"base64 decode: give at most one file"};

    std::string text = ReadInput(file);
    if (text.size() > static_cast<std::size_t>(INT_MAX)) throw Failure{"base64 decode: input too large"};
    if (!haveCapacity) capacity = static_cast<int>(text.size());

    // The buffer is zeroed and as large as the capacity (at least one byte),
    // as the system's callers allocate it.
    std::vector<unsigned char> buffer(static_cast<std::size_t>(capacity > 0 ? capacity : 0) + 1, 0);
    Base64Outcome outcome = Base64DecodeInto(text.data(), static_cast<int>(text.size()), buffer.data(), capacity);
    std::string stored(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(outcome.stored));

    if (json) {
        std::string out = "{\"ok\": ";
        out += outcome.ok ? "true" : "false";
        out += ", \"length\": " + std::to_string(outcome.length) + ", \"bytes\": " + JsonLatin1(stored) + "}\n";
        WriteOutput(out);
        return 0;
    }
    WriteOutput(stored);
    if (outcome.ok) return 0;
    // The bytes that fit were written; say why the rest are missing.
    std::fprintf(
        stderr,
        "pwext: base64 decode: the text decodes to %d bytes but the capacity is %d; only the first %d were written\n",
        outcome.length, capacity, outcome.stored);
    return 1;
}

}  // namespace

PWEXT_COMMAND(base64, "base64", "decode [--capacity N] [--json] [FILE|-]: the lenient Base64 decoder", RunBase64);

}  // namespace pwext
