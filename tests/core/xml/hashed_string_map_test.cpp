// Changing and growing the map. Its iteration order shows in every written
// document and is checked against the XML model stage.
#include <gtest/gtest.h>

#include "xml/hashed_string_map.h"

namespace {

std::vector<std::string> Keys(const CHashedStringMap& map) {
    std::vector<std::string> keys;
    map.ForEach([&](const std::string& k, const std::string&) { keys.push_back(k); });
    return keys;
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

TEST(HashedStringMap, ManyKeysStayFindable) {
    CHashedStringMap map;
    for (int i = 0; i < 70000; ++i) map.Set("$k" + std::to_string(i) + "$", std::to_string(i));
    EXPECT_EQ(map.Size(), 70000u);
    EXPECT_EQ(*map.Find("$k69999$"), "69999");
}

}  // namespace
