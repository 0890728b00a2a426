#include "xml/child_lookup.h"

#include "xml/ascii.h"

const CXmlElement* FirstChildNamed(const CXmlElement& parent, std::string_view name) {
    for (std::size_t i = 0; i < parent.GetChildCount(); ++i) {
        const CXmlElement* child = parent.GetChild(i);
        if (ascii::EqualsNoCase(child->GetName(), name)) return child;
    }
    return nullptr;
}
