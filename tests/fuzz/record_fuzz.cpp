// Project records: any bytes load without harm, and what an object stores
// loads back whole with the same values. (A small definition: the record
// keeps any key, whatever the properties.)
#include "extension/project_record.h"
#include "fuzz_services.h"

constexpr char kDefinition[] =
    "<EXTENSION><PROPERTIES><CATEGORY><PROPERTY variable=\"$a$\" type=\"2\"/></CATEGORY></PROPERTIES></EXTENSION>";

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedEngine first(kDefinition);
    CMemoryByteSource source(std::string_view(reinterpret_cast<const char*>(data), size));
    first.engine.LoadRecord(source);

    CMemoryByteSink sink;
    first.engine.StoreRecord(sink);
    FuzzedEngine second(kDefinition);
    CMemoryByteSource stored(sink.Bytes());
    Require(second.engine.LoadRecord(stored).ok());
    Require(second.engine.GetID() == first.engine.GetID());
    std::size_t pairs = 0;
    first.engine.GetValues().ForEach([&](const std::string& key, const std::string& value) {
        const std::string* again = second.engine.GetValues().Find(key);
        Require(again && *again == value);
        ++pairs;
    });
    Require(pairs == second.engine.GetValues().Size());
    return 0;
}
