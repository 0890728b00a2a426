#pragma once
// The XML document: a root element held by value, the one-pass tolerant
// parser that fills it and the writer that turns it back into text.
//
// The parser is a scanner, not a validator. It never fails, never matches end
// tags against start tags, ignores declarations and comments, and keeps the
// quirks that stored documents depend on (see Parse). Text is 8-bit and
// binary-safe; no character-set conversion happens anywhere.
#include <optional>
#include <string>
#include <string_view>

#include "xml/xml_element.h"

class CXmlDocument {
public:
    // Elements nest at most this many levels, the root being the first.
    // Parsing stops at a start tag that would nest deeper, so every walk,
    // and the writer, whose indentation grows with the depth, stays cheap
    // on any input: a megabyte of text never writes more than about 35 MB.
    // Definitions, image lists and site structures are a few levels deep.
    static constexpr int kMaxDepth = 64;

    CXmlDocument();
    virtual ~CXmlDocument() = default;
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    CXmlElement* GetRoot() { return &root_; }
    const CXmlElement* GetRoot() const { return &root_; }
    // The text last given to Parse.
    const std::string& GetSourceText() const { return source_; }

    // Deletes the root's children and empties its texts; the root's attribute
    // map is kept on purpose, so a re-parse merges into it.
    void Clear();

    // Replaces the tree with the one scanned from text. Always returns 1.
    int Parse(std::string_view text);
    // Whether the last Parse stopped early at an element nested deeper than
    // kMaxDepth; the tree then holds what came before it.
    bool IsTruncated() const { return truncated_; }
    // Whether parsing text would stop so, found without building the tree.
    static bool NestsTooDeep(std::string_view text);

    // Classifies the text of one tag: -1 ignore, 0 start tag, 1 end tag,
    // 2 empty-element tag; inner receives the text between the brackets.
    static int ClassifyTag(std::string_view tag, std::string& inner);

    // The whole document: declaration, CR LF, then the root and its subtree.
    std::string GetXml();
    // Appends one element and its subtree to out. Always returns 1.
    int WriteElement(CXmlElement* element, std::string& out);

    // The decoded value of parent's first child called name, or empty.
    std::string GetChildValue(CXmlElement* parent, std::string_view name);
    // Appends a new child named name (trimmed). value, when given, is stored
    // escaped (quotes left alone); attributes, when given, become its
    // attribute text and are parsed into its map. The parent link stays null.
    CXmlElement* AddChild(CXmlElement* parent, std::string_view name, std::optional<std::string_view> value,
                          std::optional<std::string_view> attributes);
    // Sets the value (and attributes) of parent's first child called name,
    // or adds such a child when there is none.
    void SetChildValue(CXmlElement* parent, std::string_view name, std::string_view value,
                       std::optional<std::string_view> attributes);

    // Entity coding of element values.
    static std::string Escape(std::string_view text, bool escapeQuotes);
    static std::string Unescape(std::string_view text);

private:
    struct TreeSink;
    int writerDepth_ = -1;
    bool truncated_ = false;
    std::string source_;
    CXmlElement root_;
    CXmlElement* current_;
};
