// A result whose finished parts were written ahead saves to the same text as
// the whole tree, for every kind of node and output; and only the outputs
// that allow it are written ahead.
#include <gtest/gtest.h>

#if defined(PW_HAVE_LIBXSLT)

#include "result_writer_run.h"

namespace {

std::string Sheet(const std::string& output, const std::string& rootTemplate) {
    return "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">" + output +
           "<xsl:template match=\"/\">" + rootTemplate + "</xsl:template></xsl:stylesheet>";
}

}  // namespace

TEST(ResultWriter, WritesAheadOnlyWhatSavesTheSame) {
    std::string list = "<L>";
    for (int i = 0; i < 200; ++i) {
        std::string n = std::to_string(i);
        list += "<I n=\"" + n + "\" t=\"Caf&#xE9; &amp; &lt;" + n + "&gt; &quot;\">text " + n + " &#x20AC;</I>";
    }
    list += "</L>";
    // Every kind of node, namespaces, a variable's value copied in,
    // attribute and comment texts built from instructions.
    const std::string items =
        "<xsl:for-each select=\"L/I\"><p:item n=\"{@n}\">"
        "<xsl:attribute name=\"t\"><xsl:value-of select=\"@t\"/><xsl:comment/><xsl:value-of select=\"@n\"/>"
        "</xsl:attribute><xsl:value-of select=\".\"/>"
        "<code><xsl:value-of select=\"@t\"/></code><xsl:comment><xsl:value-of select=\"@n\"/></xsl:comment>"
        "<xsl:processing-instruction name=\"pi\">x</xsl:processing-instruction>"
        "<xsl:text disable-output-escaping=\"yes\">&lt;raw/&gt;</xsl:text>"
        "<xsl:variable name=\"v\"><v><xsl:value-of select=\"@t\"/></v><w/><x/></xsl:variable>"
        "<xsl:copy-of select=\"$v\"/><xsl:value-of select=\"$v\"/>"
        "<xsl:element name=\"e\" namespace=\"urn:e\"><xsl:copy-of select=\".\"/></xsl:element>"
        "</p:item>text <xsl:value-of select=\"@n\"/></xsl:for-each>";
    const std::string nested = "<root xmlns:p=\"urn:p\">" + items + "</root>";
    // Elements at the top level, with texts and comments between them.
    const std::string topLevel =
        "<xsl:for-each select=\"L/I\"><img src=\"{@n}\" alt=\"{@t}\"/>"
        "<xsl:if test=\"@n mod 25 = 0\"><xsl:comment>c</xsl:comment></xsl:if>"
        "<xsl:if test=\"@n mod 40 = 0\">t</xsl:if></xsl:for-each>";
    const struct {
        std::string sheet;
        bool writtenAhead;
    } cases[] = {
        {Sheet("<xsl:output method=\"xml\" indent=\"yes\"/>", topLevel), true},
        {Sheet("<xsl:output method=\"xml\" cdata-section-elements=\"code\"/>", nested), true},
        {Sheet("<xsl:output doctype-system=\"list.dtd\"/>", nested), true},
        {Sheet("<xsl:output method=\"xml\" indent=\"yes\"/>", nested), false},
        {Sheet("<xsl:output doctype-public=\"-//W3C//DTD XHTML 1.0 Strict//EN\" "
               "doctype-system=\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd\"/>",
               nested),
         false},
        {Sheet("<xsl:output method=\"xml\" encoding=\"ISO-8859-1\"/>", nested), false},
        {Sheet("", "<HTML><body>" + items + "</body></HTML>"), false},
        {Sheet("<xsl:output method=\"html\"/>", nested), false},
        {Sheet("<xsl:output method=\"text\"/>", nested), false},
    };
    for (const auto& c : cases) {
        const WriterRun whole = RunWithWriter(c.sheet, list, 0);
        ASSERT_GT(whole.text.size(), 1000u) << c.sheet;
        for (int period : {1, 3, 64}) {
            const WriterRun ahead = RunWithWriter(c.sheet, list, period);
            EXPECT_EQ(ahead.text, whole.text) << c.sheet << " every " << period;
            if (!c.writtenAhead) {
                EXPECT_EQ(ahead.nodes, whole.nodes) << c.sheet;
            } else if (period == 64) {
                EXPECT_LT(ahead.nodes, whole.nodes / 2) << c.sheet;
            }
        }
    }
}

#endif
