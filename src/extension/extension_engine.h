#pragma once
// The extension object without any Windows: everything an extension object
// does between construction and destruction except drawing and dialogs.
//
// The engine is built from the definition text. It holds the parsed
// definition, the property values map, the HTML cache, the page context, the
// site structure, the object ID, the minimum size, the use-DIV flag, the render
// method, the toolbar text and the position. The plug-in's object is a thin
// shell that forwards each of its operations to the operation of the same
// name here.
//
// Platform services are borrowed, not owned, and must outlive the engine:
// without a file system publishing writes nothing, without a transformer
// gallery markup is empty.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "extension/project_record.h"
#include "extension/publish_plan.h"
#include "extension/text_memo.h"
#include "xml/hashed_string_map.h"
#include "xml/xml_document.h"

class CFileSystem;
class CXsltTransformer;

// A rectangle as the host passes it: left, top, right, bottom.
struct ExtensionRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

struct ExtensionServices {
    CFileSystem* fileSystem = nullptr;
    CXsltTransformer* transformer = nullptr;
    // Called with the HTML cache at the end of every design-view update
    // (UpdateHtml(0)) when the render method is 2; the snapshot renderer
    // hangs here. Also called from the constructor's update.
    std::function<void(const std::string& html)> onDesignHtml;
};

class CExtensionEngine {
public:
    CExtensionEngine(std::string_view definitionText, ExtensionServices services);
    CExtensionEngine(const CExtensionEngine&) = delete;
    CExtensionEngine& operator=(const CExtensionEngine&) = delete;

    // --- the object's small state ---------------------------------------------
    void SetID(int id) { id_ = id; }
    int GetID() const { return id_; }
    void Move(const ExtensionRect& position) { position_ = position; }
    const ExtensionRect& GetPosition() const { return position_; }
    void GetMinimumSize(int& width, int& height) const {
        width = minWidth_;
        height = minHeight_;
    }
    bool UseDIV() const { return useDiv_; }
    int GetRenderMethod() const { return renderMethod_; }
    const std::string& GetToolbarText() const { return toolbarText_; }

    // The definition as parsed; read-only after construction (the Properties
    // dialog walks it, which moves its child cursors but changes nothing).
    CXmlDocument& GetDefinition() { return definition_; }
    CXmlDocument& GetSiteStructureDocument() { return siteStructure_; }

    // --- property values -------------------------------------------------------
    const CHashedStringMap& GetValues() const { return values_; }
    // Sets one entry without regenerating anything.
    void SetValue(std::string_view variable, std::string_view value) { values_.Set(variable, value); }
    // The Properties dialog's OK path: the map is replaced by values and the
    // design-view HTML regenerated (UpdateHtml(0)).
    void ReplaceValues(const CHashedStringMap& values);
    // The current value of a property element: the map's entry for its
    // decoded variable, else its decoded value attribute.
    std::string CurrentValueOf(const CXmlElement& property) const;

    // --- HTML ------------------------------------------------------------------
    const std::string& GetHtmlCache() const { return htmlCache_; }
    const std::string& GetPageContext() const { return pageContext_; }
    void SetPageContext(std::string_view context) { pageContext_.assign(context.data(), context.size()); }

    // Replaces every declared variable in text, properties in document order.
    // A replacement that would make the text larger than
    // kMaxSubstitutedText is skipped, the variable left in place.
    void ReplaceVariables(std::string& text);
    static constexpr std::size_t kMaxSubstitutedText = 32u << 20;
    // Whether a replacement was ever skipped for its size.
    bool ExceededSizeLimit() const { return oversized_; }
    // Rewrites the HTML cache from HTML_BODY: publishing non-zero for the
    // published page, zero for the design view.
    void UpdateHtml(int publishing);
    std::string GetHeaderHtml();
    std::string GetStartofPageHTML();
    // Stores context as the page context (null counts as empty), runs
    // UpdateHtml(1) and returns the HTML cache.
    std::string GetHtml(const char* context);
    // The gallery markup of an image-list property for value; keepPaths zero
    // rewrites file names to the page context's folder. A list nested deeper
    // than the XML model takes, or (after substitution) holding more than
    // kMaxGalleryTags tags, gets none: each element costs a couple of
    // hundred bytes, and values may expand to kMaxSubstitutedText.
    static constexpr std::size_t kMaxGalleryTags = 300000;  // 25,000 pictures with every field
    std::string GetGalleryCode(const CXmlElement& property, std::string_view value, int keepPaths);

