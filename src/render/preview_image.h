#pragma once
// The picture that render method 1 shows: loaded from a file (or a web
// address, downloaded first) and drawn at its natural size from the top-left
// corner of a rectangle, clipped to it, never scaled.
//
// Two back ends: GDI+ (into a CDibSection, with alpha) for PNG files while
// GDI+ is present, and an OLE picture for every other format. The first
// file that is not a PNG switches the object to the OLE picture for good.
#include <objidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <windows.h>

#include <string>
#include <string_view>

#include "render/dib_section.h"

// Whether the text after the path's last "." (the whole path when there is
// none) is "PNG" in any case.
bool IsPngFile(std::string_view path);

// Where a web address is downloaded to: the temporary folder, then the
// address's last path segment ("\" counts as "/").
std::string DownloadFileName(std::string_view address, std::string_view temporaryFolder);

class CPreviewImage {
public:
    // Uses GDI+ when "GDIPLUS.DLL" can be loaded now.
    CPreviewImage();
    ~CPreviewImage();
    CPreviewImage(const CPreviewImage&) = delete;
    CPreviewImage& operator=(const CPreviewImage&) = delete;

    // Loads path, replacing the picture held. A path containing "http://"
    // (any case, anywhere) is downloaded to the temporary folder first. A
    // file that cannot be opened is looked for in the "images" folder
    // beside documentFolder (its text up to the last "\"), when given.
    // True when the file was read; for the OLE picture that holds even when
    // its content is not a picture (IsLoaded tells).
    bool Load(const char* path, const char* documentFolder);

    bool IsLoaded() const;
    // Draws the picture at (rect.left, rect.top), clipped to rect.
    void Draw(HDC dc, const RECT& rect);

    bool UsesGdiplus() const { return useGdiplus_; }
    // The OLE picture, or null (the GDI+ back end holds none).
    IPicture* Picture() const { return picture_; }
    const CDibSection& Dib() const { return dib_; }

private:
    bool LoadWithOlePicture(const char* path, const char* documentFolder);
    bool LoadWithGdiplus(const char* path, const char* documentFolder);
    void ReleasePicture();

    IPicture* picture_ = nullptr;
    CDibSection dib_;
    bool useGdiplus_;
};
