#include "render/preview_image.h"

#include <vector>

#include "xml/ascii.h"

namespace {

std::string TemporaryFolder() {
    char folder[MAX_PATH + 1] = {};
    DWORD length = GetTempPathA(MAX_PATH, folder);
    return length > 0 && length <= MAX_PATH ? std::string(folder, length) : std::string();
}

// URLDownloadToFileA from "URLMON.DLL", bound for the one call.
bool DownloadToFile(const char* address, const std::string& file) {
    using DownloadFunction = HRESULT(WINAPI*)(IUnknown*, const char*, const char*, DWORD, void*);
    HMODULE urlmon = LoadLibraryA("URLMON.DLL");
    if (!urlmon) return false;
    auto download =
        reinterpret_cast<DownloadFunction>(reinterpret_cast<void*>(GetProcAddress(urlmon, "URLDownloadToFileA")));
    bool done = download && SUCCEEDED(download(nullptr, address, file.c_str(), 0, nullptr));
    FreeLibrary(urlmon);
    return done;
}

// The same file name in the "images" folder beside the document folder.
std::string ImagesFolderName(std::string_view path, std::string_view documentFolder) {
    std::size_t folderEnd = documentFolder.rfind('\\');
    std::string_view folder =
        folderEnd == std::string_view::npos ? std::string_view() : documentFolder.substr(0, folderEnd);
    std::size_t nameStart = path.rfind('\\');
    std::string_view name = nameStart == std::string_view::npos ? path : path.substr(nameStart + 1);
    std::string result(folder);
    result += "\\images\\";
    result += name;
    return result;
}

HANDLE OpenForReading(const std::string& path) {
    return CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::wstring Widened(const std::string& text) {
    int length = MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, nullptr, 0);
    if (length <= 0) return std::wstring();
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, &wide[0], length);
    wide.resize(static_cast<std::size_t>(length - 1));
    return wide;
}

bool GdiplusLibraryIsPresent() {
    HMODULE library = LoadLibraryA("GDIPLUS.DLL");
    if (!library) return false;
    FreeLibrary(library);
    return true;
}

}  // namespace

bool IsPngFile(std::string_view path) {
    std::size_t dot = path.rfind('.');
    std::string_view extension = dot == std::string_view::npos ? path : path.substr(dot + 1);
    return ascii::Upper(extension) == "PNG";
}

std::string DownloadFileName(std::string_view address, std::string_view temporaryFolder) {
    std::string slashed(address);
    for (char& c : slashed)
        if (c == '\\') c = '/';
    std::size_t lastSlash = slashed.rfind('/');
    std::string name = lastSlash == std::string::npos ? slashed : slashed.substr(lastSlash + 1);
    std::string result(temporaryFolder);
    if (result.empty() || result.back() != '\\') result += '\\';
    return result + name;
}

CPreviewImage::CPreviewImage() : useGdiplus_(GdiplusLibraryIsPresent()) {}

CPreviewImage::~CPreviewImage() {
    if (useGdiplus_) dib_.DeleteBitmap();
    ReleasePicture();
}

void CPreviewImage::ReleasePicture() {
    if (picture_) picture_->Release();
    picture_ = nullptr;
}

bool CPreviewImage::Load(const char* path, const char* documentFolder) {
    if (!path) return false;
    if (!IsPngFile(path)) useGdiplus_ = false;

    if (ascii::Lower(path).find("http://") != std::string::npos) {
        std::string local = DownloadFileName(path, TemporaryFolder());
        if (!DownloadToFile(path, local)) return false;
        return Load(local.c_str(), nullptr);
    }
    return useGdiplus_ ? LoadWithGdiplus(path, documentFolder) : LoadWithOlePicture(path, documentFolder);
}

bool CPreviewImage::LoadWithOlePicture(const char* path, const char* documentFolder) {
    ReleasePicture();
    HANDLE file = OpenForReading(path);
    if (file == INVALID_HANDLE_VALUE && documentFolder) file = OpenForReading(ImagesFolderName(path, documentFolder));
    if (file == INVALID_HANDLE_VALUE) return false;

    DWORD size = GetFileSize(file, nullptr);
    HGLOBAL block = size == INVALID_FILE_SIZE ? nullptr : GlobalAlloc(GMEM_MOVEABLE, size);
    bool read = block && size == 0;  // an empty file is read, and is no picture
    if (block && size > 0) {
        void* bytes = GlobalLock(block);
        DWORD got = 0;
        read = bytes && ReadFile(file, bytes, size, &got, nullptr) && got == size;
        GlobalUnlock(block);
    }
    CloseHandle(file);
    IStream* stream = nullptr;
    if (!read || FAILED(CreateStreamOnHGlobal(block, TRUE, &stream)) || !stream) {
        if (block) GlobalFree(block);
        return false;
    }
    // A file that is no picture still counts as read; IsLoaded tells.
    void* picture = nullptr;
    if (SUCCEEDED(OleLoadPicture(stream, static_cast<LONG>(size), FALSE, IID_IPicture, &picture)))
        picture_ = static_cast<IPicture*>(picture);
    stream->Release();
    return true;
}

bool CPreviewImage::LoadWithGdiplus(const char* path, const char* documentFolder) {
    dib_.DeleteBitmap();
    if (dib_.LoadFromFile(Widened(path).c_str()) != E_FAIL) return true;
    if (!documentFolder) return false;
    return dib_.LoadFromFile(Widened(ImagesFolderName(path, documentFolder)).c_str()) != E_FAIL;
}

bool CPreviewImage::IsLoaded() const { return useGdiplus_ ? dib_.Bitmap() != nullptr : picture_ != nullptr; }

void CPreviewImage::Draw(HDC dc, const RECT& rect) {
    int width = rect.right - rect.left;
    int height = rect.bottom - rect.top;
    if (!useGdiplus_) {
        if (!picture_) return;
        OLE_XSIZE_HIMETRIC pictureWidth = 0;
        OLE_YSIZE_HIMETRIC pictureHeight = 0;
        picture_->get_Width(&pictureWidth);  // read, not needed: the source extent follows the rectangle
        picture_->get_Height(&pictureHeight);
        // The source extent is the rectangle in HIMETRIC, from the picture's
        // top (HIMETRIC runs upwards): natural size, clipped, never scaled.
        picture_->Render(dc, rect.left, rect.top, width, height, 0, pictureHeight - 1,
                         MulDiv(2540, width, GetDeviceCaps(dc, LOGPIXELSX)),
                         -MulDiv(2540, height, GetDeviceCaps(dc, LOGPIXELSY)), &rect);
        return;
    }
    if (width <= 0 || height <= 0 || !dib_.Bitmap()) return;
    int shownWidth = width < dib_.Width() ? width : dib_.Width();
    int shownHeight = height < dib_.Height() ? height : dib_.Height();
    dib_.Draw(dc, rect.left, rect.top, shownWidth, shownHeight, 0, 0, shownWidth, shownHeight);
}
