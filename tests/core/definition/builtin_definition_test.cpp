// The built-in definition against its documented content: layout, attribute
// order, properties, payload files and the exact template texts, read back
// with the document parser as the plug-in reads it. (Base64 line breaking is
// the packer's, tested with it.)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "definition/builtin_definition.h"
#include "xml/base64.h"
#include "xml/xml_document.h"

namespace {

std::string Lines(std::initializer_list<const char*> lines, bool finalBreak) {
    std::string out;
    for (const char* line : lines) out += std::string(line) + "\r\n";
    if (!finalBreak) out.resize(out.size() - 2);
    return out;
}

const std::string kHead = Lines(
    {"<link rel=\"stylesheet\" title=\"Standard\" href=\"slidewave.css\" type=\"text/css\" media=\"screen\" />",
     "<script language=\"JavaScript\" type=\"text/javascript\" src=\"slidewave.js\"></script>"},
    false);

const std::string kBody = Lines(
    {"<div style=\"background-color:$backgroundcolor$;position:absolute;left:$LEFT$px;top:$TOP$px;width:$WIDTH$px;"
     "height:$HEIGHT$px;z-index:$Z_INDEX$\">",
     "<div id=\"slidewave\" style=\"left:0px;top:0px;width:$WIDTH$px;height:$HEIGHT$px\">",
     "   <div id=\"loading\">",
     "      <b>Loading images</b><br/>",
     "      <img src=\"loading.gif\" width=\"208\" height=\"13\" alt=\"loading\" />",
     "   </div>",
     "   <div id=\"images\">",
     "      $images$",
     "   </div>",
     "   <div id=\"captions\"></div>",
     "   <div id=\"scrollbar\">",
     "      <div id=\"slider\"></div>",
     "   </div>",
     "</div>",
     "</div>"},
    false);

const std::string kGallery = Lines(
    {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
     "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"1.0\">",
     "<xsl:output method=\"xml\" indent=\"yes\"/>",
     "<xsl:template match='/'>",
     "<xsl:for-each select=\"GALLERY/IMAGE\">",
     "<xsl:choose>",
     "<xsl:when test=\"'$enablereflection$'='true'\">",
     "      <img src=\"reflect.php?img={FILENAME}\" longdesc=\"{FILENAME}\" alt=\"{TITLE}\" />",
     "",
     "</xsl:when>",
     "<xsl:otherwise>",
     "      <img src=\"{FILENAME}\" longdesc=\"{FILENAME}\" alt=\"{TITLE}\" />",
     "",
     "</xsl:otherwise>",
     "</xsl:choose>",
     "</xsl:for-each>",
     "</xsl:template>",
     "</xsl:stylesheet>",
     ""},
    true);

class BuiltinDefinition : public ::testing::Test {
protected:
    void SetUp() override {
        text = std::string(::BuiltinDefinition());
        document.Parse(text);
        root = document.GetRoot();
    }
    std::string Decoded(CXmlElement* element) { return Base64DecodeOrKeep(element->GetValue()); }
    std::vector<CXmlElement*> Children(CXmlElement* parent) {
        std::vector<CXmlElement*> out;
        for (std::size_t i = 0; i < parent->GetChildCount(); ++i) out.push_back(parent->GetChild(i));
        return out;
    }

    std::string text;
    CXmlDocument document;
    CXmlElement* root = nullptr;
};

TEST_F(BuiltinDefinition, StartsWithTheDeclarationAndTheRootInHashOrder) {
    const std::string start =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
        "<EXTENSION title=\"Slidewave\" website=\"https://slidewave.example/\" minheight=\"50\" rendermethod=\"0\" "
        "usediv=\"0\" minwidth=\"50\" developer=\"Slidewave Project\" text=\"Slidewave Extension\" >\r\n"
        "\t<PROPERTIES>\r\n"
        "\t\t<CATEGORY name=\"General\" >\r\n"
        "\t\t\t<PROPERTY gallerytemplate=\"";
    EXPECT_EQ(text.substr(0, start.size()), start);
    EXPECT_EQ(text.substr(text.size() - 14), "</EXTENSION>\r\n");
    // The parser keeps the line break after the declaration in the root's name.
    EXPECT_EQ(root->GetName(), "\r\nEXTENSION");
}

TEST_F(BuiltinDefinition, ElementsInDocumentOrderWithoutPreviewImage) {
    std::vector<std::string> names;
    for (CXmlElement* child : Children(root)) names.push_back(child->GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"PROPERTIES", "FILES", "BITMAP", "HTML_HEAD", "HTML_BODY", "HTML_TAIL"}));
    EXPECT_EQ(root->FindChild("IMAGE"), nullptr);
}

