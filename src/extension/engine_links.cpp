// Link properties for the host and searches of the site structure.
#include "extension/extension_engine.h"
#include "html/property_walk.h"
#include "html/site_structure.h"

namespace {

// Visits the link properties (type 8) the way the host's link numbers match
// them: in document order, with the counter not advancing at a match and the
// rest of a matching category skipped. So after link `index` has matched,
// the first link of every later category that holds one matches as well.
template <class F>
void ForEachMatchingLink(const CXmlElement& root, int index, F&& onMatch) {
    const CXmlElement* properties = FirstChildNamed(root, "PROPERTIES");
    if (!properties) return;
    int counter = 0;
    for (std::size_t c = 0; c < properties->GetChildCount(); ++c) {
        const CXmlElement& category = *properties->GetChild(c);
        if (!ascii::EqualsNoCase(category.GetName(), "CATEGORY")) continue;
        for (std::size_t p = 0; p < category.GetChildCount(); ++p) {
            const CXmlElement& property = *category.GetChild(p);
            if (!ascii::EqualsNoCase(property.GetName(), "PROPERTY")) continue;
            if (ReadPropertyRule(property).type != 8) continue;
            if (counter != index) {
                ++counter;
                continue;
            }
            onMatch(property);
            break;
        }
    }
}

}  // namespace

int CExtensionEngine::GetURLCount() {
    int count = 0;
    ForEachProperty(*definition_.GetRoot(), [&count](const CXmlElement& property) {
        if (ReadPropertyRule(property).type == 8) ++count;
    });
    return count;
}

std::string CExtensionEngine::GetURL(int index) {
    std::string result;
    ForEachMatchingLink(*definition_.GetRoot(), index,
                        [&](const CXmlElement& property) { result = CurrentValueOf(property); });
    return result;
}

void CExtensionEngine::SetURL(int index, std::string_view text) {
    ForEachMatchingLink(*definition_.GetRoot(), index, [&](const CXmlElement& property) {
        values_.Set(ReadPropertyRule(property).variable, text);
    });
}

CXmlElement* CExtensionEngine::FindCurrentPage(CXmlElement* start) {
    return FindCurrentPageBelow(start ? *start : *siteStructure_.GetRoot());
}

CXmlElement* CExtensionEngine::FindPageByName(std::string_view name, CXmlElement* start) {
    return FindPageByNameBelow(start ? *start : *siteStructure_.GetRoot(), name);
}
