#pragma once
// Searches of the host's site structure (folder and page elements with name,
// url and current_page attributes). Both are depth-first, pre-order, children
// in document order, starting from the children of from; both compare
// ignoring case. They walk by index and leave the elements' cursors alone.
#include <string_view>

class CXmlElement;

// The first element whose current_page attribute is "true" (any case).
CXmlElement* FindCurrentPageBelow(CXmlElement& from);
// The first element whose name attribute equals name (any case).
CXmlElement* FindPageByNameBelow(CXmlElement& from, std::string_view name);