TEST_F(BuiltinDefinition, PropertiesAsDocumented) {
    struct Expected {
        const char *category, *name, *type, *value, *variable, *description, *colortype;
    };
    const Expected expected[] = {
        {"General", "Images", "6", "", "$images$", "Specified the images", nullptr},
        {"General", "EnableReflection", "0", "false", "$enablereflection$",
         "Specifies whether to enable reflection (PHP required!)", nullptr},
        {"Style", "BackgroundColor", "1", "#000000", "$backgroundcolor$", "Specifies the background color", "0"},
        {"Style", "FontName", "4", "Arial", "$fontname$", "Specifies the font name", nullptr},
        {"Style", "FontSize", "5", "10", "$fontsize$", "Specifies the font size", nullptr},
        {"Style", "TextColor", "1", "#FFFFFF", "$textcolor$", "Specifies the text color", "0"},
    };
    std::size_t n = 0;
    for (CXmlElement* category : Children(root->FindChild("PROPERTIES"))) {
        ASSERT_EQ(category->GetName(), "CATEGORY");
        for (CXmlElement* property : Children(category)) {
            ASSERT_LT(n, std::size(expected));
            const Expected& e = expected[n++];
            SCOPED_TRACE(e.name);
            EXPECT_EQ(category->GetAttribute("name"), e.category);
            EXPECT_EQ(property->GetAttribute("name"), e.name);
            EXPECT_EQ(property->GetAttribute("type"), e.type);
            EXPECT_EQ(property->GetAttribute("value"), e.value);
            EXPECT_EQ(property->GetAttribute("variable"), e.variable);
            EXPECT_EQ(property->GetAttribute("description"), e.description);
            EXPECT_TRUE(property->GetAttributes().Contains("options"));
            EXPECT_EQ(property->GetAttribute("options"), "");
            EXPECT_EQ(property->GetAttributes().Contains("colortype"), e.colortype != nullptr);
            if (e.colortype) EXPECT_EQ(property->GetAttribute("colortype"), e.colortype);
            EXPECT_EQ(property->GetAttributes().Contains("gallerytemplate"), n == 1);
        }
    }
    EXPECT_EQ(n, std::size(expected));
}

TEST_F(BuiltinDefinition, PropertyAttributesAreWrittenInBucketOrder) {
    // gallerytemplate 0, variable 4, options 7, description 9, type and value
    // 11, name and colortype 13: type before value, name before colortype.
    EXPECT_NE(text.find("\" variable=\"$images$\" options=\"\" description=\"Specified the images\" type=\"6\" "
                        "value=\"\" name=\"Images\" >\r\n\t\t\t</PROPERTY>\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("\t\t\t<PROPERTY variable=\"$backgroundcolor$\" options=\"\" description=\"Specifies the "
                        "background color\" type=\"1\" value=\"#000000\" name=\"BackgroundColor\" colortype=\"0\" "
                        ">\r\n"),
              std::string::npos);
}

TEST_F(BuiltinDefinition, GalleryTemplateDecodesToTheDocumentedStyleSheet) {
    CXmlElement* images = root->FindChild("PROPERTIES")->FindChild("CATEGORY")->FindChild("PROPERTY");
    std::string decoded = Base64DecodeOrKeep(images->GetAttribute("gallerytemplate"));
    EXPECT_EQ(decoded.size(), 562u);
    EXPECT_EQ(decoded, kGallery);
}

