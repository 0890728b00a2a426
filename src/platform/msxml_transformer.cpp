#include "platform/msxml_transformer.h"

#include <windows.h>
#include <msxml2.h>
#include <ole2.h>

#include "platform/com_ref.h"
#include "platform/one_root_output.h"

namespace {

// {2933BF90-7B36-11D2-B20E-00C04F983E60}: DOMDocument, version-independent.
const CLSID kDomDocumentClass = {0x2933bf90, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
// {2933BF81-7B36-11D2-B20E-00C04F983E60}: IXMLDOMDocument.
const IID kDomDocumentInterface = {0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
// {2933BF95-7B36-11D2-B20E-00C04F983E60}: IXMLDOMDocument2, with setProperty.
const IID kDomDocument2Interface = {0x2933bf95, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

const char kMissingComponentMessage[] = "A problem occurred while loading MSXML.DLL!";

std::string Narrow(BSTR wide) {
    int length = static_cast<int>(SysStringLen(wide));
    if (length == 0) return {};
    int size = WideCharToMultiByte(CP_ACP, 0, wide, length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    if (size > 0) WideCharToMultiByte(CP_ACP, 0, wide, length, &narrow[0], size, nullptr, nullptr);
    return narrow;
}

bool CreateDocument(ComRef<IXMLDOMDocument>& document) {
    return SUCCEEDED(CoCreateInstance(kDomDocumentClass, nullptr, CLSCTX_INPROC_SERVER, kDomDocumentInterface,
                                      reinterpret_cast<void**>(document.out()))) &&
           document.get();
}

// Turns off everything through which loading or transforming could read a
// file or reach the network, as far as the component knows the settings
// (older ones lack some and keep their defaults; the engine refuses such
// style sheets and lists before they get here anyway).
void ForbidOutsideAccess(IXMLDOMDocument* document) {
    document->put_resolveExternals(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    ComRef<IXMLDOMDocument2> settings;
    if (FAILED(document->QueryInterface(kDomDocument2Interface, reinterpret_cast<void**>(settings.out()))) ||
        !settings.get())
        return;
    const struct {
        const wchar_t* name;
        bool value;
    } kSettings[] = {{L"ProhibitDTD", true},
                     {L"AllowDocumentFunction", false},
                     {L"AllowXsltScript", false},
                     {L"ResolveExternals", false}};
    for (const auto& setting : kSettings) {
        BSTR name = SysAllocString(setting.name);
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BOOL;
        value.boolVal = setting.value ? VARIANT_TRUE : VARIANT_FALSE;
        if (name) settings->setProperty(name, value);
        SysFreeString(name);
    }
}

bool LoadText(IXMLDOMDocument* document, std::string_view text) {
    WideText wide(text);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return wide.get() && SUCCEEDED(document->loadXML(wide.get(), &loaded)) && loaded == VARIANT_TRUE;
}

bool LoadStylesheet(IXMLDOMDocument* style, std::string_view text) {
    style->put_async(VARIANT_TRUE);
    style->put_preserveWhiteSpace(VARIANT_TRUE);
    ForbidOutsideAccess(style);
    return LoadText(style, text);
}

}  // namespace

CMsxmlTransformer::CMsxmlTransformer() = default;
CMsxmlTransformer::~CMsxmlTransformer() = default;

std::string CMsxmlTransformer::Transform(std::string_view listXml, std::string_view stylesheet) {
    ComRef<IXMLDOMDocument> source;
    const bool reuse = style_.get() && styleText_ == stylesheet;
    if (!reuse) {
        style_.reset();
        wrappedStyle_.reset();
        styleText_.clear();
    }
    if (!CreateDocument(source) || (!reuse && !CreateDocument(style_))) {
        MessageBoxA(GetActiveWindow(), kMissingComponentMessage, nullptr, MB_ICONERROR | MB_OK);
        return {};
    }
    source->put_async(VARIANT_TRUE);
    ForbidOutsideAccess(source.get());
    bool sourceLoaded = LoadText(source.get(), listXml);
    if (!reuse) {
        if (!LoadStylesheet(style_.get(), stylesheet)) {
            style_.reset();
            return {};
        }
        styleText_.assign(stylesheet);
        std::optional<std::string> wrapped = one_root::WrapRootTemplate(stylesheet);
        if (wrapped && (!CreateDocument(wrappedStyle_) || !LoadStylesheet(wrappedStyle_.get(), *wrapped)))
            wrappedStyle_.reset();
    }
    if (!sourceLoaded) return {};

    auto run = [&source](IXMLDOMDocument* style) {
        BSTR output = nullptr;
        std::string result;
        if (SUCCEEDED(source->transformNode(style, &output)) && output) result = Narrow(output);
        SysFreeString(output);
        return result;
    };
    if (wrappedStyle_.get()) {
        if (std::optional<std::string> unwrapped = one_root::Unwrap(run(wrappedStyle_.get()))) return *unwrapped;
        // The output's shape follows the style sheet far more than the
        // pictures: from now on transform once with the sheet as given,
        // rather than twice on every call.
        wrappedStyle_.reset();
    }
    return run(style_.get());
}
