// The built-in definition as the plug-in reads it. Its content is the
// resources/ folder, packed; the checks here are the rules the packed
// result must keep that no other suite sees: the style sheet's line format
// and its configured values reaching the page unchanged.
#include <gtest/gtest.h>

#include <string>

#include "definition/builtin_definition.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace {

std::string PayloadFile(CXmlDocument& document, const std::string& name) {
    const CXmlElement* files = document.GetRoot()->FindChild("FILES");
    for (std::size_t i = 0; files && i < files->GetChildCount(); ++i)
        if (files->GetChild(i)->GetAttribute("filename") == name)
            return Base64DecodeOrKeep(files->GetChild(i)->GetValue());
    return {};
}

TEST(BuiltinDefinition, StyleSheetFollowsItsLineFormat) {
    CXmlDocument document;
    document.Parse(std::string(BuiltinDefinition()));
    std::string css = PayloadFile(document, "slidewave.css");
    const char* selectors[] = {"#images",   "#images img", "#loading", "#loading img",
                               "#captions", "#scrollbar",  "#slider",  "#slidewave"};
    std::size_t at = 0;
    for (const char* selector : selectors) {
        std::string rule = std::string(selector) + "\r\n{\r\n   ";
        ASSERT_EQ(css.compare(at, rule.size(), rule), 0) << selector;
        at = css.find("\r\n}\r\n", at);
        ASSERT_NE(at, std::string::npos);
        at += 5;
    }
    EXPECT_EQ(at, css.size()) << "nothing after the last rule";
    EXPECT_EQ(css.find("\r\n\r\n"), std::string::npos) << "no blank lines";
    // The configured values reach the page as they are: no unit or
    // fallback family is added to them.
    EXPECT_NE(css.find("#slidewave\r\n{\r\n   background-color:$backgroundcolor$;\r\n   color:$textcolor$;\r\n"
                       "   font-size:$fontsize$;\r\n   font-family:$fontname$;\r\n   text-align:left\r\n}\r\n"),
              std::string::npos);
    EXPECT_NE(css.find("   background-image:url(slider.png);\r\n"), std::string::npos);
}

}  // namespace