    // --- publishing --------------------------------------------------------------
    // Writes the payload files and copies the user's files and images,
    // skipping whatever fails. Always returns 1.
    int CopyFiles(std::string_view outputFolder, std::string_view imageFolder);
    // What CopyFiles would do, without doing it; sets the page context as
    // CopyFiles does.
    PublishPlan PlanCopyFiles(std::string_view outputFolder, std::string_view imageFolder);
    // Carries out a plan's steps in order; failed steps are skipped.
    void RunPlan(const PublishPlan& plan);
    // Writes the FOLDER and FILE children of parent into folder, which ends
    // with a separator.
    void ProcessFiles(const CXmlElement& parent, std::string_view folder);
    // Creates every folder along path; the result of the last creation.
    bool CreateDirectoryPath(std::string_view path);

    // --- links and site structure -----------------------------------------------
    int GetURLCount();
    std::string GetURL(int index);
    void SetURL(int index, std::string_view text);
    void SetSiteStructure(std::string_view text) { siteStructure_.Parse(text); }
    // Depth-first searches of the site structure from start's children (the
    // root's when start is null).
    CXmlElement* FindCurrentPage(CXmlElement* start = nullptr);
    CXmlElement* FindPageByName(std::string_view name, CXmlElement* start = nullptr);

    // --- project record ------------------------------------------------------------
    // Storing: version 100, the ID and the property values map.
    void StoreRecord(CByteSink& sink) const;
    // Loading: the ID and every pair read go into the object; when the whole
    // record was read the design-view HTML is regenerated. On failure the
    // object keeps what was read and the HTML cache stays as it was.
    RecordReadResult LoadRecord(CByteSource& source);

private:
    char Separator() const;
    void Replace(std::string& text, const std::string& variable, const std::string& replacement);
    void PlanPayload(const CXmlElement& parent, std::string_view folder, PublishPlan& plan);
    const CXmlDocument& SourceCopy();
    // The value of one property as substituted: colour type applied, file
    // paths reduced when reduceFiles, gallery markup for image lists (empty
    // when the variable is already being expanded, which would never end).
    // Returns false when the property has nothing to replace in text.
    bool ReplacementFor(const CXmlElement& property, const std::string& text, bool reduceFiles, int keepPaths,
                        std::string& variable, std::string& replacement);
    // The gallery markup of an image-list property (variable is its decoded
    // variable), its value substituted first; empty while the variable is
    // being expanded.
    std::string GalleryFor(const CXmlElement& property, const std::string& variable, int keepPaths);
    // Whether ReplaceVariables would find a variable to replace in text.
    bool MentionsAVariable(std::string_view text);

    ExtensionServices services_;
    ExtensionRect position_;
    int id_ = 0;
    int minWidth_ = 10;
    int minHeight_ = 10;
    CXmlDocument definition_;
    // A second parse of the definition's source text, made on first use,
    // which ReplaceVariables reads so that it never depends on changes made
    // to definition_.
    std::unique_ptr<CXmlDocument> sourceCopy_;
    bool useDiv_ = true;
    int renderMethod_ = 0;
    std::string htmlCache_;
    // The gallery style sheet last decoded, and whether the last one
    // substituted reaches outside.
    CTextMemo<std::string> decodedSheet_;
    CTextMemo<bool> sheetReachesOutside_;
    std::string toolbarText_;
    CHashedStringMap values_;
    CXmlDocument siteStructure_;
    std::string pageContext_;
    // Variables of image-list properties whose gallery is being built.
    std::vector<std::string> expanding_;
    bool oversized_ = false;
};
