#include <gtest/gtest.h>

#include "xml/hashed_string_map.h"

namespace {

std::vector<std::string> Keys(const CHashedStringMap& map) {
    std::vector<std::string> keys;
    map.ForEach([&](const std::string& k, const std::string&) { keys.push_back(k); });
    return keys;
}

TEST(HashedStringMap, BucketsFollowTheHostHash) {
    // The documented buckets of the definition's root attributes.
    EXPECT_EQ(CHashedStringMap::BucketOf("title"), 1u);
    EXPECT_EQ(CHashedStringMap::BucketOf("website"), 4u);
    EXPECT_EQ(CHashedStringMap::BucketOf("minheight"), 5u);
    EXPECT_EQ(CHashedStringMap::BucketOf("rendermethod"), 5u);
    EXPECT_EQ(CHashedStringMap::BucketOf("usediv"), 9u);
    EXPECT_EQ(CHashedStringMap::BucketOf("minwidth"), 13u);
    EXPECT_EQ(CHashedStringMap::BucketOf("developer"), 14u);
    EXPECT_EQ(CHashedStringMap::BucketOf("text"), 15u);
    EXPECT_EQ(CHashedStringMap::BucketOf("gallerytemplate"), 0u);
    EXPECT_EQ(CHashedStringMap::BucketOf("process_file"), 8u);
    EXPECT_EQ(CHashedStringMap::BucketOf(""), 0u);
    // Bytes above 127 count unsigned.
    EXPECT_EQ(CHashedStringMap::BucketOf("\xff"), 255u % 17u);
}

TEST(HashedStringMap, IteratesBucketsAscendingNewestFirst) {
    CHashedStringMap map;
    for (const char* k : {"text", "minheight", "title", "rendermethod", "usediv"}) map.Set(k, "v");
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"title", "rendermethod", "minheight", "usediv", "text"}));
}

TEST(HashedStringMap, ResettingAKeyKeepsItsPlaceAndRemovalForgetsIt) {
    CHashedStringMap map;
    map.Set("minheight", "1");
    map.Set("rendermethod", "2");
    map.Set("minheight", "3");
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"rendermethod", "minheight"}));
    EXPECT_EQ(*map.Find("minheight"), "3");

    EXPECT_TRUE(map.Remove("rendermethod"));
    EXPECT_FALSE(map.Remove("rendermethod"));
    map.Set("rendermethod", "4");  // re-inserted: newest again
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"rendermethod", "minheight"}));
    map.Remove("minheight");
    map.Set("minheight", "5");
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"minheight", "rendermethod"}));
    EXPECT_EQ(map.Size(), 2u);
}

TEST(HashedStringMap, KeysAndValuesAreBinaryAndCaseSensitive) {
    CHashedStringMap map;
    map.Set(std::string("a\0b", 3), std::string("x\0y", 3));
    map.Set("A", "upper");
    EXPECT_EQ(map.Find("a"), nullptr);
    ASSERT_NE(map.Find(std::string("a\0b", 3)), nullptr);
    EXPECT_EQ(*map.Find(std::string("a\0b", 3)), std::string("x\0y", 3));
    EXPECT_EQ(*map.Find("A"), "upper");
    map.Clear();
    EXPECT_TRUE(map.Empty());
    EXPECT_TRUE(Keys(map).empty());
}

TEST(HashedStringMap, ManyKeysStayFindableAndOrdered) {
    CHashedStringMap map;
    for (int i = 0; i < 70000; ++i) map.Set("$k" + std::to_string(i) + "$", std::to_string(i));
    EXPECT_EQ(map.Size(), 70000u);
    EXPECT_EQ(*map.Find("$k69999$"), "69999");
    unsigned last = 0;
    std::size_t count = 0;
    map.ForEach([&](const std::string& k, const std::string&) {
        unsigned b = CHashedStringMap::BucketOf(k);
        EXPECT_GE(b, last);
        last = b;
        ++count;
    });
    EXPECT_EQ(count, 70000u);
}

}  // namespace
