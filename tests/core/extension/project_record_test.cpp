// The project record: exact byte layout, length and count escapes, any
// version, and truncated records that keep what was read.
#include <gtest/gtest.h>

#include "extension/extension_engine.h"
#include "extension/project_record.h"
#include "test_definition.h"

using testdef::Definition;

namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) out += static_cast<char>(v);
    return out;
}

std::string Record(std::int32_t id, const CHashedStringMap& values) {
    CMemoryByteSink sink;
    WriteProjectRecord(sink, id, values);
    return sink.Bytes();
}

std::string Body() { return Definition().Body("<p>$t$</p>").Categories({{"G", {{"$t$", "2", "default"}}}}).Text(); }

}  // namespace

TEST(ProjectRecord, TruncatedRecordsKeepWhatWasReadAndLeaveTheHtml) {
    CHashedStringMap values;
    values.Set("$t$", "first");
    values.Set("$z$", std::string(300, 'z'));
    std::string whole = Record(42, values);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        CExtensionEngine engine(Body(), {});
        CMemoryByteSource source(std::string_view(whole).substr(0, cut));
        RecordReadResult result = engine.LoadRecord(source);
        ASSERT_FALSE(result.ok()) << cut;
        EXPECT_NE(result.message.find("ends inside"), std::string::npos);
        EXPECT_EQ(engine.GetID(), cut >= 8 ? 42 : 0) << cut;
        EXPECT_EQ(engine.GetHtmlCache(), "<p>default</p>") << cut;
        EXPECT_LE(engine.GetValues().Size(), 1u);
    }
}

TEST(ProjectRecord, AGarbledHugeLengthFailsWithoutAllocatingIt) {
    std::string record = Bytes({100, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0xFF, 0xFF, 0xFF, 0xF0, 0xFF, 0xFF, 0xFF}) + "short";
    ProjectRecord read;
    CMemoryByteSource source(record);
    RecordReadResult result = ReadProjectRecord(source, read);
    EXPECT_EQ(result.status, RecordReadStatus::kEndOfData);
    EXPECT_EQ(result.message, "the project record ends inside the key of pair 1 of 1");
    EXPECT_TRUE(read.pairs.empty());
}
