// Both transformers give a style sheet the same list document: the Windows
// XML component's, which drops text nodes of blanks only unless xml:space
// says "preserve".
#include <gtest/gtest.h>

#include <memory>

#if defined(_WIN32)
#include <objbase.h>

#include "platform/msxml_transformer.h"
#elif defined(PW_HAVE_LIBXSLT)
#include "platform/libxslt_transformer.h"
#endif

#if defined(_WIN32) || defined(PW_HAVE_LIBXSLT)

TEST(ListDocument, BlankTextNodesAreDroppedUnlessPreserved) {
#if defined(_WIN32)
    CoInitialize(nullptr);
    auto xslt = std::make_unique<CMsxmlTransformer>();
#else
    auto xslt = CreateLibxsltTransformer();
#endif
    const std::string list =
        "<GALLERY>\r\n\t<IMAGE>\r\n\t\t<TITLE>  </TITLE>\r\n\t\t<FILENAME> a.jpg </FILENAME>\r\n"
        "\t\t<X xml:space=\"preserve\"> <Y xml:space=\"default\"> </Y> </X>\r\n\t</IMAGE>\r\n</GALLERY>\r\n";
    const std::string sheet =
        "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">"
        "<xsl:output method=\"text\"/><xsl:template match=\"/\">"
        "<xsl:value-of select=\"count(/*/node())\"/>,<xsl:value-of select=\"count(//TITLE/node())\"/>,"
        "<xsl:value-of select=\"count(//X/node())\"/>,<xsl:value-of select=\"count(//Y/node())\"/>,"
        "[<xsl:value-of select=\"/*\"/>]</xsl:template></xsl:stylesheet>";
    EXPECT_EQ(xslt->Transform(list, sheet), "1,0,3,0,[ a.jpg   ]");
#if defined(_WIN32)
    CoUninitialize();
#endif
}

#endif
