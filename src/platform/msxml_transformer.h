#pragma once
// Gallery transformations through the system's XML component: the
// version-independent DOMDocument class, created with CoCreateInstance (never
// by loading a library file by name). Texts are the plug-in's 8-bit text in
// the ANSI code page, widened for the component and narrowed back.
//
// When a document cannot be created the user sees the message box "A problem
// occurred while loading MSXML.DLL!" (error icon, OK button), on every call.
// COM must have been initialised by the host on the calling thread.
#include "platform/com_ref.h"
#include "platform/xslt_transformer.h"

struct IXMLDOMDocument;

// The style sheet loaded last is kept with its text: a gallery is made with
// the same style sheet again and again, and a different text replaces it.
// Beside it the transformer keeps the copy whose output has one root (see
// one_root_output.h), and uses it whenever it gives the same text.
class CMsxmlTransformer : public CXsltTransformer {
public:
    CMsxmlTransformer();
    CMsxmlTransformer(const CMsxmlTransformer&) = delete;
    CMsxmlTransformer& operator=(const CMsxmlTransformer&) = delete;
    ~CMsxmlTransformer() override;
    std::string Transform(std::string_view listXml, std::string_view stylesheet) override;

private:
    ComRef<IXMLDOMDocument> style_;
    ComRef<IXMLDOMDocument> wrappedStyle_;
    std::string styleText_;
};
