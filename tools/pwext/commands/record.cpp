// pwext record write|read: the record an object keeps in the host's project.
#include "command.h"
#include "extension/project_record.h"
#include "host_options.h"
#include "pwext_io.h"

namespace pwext {
namespace {

const char kUsage[] = "usage: pwext record write [--id N] [host options] > FILE | pwext record read FILE";

int Write(const Args& args, const HostOptions& options) {
    int id = 0;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] != "--id") throw UsageError{"record write: unexpected '" + args[i] + "'"};
        id = ParseInt(OptionValue(args, i, "record write"), "object ID");
    }
    Host host(options);
    host.Engine().SetID(id);
    CMemoryByteSink sink;
    host.Engine().StoreRecord(sink);
    WriteOutput(sink.Bytes());
    return 0;
}

int Read(const Args& args) {
    if (args.size() != 2) throw UsageError{kUsage};
    std::string bytes = ReadInput(args[1]);
    CMemoryByteSource source(bytes);
    ProjectRecord record;
    RecordReadResult result = ReadProjectRecord(source, record);
    if (!result.ok()) throw Failure{"bad project record '" + args[1] + "': " + result.message};
    if (source.Position() != bytes.size())
        throw Failure{"bad project record '" + args[1] + "': " + std::to_string(bytes.size() - source.Position()) +
                      " bytes follow the record"};

    std::string out = "{\"version\": " + std::to_string(record.version) + ", \"id\": " + std::to_string(record.id) +
                      ", \"values\": [";
    for (std::size_t i = 0; i < record.pairs.size(); ++i)
        out += (i ? ", [" : "[") + JsonLatin1(record.pairs[i].first) + ", " + JsonLatin1(record.pairs[i].second) + "]";
    out += "]}\n";
    WriteOutput(out);
    return 0;
}

int RunRecord(Args args) {
    HostOptions options = TakeHostOptions(args, "record");
    if (args.empty()) throw UsageError{kUsage};
    if (args[0] == "write") return Write(args, options);
    if (args[0] == "read") return Read(args);
    throw UsageError{kUsage};
}

}  // namespace

PWEXT_COMMAND(record, "record", "write [--id N] | read FILE: the project record", RunRecord);

}  // namespace pwext
