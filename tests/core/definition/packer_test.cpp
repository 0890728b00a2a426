// Packing manifests into definitions and unpacking them again: the writer's
// layout, the attribute order within hash buckets, Base64 line breaking,
// the round trip, and the messages for manifests that cannot be packed.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "definition/builtin_definition.h"
#include "definition/manifest.h"
#include "definition/packer.h"
#include "definition/unpacker.h"
#include "xml/xml_document.h"

namespace {

using definition::DefinitionError;

const std::string kDecl = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

std::string Pack(const std::string& manifest, const std::map<std::string, std::string>& files = {}) {
    return definition::PackManifest(definition::ParseManifest(manifest), [&files](const std::string& path) {
        auto found = files.find(path);
        if (found == files.end()) throw DefinitionError("cannot read '" + path + "'");
        return found->second;
    });
}

// The message of the DefinitionError that packing throws, or "" if none.
std::string PackError(const std::string& manifest, const std::map<std::string, std::string>& files = {}) {
    try {
        Pack(manifest, files);
    } catch (const DefinitionError& e) {
        return e.what();
    }
    return "";
}

TEST(Base64Lines, EveryLineEndsWithCrLfAndEmptyContentIsOneLineBreak) {
    EXPECT_EQ(definition::EncodeBase64Lines(""), "\r\n");
    EXPECT_EQ(definition::EncodeBase64Lines("Ma"), "TWE=\r\n");
    std::string line(57, 'x');  // 57 bytes fill exactly one line of 76
    std::string encoded = definition::EncodeBase64Lines(line);
    EXPECT_EQ(encoded.size(), 78u);
    encoded = definition::EncodeBase64Lines(line + "y");
    EXPECT_EQ(encoded.substr(76), "\r\neQ==\r\n");
}

TEST(Pack, WritesTheDocumentWritersLayout) {
    std::string xml = Pack(
        "[EXTENSION]\n"
        "    title = T\n"
        "    [FILES]\n"
        "        [FILE] < a.txt\n"
        "            filename = a.txt\n"
        "    [HTML_TAIL] < empty\n"
        "    [OTHER] = plain &amp; text\n"
        "    [IMAGE]\n",
        {{"a.txt", "Man"}, {"empty", ""}});
    EXPECT_EQ(xml, kDecl +
                       "<EXTENSION title=\"T\" >\r\n"
                       "\t<FILES>\r\n"
                       "\t\t<FILE filename=\"a.txt\" >TWFu\r\n</FILE>\r\n"
                       "\t</FILES>\r\n"
                       "\t<HTML_TAIL>\r\n</HTML_TAIL>\r\n"
                       "\t<OTHER>plain &amp; text</OTHER>\r\n"
                       "\t<IMAGE>\r\n\t</IMAGE>\r\n"
                       "</EXTENSION>\r\n");
}

TEST(Pack, WithinABucketTheFirstListedAttributeIsWrittenFirst) {
    // minheight and rendermethod share bucket 5; title (1) always leads.
    EXPECT_EQ(Pack("[EXTENSION]\n  rendermethod = 0\n  minheight = 50\n  title = T\n"),
              kDecl + "<EXTENSION title=\"T\" rendermethod=\"0\" minheight=\"50\" >\r\n</EXTENSION>\r\n");
    EXPECT_EQ(Pack("[EXTENSION]\n  minheight = 50\n  rendermethod = 0\n  title = T\n"),
              kDecl + "<EXTENSION title=\"T\" minheight=\"50\" rendermethod=\"0\" >\r\n</EXTENSION>\r\n");
    // type/value (11) and name/colortype (13) in a property.
    std::string xml = Pack("[EXTENSION]\n [P]\n  colortype = 0\n  name = N\n  value = v\n  type = 1\n");
    EXPECT_NE(xml.find("<P value=\"v\" type=\"1\" colortype=\"0\" name=\"N\" >"), std::string::npos) << xml;
}

TEST(Pack, TheThreeValueFormsAndBlankHandling) {
    std::string xml =
        Pack("# comment\n\n[EXTENSION]\n  a =\n  b = two  words \n  c << t.txt\n  d < t.txt\n", {{"t.txt", "x\r\ny"}});
    CXmlDocument document;
    document.Parse(xml);
    CXmlElement* root = document.GetRoot();
    EXPECT_EQ(root->GetAttribute("a"), "");
    EXPECT_EQ(root->GetAttribute("b"), "two  words ");
    EXPECT_EQ(root->GetAttribute("c"), "x\r\ny");
    EXPECT_EQ(root->GetAttribute("d"), "eA0KeQ==\r\n");
}

TEST(Pack, RefusesWhatTheReaderWouldMisread) {
    EXPECT_NE(PackError("[ROOT]\n"), "");
    EXPECT_NE(PackError("[EXTENSION]\n  [X] = 1 < 2\n").find("&lt;"), std::string::npos);
    EXPECT_NE(PackError("[EXTENSION]\n  a << t\n", {{"t", "a>b"}}).find("&gt;"), std::string::npos);
    EXPECT_NE(PackError("[EXTENSION]\n  [X] =\n").find("empty"), std::string::npos);
}

TEST(Manifest, MessagesNameTheLine) {
    auto error = [](const std::string& text) {
        try {
            definition::ParseManifest(text);
        } catch (const DefinitionError& e) {
            return std::string(e.what());
        }
        return std::string();
    };
    EXPECT_EQ(error("x = 1\n"), "manifest line 1: an attribute outside any element: 'x = 1'");
    EXPECT_EQ(error("[A]\n[B]\n"), "manifest line 2: a second top-level element [B]; there is one root");
    EXPECT_EQ(error("[A] = v\n  [B]\n"), "manifest line 2: [A] has a value, so it cannot have child elements");
    EXPECT_EQ(error("[A]\n  x = 1\n  x = 2\n"), "manifest line 3: attribute 'x' appears twice in [A]");
    EXPECT_EQ(error("[A b]\n"), "manifest line 1: element name 'A b' contains ' '");
    EXPECT_EQ(error("[A] < ../x\n"), "manifest line 1: '../x' must stay inside the folder");
    EXPECT_EQ(error("# nothing\n"), "the manifest has no element");
}

TEST(Unpack, FoldersAndUnsafeNamesStayInsideTheFolder) {
    std::string xml = Pack(
        "[EXTENSION]\n"
        "  [FILES]\n"
        "    [FOLDER]\n"
        "      name = css\n"
        "      [FILE] < a\n"
        "        filename = site.css\n"
        "    [FILE] < a\n"
        "      filename = ../../evil.sh\n"
        "    [FILE] < a\n"
        "      filename = site.css\n"
        "    [FILE] < a\n"
        "      filename = site.css\n",
        {{"a", "body{}"}});
    definition::UnpackedDefinition unpacked = definition::UnpackDefinition(xml);
    ASSERT_EQ(unpacked.files.size(), 4u);
    EXPECT_EQ(unpacked.files[0].path, "files/css/site.css");
    EXPECT_EQ(unpacked.files[1].path, "files/file.bin");
    EXPECT_EQ(unpacked.files[2].path, "files/site.css");
    EXPECT_EQ(unpacked.files[3].path, "files/site-2.css");
    EXPECT_TRUE(unpacked.exact);
}

TEST(Unpack, AHandWrittenDefinitionUnpacksToAnEquivalentOne) {
    // Attributes out of bucket order, no tabs, a multi-line value that is
    // not Base64: packing gives the same tree in the writer's layout.
    std::string hand =
        "<EXTENSION text=\"t\" title=\"T\"><HTML_HEAD>not\r\nbase64</HTML_HEAD><X a=\"1\"></X></EXTENSION>";
    definition::UnpackedDefinition unpacked = definition::UnpackDefinition(hand);
    EXPECT_FALSE(unpacked.exact);
    std::map<std::string, std::string> files;
    for (const auto& f : unpacked.files) files[f.path] = f.bytes;
    EXPECT_EQ(files["head.html"], "not\r\nbase64");
    EXPECT_NE(unpacked.manifest.find("[HTML_HEAD] << head.html"), std::string::npos);

    CXmlDocument before, after;
    before.Parse(hand);
    after.Parse(Pack(unpacked.manifest, files));
    EXPECT_EQ(after.GetRoot()->GetAttributes(), before.GetRoot()->GetAttributes());
    EXPECT_EQ(after.GetChildValue(after.GetRoot(), "HTML_HEAD"), "not\r\nbase64");
    EXPECT_EQ(after.GetRoot()->FindChild("X")->GetAttribute("a"), "1");
}

TEST(Unpack, DeepNestingIsRefusedNotOverflowingTheStack) {
    std::string deep = "<EXTENSION>";
    for (int i = 0; i < 100000; ++i) deep += "<FOLDER>";
    EXPECT_THROW(definition::UnpackDefinition(deep), DefinitionError);
    std::string manifest;
    for (int i = 0; i < 300; ++i) manifest += std::string(static_cast<std::size_t>(i), ' ') + "[E]\n";
    EXPECT_THROW(definition::ParseManifest(manifest), DefinitionError);
}

}  // namespace
