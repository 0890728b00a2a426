#pragma once
// Preparing an image list for the gallery style sheet and cleaning up what
// the style sheet produced.
#include <string>
#include <string_view>

// The image list as the published page sees it: the root renamed GALLERY and
// every IMAGE's FILENAME replaced by the page context (trailing '/' removed),
// a '/' and the file's name (the text after the last separator of the stored
// FILENAME). A missing FILENAME child is added. Written with its declaration.
std::string RewriteImageListForPage(std::string_view imageList, std::string_view pageContext, char separator);

// Drops everything up to and including the "?>" that follows the first
// "<?xml"; text without both is returned whole.
std::string StripXmlDeclaration(std::string text);
