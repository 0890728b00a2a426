#pragma once
// Preparing an image list for the gallery style sheet and cleaning up what
// the style sheet produced.
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Converts a file name from the system's spelling to UTF-8.
using NameToUtf8Fn = std::function<std::string(std::string_view)>;

// The image list as the published page sees it: the root renamed GALLERY and
// every IMAGE's FILENAME replaced by the URL of the published picture: the
// page context (trailing '/' removed), a '/' and the picture's published name
// (see published_names.h), both in UTF-8 and percent-encoded. A missing
// FILENAME child is added. Written with its declaration. list is the parsed
// image list, changed in place.
class CXmlDocument;
std::string RewriteImageListForPage(CXmlDocument& list, std::string_view pageContext, const NameToUtf8Fn& toUtf8);
// The same for the list's text, parsed with ParseImageList; nothing when
// that fails. The usual list is rewritten in one pass without the tree.
std::optional<std::string> RewriteImageListForPage(std::string_view list, std::string_view pageContext,
                                                   const NameToUtf8Fn& toUtf8);

// Drops everything up to and including the "?>" that follows the first
// "<?xml"; text without both is returned whole.
std::string StripXmlDeclaration(std::string text);
