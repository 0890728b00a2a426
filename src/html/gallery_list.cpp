#include "html/gallery_list.h"

#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <vector>

#include "html/image_list.h"
#include "html/published_names.h"
#include "xml/ascii.h"
#include "xml/xml_document.h"
#include "xml/xml_layout.h"
#include "xml/xml_scanner.h"

namespace {

// The URL of the folder the page's pictures are published in, with a '/'.
std::string PageFolderUrl(std::string_view pageContext, const NameToUtf8Fn& toUtf8) {
    while (!pageContext.empty() && pageContext.back() == '/') pageContext.remove_suffix(1);
    return UrlPathOf(toUtf8(pageContext)) + '/';
}

// Appends the URL of the picture a FILENAME names, as published; a URL path
// holds nothing that needs escaping as an element value.
void AppendPublishedUrl(std::string& out, const std::string& folder, std::string_view fileName,
                        const NameToUtf8Fn& toUtf8) {
    out += folder;
    out += UrlPathOf(toUtf8(PublishedFileName(fileName)));
}

// The usual image list, read into a flat array of its elements in one pass
// of the parser's scanner: the tree the parser would build, for lists in
// which cleaning up would change nothing. Gives up (and the list goes
// through the tree) on attributes, values gathered around a stray '>',
// names that are not XML names as they stand, a FILENAME field with
// elements inside, a nameless first tag, and lists nested too deep.
class CFlatImageList {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    bool Read(std::string_view text) {
        elements_.reserve(text.size() / 32 + 1);  // a written list has about one element in 32 bytes
        elements_.emplace_back();
        const bool whole = xml_scan::ScanElements(text, *this);
        return whole && !failed_ && !elements_[0].name.empty();
    }

    // The rewrite of RewriteImageListForPage, written as GetXml writes.
    std::string Rewrite(std::string_view pageContext, const NameToUtf8Fn& toUtf8) {
        const std::string folder = PageFolderUrl(pageContext, toUtf8);
        // The new values go one after the other into urls, and become the
        // fields' values once urls has stopped growing.
        std::string urls;
        struct NewValue {
            std::uint32_t field;
            std::size_t start, end;
        };
        std::vector<NewValue> values;
        for (std::uint32_t image = elements_[0].firstChild; image != kNone; image = elements_[image].nextSibling) {
            if (!ascii::EqualsNoCase(elements_[image].name, "IMAGE")) continue;
            std::uint32_t field = elements_[image].firstChild;
            while (field != kNone && !ascii::EqualsNoCase(elements_[field].name, "FILENAME"))
                field = elements_[field].nextSibling;
            std::string_view fileName;
            std::string unescaped;
            if (field == kNone) {
                field = Append(image, "FILENAME");
            } else {
                fileName = elements_[field].value;
                if (fileName.find('&') != std::string_view::npos)
                    fileName = unescaped = CXmlDocument::Unescape(fileName);
            }
            const std::size_t start = urls.size();
            AppendPublishedUrl(urls, folder, fileName, toUtf8);
            values.push_back({field, start, urls.size()});
        }
        for (const NewValue& v : values)
            elements_[v.field].value = std::string_view(urls).substr(v.start, v.end - v.start);
        elements_[0].name = "GALLERY";
        return Write();
    }

    // --- the scanner's events (see xml_scanner.h) -------------------------
    void OnValue(std::string_view text, bool inSource) {
        if (!inSource) failed_ = true;
        elements_[current_].value = text;
    }
    bool OnRoot(std::string_view name, std::string_view attributes, bool plain) {
        if (!attributes.empty() || name.empty()) return Fail();
        elements_[0].name = Kept(name, plain);
        return true;
    }
    bool OnOpen(std::string_view name, std::string_view attributes, bool plain) {
        if (!attributes.empty() || !IsXmlName(name) || IsFileNameField(current_)) return Fail();
        current_ = Append(current_, Kept(name, plain));
        return true;
    }
    void OnClose() { current_ = elements_[current_].parent; }

private:
    struct Element {
        std::string_view name, value;
        std::uint32_t parent = kNone, firstChild = kNone, lastChild = kNone, nextSibling = kNone;
    };

