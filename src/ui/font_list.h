#pragma once
// The face names offered for font-name properties: the TrueType faces of a
// display context, without symbol and vertical-writing faces.
#include <windows.h>

#include <string>
#include <vector>

// Inserts name after the last entry (scanning from the end) that is lower
// than or equal to it by the multibyte comparison. When no entry qualifies
// (an empty list, or a name lower than every entry) the name is appended at
// the end: a name that sorts first lands last. Duplicates are kept.
void InsertFaceName(std::vector<std::string>& faces, const std::string& name);

// Whether a face reported by the font enumeration is offered: exactly the
// TrueType type (no other type bit), not the symbol character set, and not
// a vertical face ("@" first).
bool IsOfferedFace(const LOGFONTA& font, DWORD fontType);

// Every offered face of the window's display context, in enumeration order
// inserted by InsertFaceName.
std::vector<std::string> EnumerateFaceNames(HWND window);
