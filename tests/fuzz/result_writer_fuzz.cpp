// libxslt's result written ahead while it is built (CResultWriter) against
// the whole tree: style sheets put together from fuzzed output settings and
// instructions save to the same text either way, whatever the writer leaves
// whole.
#include "fuzz_services.h"
#include "platform/result_writer_run.h"

namespace {

const char* const kOutputSettings[] = {
    " method=\"xml\"", " method=\"html\"", " method=\"text\"", " method=\"xhtml\"", " indent=\"yes\"",
    " indent=\"no\"", " encoding=\"ISO-8859-1\"", " encoding=\"utf-8\"", " doctype-system=\"a.dtd\"",
    " doctype-public=\"-//W3C//DTD XHTML 1.0 Strict//EN\" doctype-system=\"xhtml1-strict.dtd\"",
    " cdata-section-elements=\"c\"", " omit-xml-declaration=\"yes\"", " standalone=\"yes\""};

// %s is where the instructions inside go.
const char* const kInstructions[] = {
    "<e a=\"{@n}\">%s</e>", "<html>%s</html>", "<p:q xmlns:p=\"urn:p\">%s</p:q>", "<c>%s</c>", "<br/>",
    "<xsl:element name=\"x{@n}\" namespace=\"urn:x\">%s</xsl:element>", "<xsl:copy>%s</xsl:copy>",
    "<xsl:for-each select=\"//I[@n mod 40 = 0]\">%s</xsl:for-each>", "<xsl:if test=\"@n mod 3 = 0\">%s</xsl:if>",
    "<xsl:attribute name=\"t\"><xsl:value-of select=\"@t\"/><xsl:comment/>x</xsl:attribute>",
    "<xsl:value-of select=\".\"/>", "text &amp; &lt;", "<xsl:text>  </xsl:text>",
    "<xsl:text disable-output-escaping=\"yes\">&lt;raw&gt;</xsl:text>", "<xsl:number/>",
    "<xsl:comment>c<xsl:value-of select=\"@n\"/></xsl:comment>",
    "<xsl:processing-instruction name=\"pi\">p</xsl:processing-instruction>", "<xsl:copy-of select=\".\"/>",
    "<e xml:id=\"i{@n}\"/>", "<xsl:call-template name=\"v\"/>"};

// Template v holds a variable's value built from instructions; it is called
// only from shallower ones, so nothing recurses.
const int kVariableDepth = 2;

std::string Instructions(FuzzedDataProvider& in, int depth) {
    std::string out;
    for (int count = in.ConsumeIntegralInRange(0, 4); count > 0 && in.remaining_bytes() > 0; --count) {
        std::string piece = in.PickValueInArray(kInstructions);
        if (depth >= kVariableDepth && piece.find("call-template") != std::string::npos) continue;
        std::size_t inside = piece.find("%s");
        if (inside != std::string::npos) piece.replace(inside, 2, depth < 3 ? Instructions(in, depth + 1) : "");
        out += piece;
    }
    return out;
}

void Quiet(void*, const char*, ...) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static bool quiet = (xmlSetGenericErrorFunc(nullptr, Quiet), xsltSetGenericErrorFunc(nullptr, Quiet), true);
    (void)quiet;
    FuzzedDataProvider in(data, size);
    const int period = in.ConsumeIntegralInRange(1, 64);
    std::string list = "<L>";
    for (int n = in.ConsumeIntegralInRange(0, 100), i = 0; i < n; ++i)
        list += "<I n=\"" + std::to_string(i) + "\" t=\"Caf&#xE9; &lt;" + std::to_string(i) + "&gt;\">text</I>";
    list += "</L>";
    std::string sheet = "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">";
    sheet += "<xsl:output";
    for (int count = in.ConsumeIntegralInRange(0, 3); count > 0; --count) sheet += in.PickValueInArray(kOutputSettings);
    sheet += "/><xsl:template name=\"v\"><xsl:variable name=\"v\"><v>" + Instructions(in, kVariableDepth) +
             "</v><w/>x</xsl:variable><xsl:copy-of select=\"$v\"/><xsl:value-of select=\"$v\"/></xsl:template>";
    sheet += "<xsl:template match=\"I\">" + Instructions(in, 0) + "</xsl:template><xsl:template match=\"/\">";
    sheet += Instructions(in, 0) + "<xsl:apply-templates select=\"L/I\"/>" + Instructions(in, 0);
    sheet += "</xsl:template></xsl:stylesheet>";
    Require(RunWithWriter(sheet, list, period).text == RunWithWriter(sheet, list, 0).text);
    return 0;
}
