#include <gtest/gtest.h>

#include "xml/xml_document.h"

namespace {

std::string U(std::string_view s) { return CXmlDocument::Unescape(s); }

TEST(Escape, MarkupCharactersAndOptionalQuotes) {
    EXPECT_EQ(CXmlDocument::Escape("a<b & \"c\"", false), "a&lt;b &amp; \"c\"");
    EXPECT_EQ(CXmlDocument::Escape("a<b & \"c\"", true), "a&lt;b &amp; &quot;c&quot;");
    EXPECT_EQ(CXmlDocument::Escape("it's > 1", true), "it&apos;s &gt; 1");
    EXPECT_EQ(CXmlDocument::Escape("", true), "");
    EXPECT_EQ(CXmlDocument::Escape(std::string("\0\xe9", 2), true), std::string("\0\xe9", 2));
}

TEST(Unescape, NamedReferencesIgnoreCase) {
    EXPECT_EQ(U("&lt;&#65;&AMP;&nbsp;&"), "<A& ");
    EXPECT_EQ(U("&QUOT;&Apos;&gt;"), "\"'>");
    EXPECT_EQ(U("no references"), "no references");
}

TEST(Unescape, NumericReferencesReadLikeScanfUnsignedLong) {
    EXPECT_EQ(U("&#x41;z"), "z");            // hexadecimal reads no number
    EXPECT_EQ(U("&#321;"), "A");             // low 8 bits of 321
    EXPECT_EQ(U("&# 66;"), "B");             // leading blanks are skipped
    EXPECT_EQ(U("&#+67;"), "C");
    EXPECT_EQ(U("&#-1;"), "\xff");           // negative numbers wrap
    EXPECT_EQ(U("&#65abc;d"), "Ad");         // the rest up to ';' is skipped
    EXPECT_EQ(U("&#0;"), std::string(1, '\0'));
    EXPECT_EQ(U("x&#65"), "xA");             // no ';': decoding ends
    EXPECT_EQ(U("x&#;y"), "xy");
    EXPECT_EQ(U("&#4294967361;"), "A");      // wraps as 32-bit: 2^32 + 65
}

TEST(Unescape, UnknownReferenceSwallowsOneCharacter) {
    EXPECT_EQ(U("a&b"), "a&");
    EXPECT_EQ(U("a&bc"), "a&c");
    EXPECT_EQ(U("&&amp;"), "&amp;");         // the second '&' is swallowed
    EXPECT_EQ(U("&am"), "&m");               // a partial name is not a reference
    EXPECT_EQ(U("&"), "");
}

TEST(Unescape, EscapeRoundTripsAnyBytes) {
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(U(CXmlDocument::Escape(all, true)), all);
    EXPECT_EQ(U(CXmlDocument::Escape(all, false)), all);
}

}  // namespace
