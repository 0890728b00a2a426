// The libxml2/libxslt transformer: code-page round trips, failures that
// give the empty text, and no access to files.
#include <gtest/gtest.h>

#if defined(PW_HAVE_LIBXSLT)

#include <cstdio>
#include <fstream>

#include "extension/extension_engine.h"
#include "html/image_list.h"
#include "platform/libxslt_transformer.h"
#include "../extension/test_definition.h"

namespace {

std::unique_ptr<CXsltTransformer> Transformer() { return CreateLibxsltTransformer(); }

}  // namespace

TEST(LibxsltTransformer, AccentedTitlesSurviveInTheCodePage) {
    auto xslt = Transformer();
    ASSERT_TRUE(xslt);
    // "Café" and a euro sign in Windows-1252.
    std::string list = WriteImageList({{"a.jpg", "Caf\xE9 \x80"}});
    std::string out = xslt->Transform(list, testdef::kListingStylesheet);
    EXPECT_NE(out.find("alt=\"Caf\xE9 \x80\""), std::string::npos) << testing::PrintToString(out);
    EXPECT_NE(out.find("<?xml"), std::string::npos);
}

TEST(LibxsltTransformer, CharactersOutsideTheCodePageBecomeQuestionMarks) {
    auto latin1 = CreateLibxsltTransformer("ISO-8859-1");
    ASSERT_TRUE(latin1);
    // ISO-8859-1 has no euro sign; the style sheet brings one in.
    std::string sheet =
        "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">"
        "<xsl:output method=\"text\"/><xsl:template match=\"/\">&#x20AC;&#xE9;</xsl:template></xsl:stylesheet>";
    EXPECT_EQ(latin1->Transform("<GALLERY/>", sheet), "?\xE9");
    EXPECT_EQ(CreateLibxsltTransformer("NO-SUCH-CODE-PAGE"), nullptr);
}

TEST(LibxsltTransformer, TextThatIsNotXmlGivesTheEmptyText) {
    auto xslt = Transformer();
    EXPECT_EQ(xslt->Transform("", testdef::kListingStylesheet), "");
    EXPECT_EQ(xslt->Transform("not xml <", testdef::kListingStylesheet), "");
    EXPECT_EQ(xslt->Transform("<GALLERY/>", "not a style sheet"), "");
    EXPECT_EQ(xslt->Transform("<GALLERY/>",
                              "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" "
                              "version=\"1.0\"><xsl:template match=\"/\"><xsl:value-of "
                              "select=\"no-such-function()\"/></xsl:template></xsl:stylesheet>"),
              "");
}

TEST(LibxsltTransformer, NeitherReadsNorWritesFiles) {
    const char* secret = "pw-xslt-secret.xml";
    const char* written = "pw-xslt-written.txt";
    { std::ofstream(secret) << "<secret>leaked</secret>"; }
    auto xslt = Transformer();
    std::string reading =
        "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">"
        "<xsl:template match=\"/\"><x><xsl:value-of select=\"document('pw-xslt-secret.xml')\"/></x>"
        "</xsl:template></xsl:stylesheet>";
    EXPECT_EQ(xslt->Transform("<GALLERY/>", reading).find("leaked"), std::string::npos);

    std::string entity = "<!DOCTYPE GALLERY [<!ENTITY s SYSTEM \"pw-xslt-secret.xml\">]><GALLERY>&s;</GALLERY>";
    EXPECT_EQ(xslt->Transform(entity, reading).find("leaked"), std::string::npos);

    std::string writing =
        "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\" "
        "xmlns:exsl=\"http://exslt.org/common\" extension-element-prefixes=\"exsl\">"
        "<xsl:template match=\"/\"><exsl:document href=\"pw-xslt-written.txt\" method=\"text\">x"
        "</exsl:document></xsl:template></xsl:stylesheet>";
    xslt->Transform("<GALLERY/>", writing);
    EXPECT_FALSE(std::ifstream(written).good());
    std::remove(secret);
    std::remove(written);
}

#else

TEST(LibxsltTransformer, NeedsLibxslt) { GTEST_SKIP() << "built without libxslt"; }

#endif
