#pragma once
// How published files are named, and how the page refers to them.
//
// Names come from places the user or another author controls (image lists
// stored in shared projects, definitions from others), so every rule here
// keeps what it names inside the folder it is published into.
#include <string>
#include <string_view>

// The name a file is published under: the text after the last '\' or '/' of
// its path, all of it when there is neither. "." and ".." name no file, nor
// does a path ending in a separator or holding a NUL (which would end it
// early at the file system): those give the empty text.
std::string_view PublishedFileName(std::string_view path);

// Whether a name from a definition (a FILE's filename, a FOLDER's name),
// written below a folder, stays inside it: not absolute (no leading '\' or
// '/', no drive letter or other ':', no NUL), and no part between separators
// is "..".
bool StaysInsideFolder(std::string_view name);

// A path as a URL path: every byte other than ASCII letters, digits, "-._~"
// and '/' percent-encoded, so that '#', '?', '%', '&', '+', spaces and the
// bytes of non-ASCII letters reach the server as the file's name, whether the
// path ends up in a src attribute or in a query parameter. path should be
// UTF-8, as browsers send URLs.
std::string UrlPathOf(std::string_view path);