    bool Fail() {
        failed_ = true;
        return false;
    }
    // A name not lying in the list's text is in the scanner's scratch, which
    // the next tag overwrites: such names are kept here.
    std::string_view Kept(std::string_view name, bool plain) { return plain ? name : names_.emplace_back(name); }
    std::uint32_t Append(std::uint32_t parent, std::string_view name) {
        const auto index = static_cast<std::uint32_t>(elements_.size());
        elements_.push_back({name, {}, parent, kNone, kNone, kNone});
        Element& p = elements_[parent];
        (p.lastChild == kNone ? p.firstChild : elements_[p.lastChild].nextSibling) = index;
        p.lastChild = index;
        return index;
    }
    // A FILENAME in an element of the root: the tree path empties it.
    bool IsFileNameField(std::uint32_t element) const {
        const std::uint32_t parent = elements_[element].parent;
        return element != 0 && parent != 0 && elements_[parent].parent == 0 &&
               ascii::EqualsNoCase(elements_[element].name, "FILENAME");
    }

    // The text GetXml writes for the tree, measured first and then copied
    // into place.
    std::string Write() const {
        struct Measure {
            std::size_t size = 0;
            void Text(std::string_view piece) { size += piece.size(); }
            void Tabs(std::size_t count) { size += count; }
        } measure;
        Walk(measure);
        std::string out(measure.size, '\t');
        struct Copy {
            char* at;
            void Text(std::string_view piece) {
                std::memcpy(at, piece.data(), piece.size());
                at += piece.size();
            }
            void Tabs(std::size_t count) { at += count; }  // out is all tabs to begin with
        } copy{out.data()};
        Walk(copy);
        return out;
    }

    // Writes the tree into out (see xml_layout.h).
    template <class Out>
    void Walk(Out& out) const {
        out.Text(xml_layout::kDeclaration);
        std::vector<std::uint32_t> open{0};  // the path to the element being written
        std::uint32_t next = 0;              // the element to open, or kNone to close open.back()
        while (!open.empty()) {
            const std::size_t depth = open.size() - 1;
            if (next != kNone) {
                const Element& e = elements_[next];
                xml_layout::Open(out, next == 0 ? 0 : depth + 1, e.name, {}, e.value);
                if (next != 0) open.push_back(next);
                next = e.firstChild;
                continue;
            }
            const Element& e = elements_[open.back()];
            xml_layout::Close(out, depth, e.name, !e.value.empty());
            next = e.nextSibling;
            open.pop_back();
        }
    }

    std::vector<Element> elements_;  // [0] is the root
    std::deque<std::string> names_;  // names not in the source text
    std::uint32_t current_ = 0;
    bool failed_ = false;
};

}  // namespace

std::string RewriteImageListForPage(CXmlDocument& list, std::string_view pageContext, const NameToUtf8Fn& toUtf8) {
    CXmlElement* root = list.GetRoot();
    root->SetName("GALLERY");
    const std::string folder = PageFolderUrl(pageContext, toUtf8);
    for (std::size_t i = 0; i < root->GetChildCount(); ++i) {
        CXmlElement* image = root->GetChild(i);
        if (!ascii::EqualsNoCase(image->GetName(), "IMAGE")) continue;
        std::string url;
        AppendPublishedUrl(url, folder, list.GetChildValue(image, "FILENAME"), toUtf8);
        list.SetChildValue(image, "FILENAME", url, std::nullopt);
    }
    return list.GetXml();
}

std::optional<std::string> RewriteImageListForPage(std::string_view list, std::string_view pageContext,
                                                   const NameToUtf8Fn& toUtf8) {
    {
        CFlatImageList flat;
        if (flat.Read(list)) return flat.Rewrite(pageContext, toUtf8);
    }
    CXmlDocument parsed;
    if (!ParseImageList(parsed, list)) return std::nullopt;
    return RewriteImageListForPage(parsed, pageContext, toUtf8);
}

std::string StripXmlDeclaration(std::string text) {
    std::size_t start = text.find("<?xml");
    if (start == std::string::npos) return text;
    std::size_t end = text.find("?>", start);
    if (end == std::string::npos) return text;
    text.erase(0, end + 2);  // in place: the text may be megabytes
    return text;
}
