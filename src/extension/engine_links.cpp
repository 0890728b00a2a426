// Link properties for the host and searches of the site structure.
#include "extension/extension_engine.h"
#include "html/definition_model.h"
#include "html/site_structure.h"

namespace {

// Visits the link properties (type 8) the way the host's link numbers match
// them: in document order, with the counter not advancing at a match and the
// rest of a matching category skipped. So after link `index` has matched,
// the first link of every later category that holds one matches as well.
template <class F>
void ForEachMatchingLink(const CXmlElement& root, int index, F&& onMatch) {
    int counter = 0;
    ForEachCategory(root, [&](const CXmlElement& category) {
        ForEachPropertyIn(category, [&](const CXmlElement& property) {
            if (ReadPropertyRule(property).type != PropertyType::kLink) return true;
            if (counter != index) {
                ++counter;
                return true;
            }
            onMatch(property);
            return false;
        });
    });
}

}  // namespace

int CExtensionEngine::GetURLCount() {
    int count = 0;
    ForEachProperty(*definition_.GetRoot(), [&count](const CXmlElement& property) {
        if (ReadPropertyRule(property).type == PropertyType::kLink) ++count;
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
    ForEachMatchingLink(*definition_.GetRoot(), index,
                        [&](const CXmlElement& property) { values_.Set(ReadPropertyRule(property).variable, text); });
}

CXmlElement* CExtensionEngine::FindCurrentPage(CXmlElement* start) {
    return FindCurrentPageBelow(start ? *start : *siteStructure_.GetRoot());
}

CXmlElement* CExtensionEngine::FindPageByName(std::string_view name, CXmlElement* start) {
    return FindPageByNameBelow(start ? *start : *siteStructure_.GetRoot(), name);
}
