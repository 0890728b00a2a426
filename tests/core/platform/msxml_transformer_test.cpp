// The transformer over the system's XML component (under Wine): the copy of
// the style sheet whose output has one root gives the same text as the style
// sheet itself, or is not used.
#include <gtest/gtest.h>

#if defined(_WIN32)

#include <objbase.h>

#include "html/image_list.h"
#include "platform/msxml_transformer.h"

namespace {

// A style sheet whose root template is body. With method named first the
// transformer runs a copy with one root; with indent first it runs the style
// sheet as given, and the output is the same.
std::string Stylesheet(const std::string& body, bool wrappable) {
    return std::string("<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">") +
           (wrappable ? "<xsl:output method=\"xml\" indent=\"yes\"/>" : "<xsl:output indent=\"yes\" method=\"xml\"/>") +
           "<xsl:template match=\"/\">" + body + "</xsl:template></xsl:stylesheet>";
}

}  // namespace

TEST(MsxmlTransformer, OutputWithOneRootIsTheSameText) {
    CoInitialize(nullptr);
    const std::string each = "<xsl:for-each select=\"GALLERY/IMAGE\">";
    const std::string bodies[] = {
        each + "<img src=\"{FILENAME}\" alt=\"{TITLE}\"/></xsl:for-each>",
        each + "t<img src=\"{FILENAME}\"/></xsl:for-each>",                       // text between
        each + "<p><xsl:value-of select=\"TITLE\"/></p></xsl:for-each>",          // text inside
        each + "<div><img src=\"{FILENAME}\"/></div></xsl:for-each>",             // nested: indented
        each + "<xsl:comment>c</xsl:comment><img src=\"{FILENAME}\"/></xsl:for-each>",
        "<xsl:param name=\"p\"/>" + each + "<img src=\"{FILENAME}\"/></xsl:for-each>",  // no room for a root
    };
    const std::string lists[] = {WriteImageList({{"a&b.jpg", "x<y \"q\"\nz"}, {"caf\xE9.png", ""}}),
                                 WriteImageList({})};
    for (const std::string& body : bodies) {
        CMsxmlTransformer wrapped, plain;  // each kept for both lists
        for (const std::string& list : lists) {
            std::string expected = plain.Transform(list, Stylesheet(body, false));
            EXPECT_EQ(wrapped.Transform(list, Stylesheet(body, true)), expected) << body;
            if (&list == &lists[0]) {
                EXPECT_NE(expected.find('<'), std::string::npos) << body;
            }
        }
    }
    CoUninitialize();
}

#endif