TEST_F(BuiltinDefinition, PayloadFilesWithTheirFlags) {
    struct Expected {
        const char* name;
        const char* processed;
    };
    const Expected expected[] = {{"reflect.php", "0"}, {"slider.png", "0"}, {"slidewave.css", "1"},
                                 {"slidewave.js", "0"}, {"loading.gif", "0"}};
    std::vector<CXmlElement*> files = Children(root->FindChild("FILES"));
    ASSERT_EQ(files.size(), std::size(expected));
    for (std::size_t i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(expected[i].name);
        EXPECT_EQ(files[i]->GetName(), "FILE");
        EXPECT_EQ(files[i]->GetAttribute("filename"), expected[i].name);
        EXPECT_EQ(files[i]->GetAttribute("process_file"), expected[i].processed);
        std::string line = std::string("\t\t<FILE filename=\"") + expected[i].name + "\" process_file=\"" +
                           expected[i].processed + "\" >";
        EXPECT_NE(text.find(line), std::string::npos);
    }
}

TEST_F(BuiltinDefinition, PicturesHaveTheirFormatsAndSizes) {
    std::vector<CXmlElement*> files = Children(root->FindChild("FILES"));
    auto u32be = [](const std::string& s, std::size_t at) {
        return (unsigned(static_cast<unsigned char>(s[at])) << 24) | (unsigned(static_cast<unsigned char>(s[at + 1])) << 16) |
               (unsigned(static_cast<unsigned char>(s[at + 2])) << 8) | unsigned(static_cast<unsigned char>(s[at + 3]));
    };
    auto u16le = [](const std::string& s, std::size_t at) {
        return unsigned(static_cast<unsigned char>(s[at])) | (unsigned(static_cast<unsigned char>(s[at + 1])) << 8);
    };
    std::string slider = Decoded(files[1]);
    EXPECT_EQ(slider.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(u32be(slider, 16), 14u);
    EXPECT_EQ(u32be(slider, 20), 14u);

    std::string loading = Decoded(files[4]);
    EXPECT_EQ(loading.substr(0, 6), "GIF89a");
    EXPECT_EQ(u16le(loading, 6), 208u);
    EXPECT_EQ(u16le(loading, 8), 13u);
    EXPECT_NE(loading.find("NETSCAPE2.0"), std::string::npos) << "the animation loops";
    EXPECT_EQ(loading.back(), ';');

    CXmlElement* bitmap = root->FindChild("BITMAP");
    EXPECT_EQ(bitmap->GetAttributeText(), "filename=\"\"");
    std::string bmp = Decoded(bitmap);
    ASSERT_EQ(bmp.size(), 822u);
    EXPECT_EQ(bmp.substr(0, 2), "BM");
    EXPECT_EQ(u16le(bmp, 18), 16u);
    EXPECT_EQ(u16le(bmp, 22), 16u);
    EXPECT_EQ(u16le(bmp, 28), 24u);
}

TEST_F(BuiltinDefinition, StyleSheetFollowsItsLineFormat) {
    std::string css = Decoded(Children(root->FindChild("FILES"))[2]);
    const char* selectors[] = {"#images", "#images img", "#loading", "#loading img",
                               "#captions", "#scrollbar", "#slider", "#slidewave"};
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

TEST_F(BuiltinDefinition, TemplatesDecodeToTheDocumentedTexts) {
    EXPECT_EQ(Decoded(root->FindChild("HTML_HEAD")), kHead);
    EXPECT_EQ(kHead.size(), 177u);
    EXPECT_EQ(Decoded(root->FindChild("HTML_BODY")), kBody);
    EXPECT_EQ(kBody.size(), 526u);
}

TEST_F(BuiltinDefinition, EmptyTailIsALineBreakThatTheParserStoresAsEmpty) {
    EXPECT_NE(text.find("\t<HTML_TAIL>\r\n</HTML_TAIL>\r\n"), std::string::npos);
    EXPECT_EQ(document.GetChildValue(root, "HTML_TAIL"), "");
}

}  // namespace
