#pragma once
// Runs an XSLT 1.0 style sheet over an XML text. Both texts and the result are
// 8-bit text in the system code page; an implementation converts to whatever
// its XML component needs and back.
//
// Transform returns the serialised result exactly as the component produces
// it (an XML declaration included, when it writes one); removing the
// declaration is the caller's business. Any failure (component missing,
// either text not well-formed, a failing transformation) gives the empty
// text. A component that cannot be created is reported to the user by the
// implementation itself, every time (the Windows one shows its message box).
//
// Transformations must never read or write files or reach the network.
#include <memory>
#include <string>
#include <string_view>

class CXsltTransformer {
public:
    virtual ~CXsltTransformer() = default;
    virtual std::string Transform(std::string_view listXml, std::string_view stylesheet) = 0;
};
