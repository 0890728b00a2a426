// Decoding results for every input and capacity are checked against the
// XML model stage; here: the buffer bounds, the size query, the fallback and
// the encoder, which that stage cannot see.
#include <gtest/gtest.h>

#include <random>

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

TEST(Base64, NeverWritesPastTheCapacity) {
    std::mt19937 rng(7);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        int n = static_cast<int>(rng() % 64);
        for (int i = 0; i < n; ++i) text += "AZaz09+/=\r\n #"[rng() % 14];
        int full = 0;
        Base64Decode(text.data(), n, nullptr, &full);
        for (int capacity = 0; capacity <= full + 1; ++capacity) {
            std::string buffer(static_cast<std::size_t>(capacity) + 8, '\x5a');
            int length = capacity;
            bool ok = Base64Decode(text.data(), n, reinterpret_cast<unsigned char*>(buffer.data()), &length);
            EXPECT_EQ(length, full);
            EXPECT_EQ(ok, capacity >= full);
            for (std::size_t i = static_cast<std::size_t>(capacity); i < buffer.size(); ++i)
                ASSERT_EQ(buffer[i], '\x5a') << "wrote past capacity " << capacity << " for " << text;
        }
    }
}

TEST(Base64, DecodeOrKeepFallsBackToTheText) {
    EXPECT_EQ(Base64DecodeOrKeep("TWFu"), "Man");
    EXPECT_EQ(Base64DecodeOrKeep(""), "");
    // Plain text "decodes" too: only its alphabet letters count.
    EXPECT_EQ(Base64DecodeOrKeep("<b>"), "");
}

TEST(Base64, EncodeBreaksLinesWithCrLf) {
    std::string bytes(114, 'x');  // 152 characters: two full lines
    std::string text = Base64Encode(bytes, 76);
    EXPECT_EQ(text.size(), 152u + 2u);
    EXPECT_EQ(text.substr(76, 2), "\r\n");
    EXPECT_EQ(Base64Encode("M"), "TQ==");
    EXPECT_EQ(Base64Encode("Ma"), "TWE=");
}

}  // namespace
