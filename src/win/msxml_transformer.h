#pragma once
// Gallery transformations through the system's XML component: the
// version-independent DOMDocument class, created with CoCreateInstance (never
// by loading a library file by name). Texts are the plug-in's 8-bit text in
// the ANSI code page, widened for the component and narrowed back.
//
// When a document cannot be created the user sees the message box "A problem
// occurred while loading MSXML.DLL!" (error icon, OK button), on every call.
// COM must have been initialised by the host on the calling thread.
#include "platform/xslt_transformer.h"

class CMsxmlTransformer : public CXsltTransformer {
public:
    std::string Transform(std::string_view listXml, std::string_view stylesheet) override;
};
