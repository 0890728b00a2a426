#include "html/site_structure.h"

#include <utility>
#include <vector>

#include "xml/ascii.h"
#include "xml/xml_element.h"

namespace {

// Pre-order, children in document order, without recursion so that site
// trees of any depth are searched safely.
template <class Match>
CXmlElement* SearchBelow(CXmlElement& from, Match&& matches) {
    std::vector<std::pair<CXmlElement*, std::size_t>> stack{{&from, 0}};
    while (!stack.empty()) {
        auto& [element, next] = stack.back();
        if (next == element->GetChildCount()) {
            stack.pop_back();
            continue;
        }
        CXmlElement* child = element->GetChild(next++);
        if (matches(*child)) return child;
        stack.push_back({child, 0});
    }
    return nullptr;
}

}  // namespace

CXmlElement* FindCurrentPageBelow(CXmlElement& from) {
    return SearchBelow(
        from, [](const CXmlElement& e) { return ascii::EqualsNoCase(e.GetAttribute("current_page"), "true"); });
}

CXmlElement* FindPageByNameBelow(CXmlElement& from, std::string_view name) {
    return SearchBelow(from,
                       [name](const CXmlElement& e) { return ascii::EqualsNoCase(e.GetAttribute("name"), name); });
}
