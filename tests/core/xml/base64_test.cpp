// Decoding results for every input and capacity are checked against the
// XML model stage and the buffer bounds by the fuzz target; here: the size
// query and the fallback, which neither can see.
#include <gtest/gtest.h>

#include "xml/base64.h"

namespace {

struct Decoded {
    bool ok;
    int length;
    std::string bytes;  // the whole buffer after the call
};

Decoded Decode(std::string_view text, int capacity, std::size_t bufferSize) {
    std::string buffer(bufferSize, '\0');
    int length = capacity;
    bool ok = Base64Decode(text.data(), static_cast<int>(text.size()), reinterpret_cast<unsigned char*>(buffer.data()),
                           &length);
    return {ok, length, buffer};
}

TEST(Base64, SizeQueryWithoutDestination) {
    int length = 0;
    EXPECT_FALSE(Base64Decode("TWFuTWE=", 8, nullptr, &length));
    EXPECT_EQ(length, 5);
    EXPECT_FALSE(Base64Decode(nullptr, 4, nullptr, &length));
    unsigned char b[4];
    EXPECT_FALSE(Base64Decode("TWFu", 4, b, nullptr));
}

TEST(Base64, EmptyOrNegativeLengthText) {
    Decoded d = Decode("", 0, 1);
    EXPECT_TRUE(d.ok);
    EXPECT_EQ(d.length, 0);
    int length = 99;
    EXPECT_FALSE(Base64Decode("TWFu", 0, nullptr, &length));
    EXPECT_EQ(length, 0);
    unsigned char b[4];
    length = 4;
    EXPECT_TRUE(Base64Decode("TWFu", -3, b, &length));
    EXPECT_EQ(length, 0);
}

TEST(Base64, DecodeOrKeepFallsBackToTheText) {
    EXPECT_EQ(Base64DecodeOrKeep("TWFu"), "Man");
    EXPECT_EQ(Base64DecodeOrKeep(""), "");
    // Plain text "decodes" too: only its alphabet letters count.
    EXPECT_EQ(Base64DecodeOrKeep("<b>"), "");
}

}  // namespace
