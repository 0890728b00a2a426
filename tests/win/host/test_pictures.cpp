#include "test_pictures.h"

namespace test_pictures {
namespace {

void Put32BigEndian(std::string& s, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>(v >> shift);
}
void Put16(std::string& s, std::uint16_t v) { s.append(reinterpret_cast<const char*>(&v), 2); }
void Put32(std::string& s, std::uint32_t v) { s.append(reinterpret_cast<const char*>(&v), 4); }

std::uint32_t Crc32(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1)));
    }
    return ~crc;
}

std::string Chunk(const char* type, const std::string& data) {
    std::string chunk;
    Put32BigEndian(chunk, static_cast<std::uint32_t>(data.size()));
    std::string typed = std::string(type, 4) + data;
    chunk += typed;
    Put32BigEndian(chunk, Crc32(typed));
    return chunk;
}

// zlib data made of stored deflate blocks.
std::string StoredZlib(const std::string& raw) {
    std::string out("\x78\x01", 2);
    std::size_t at = 0;
    do {
        std::size_t length = raw.size() - at < 65535 ? raw.size() - at : 65535;
        bool last = at + length == raw.size();
        out += static_cast<char>(last ? 1 : 0);
        Put16(out, static_cast<std::uint16_t>(length));
        Put16(out, static_cast<std::uint16_t>(~length));
        out.append(raw, at, length);
        at += length;
    } while (at < raw.size());
    std::uint32_t a = 1, b = 0;
    for (unsigned char byte : raw) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    Put32BigEndian(out, (b << 16) | a);
    return out;
}

}  // namespace

Picture Gradient(int width, int height) {
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.pixels.push_back(0xFF000000u | std::uint32_t(10 * x + 5) << 16 | std::uint32_t(14 * y + 5) << 8 |
                                     90u);
    return picture;
}

std::string Png(const Picture& picture, int colourType) {
    std::vector<std::string> rows;
    for (int y = 0; y < picture.height; ++y) {
        std::string row;
        for (int x = 0; x < picture.width; ++x) {
            std::uint32_t p = picture.At(x, y);
            row += static_cast<char>(p >> 16);
            row += static_cast<char>(p >> 8);
            row += static_cast<char>(p);
            if (colourType == 6) row += static_cast<char>(p >> 24);
        }
        rows.push_back(row);
    }
    return Png(picture.width, picture.height, 8, colourType, rows);
}

std::string Png(int width, int height, int bitDepth, int colourType, const std::vector<std::string>& rows,
                const std::string& palette) {
    std::string header;
    Put32BigEndian(header, static_cast<std::uint32_t>(width));
    Put32BigEndian(header, static_cast<std::uint32_t>(height));
    header += static_cast<char>(bitDepth);
    header += static_cast<char>(colourType);
    header += std::string(3, '\0');
    std::string raw;
    for (const std::string& row : rows) raw += '\0' + row;
    std::string file("\x89PNG\r\n\x1a\n", 8);
    file += Chunk("IHDR", header);
    if (!palette.empty()) file += Chunk("PLTE", palette);
    file += Chunk("IDAT", StoredZlib(raw));
    file += Chunk("IEND", "");
    return file;
}


std::string Bmp(int width, int height, int bits, std::uint32_t compression, std::uint32_t coloursUsed,
                const std::vector<std::uint32_t>& colours, const std::string& pixels, std::uint32_t offset) {
    std::string info;
    for (std::uint32_t field : {40u, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)})
        Put32(info, field);
    Put16(info, 1);
    Put16(info, static_cast<std::uint16_t>(bits));
    for (std::uint32_t field : {compression, static_cast<std::uint32_t>(pixels.size()), 2835u, 2835u, coloursUsed, 0u})
        Put32(info, field);
    for (std::uint32_t c : colours) Put32(info, c);
    std::string file = "BM";
    Put32(file, static_cast<std::uint32_t>(14 + info.size() + pixels.size()));
    Put32(file, 0);
    Put32(file, offset ? offset : static_cast<std::uint32_t>(14 + info.size()));
    return file + info + pixels;
}

std::string Bmp(const Picture& picture) {
    int rowBytes = (picture.width * 3 + 3) & ~3;
    std::string pixels;
    for (int y = picture.height - 1; y >= 0; --y) {
        std::string row;
        for (int x = 0; x < picture.width; ++x) {
            std::uint32_t p = picture.At(x, y);
            row += static_cast<char>(p);
            row += static_cast<char>(p >> 8);
            row += static_cast<char>(p >> 16);
        }
        row.resize(static_cast<std::size_t>(rowBytes), '\0');
        pixels += row;
    }
    return Bmp(picture.width, picture.height, 24, BI_RGB, 0, {}, pixels);
}

ScratchFolder::ScratchFolder() {
    char temporary[MAX_PATH + 1] = {};
    GetTempPathA(MAX_PATH, temporary);
    folder_ = std::string(temporary) + "pwrender-" + std::to_string(GetCurrentProcessId()) + "-" +
              std::to_string(GetTickCount());
    CreateDirectoryA(folder_.c_str(), nullptr);
}

ScratchFolder::~ScratchFolder() {
    for (const std::string& file : files_) DeleteFileA(file.c_str());
    for (auto it = folders_.rbegin(); it != folders_.rend(); ++it) RemoveDirectoryA(it->c_str());
    RemoveDirectoryA(folder_.c_str());
}

std::string ScratchFolder::Write(const std::string& name, const std::string& bytes) {
    for (std::size_t slash = name.find('\\'); slash != std::string::npos; slash = name.find('\\', slash + 1)) {
        std::string sub = Path(name.substr(0, slash));
        if (CreateDirectoryA(sub.c_str(), nullptr)) folders_.push_back(sub);
    }
    std::string path = Path(name);
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    files_.push_back(path);
    return path;
}

BITMAPINFO TopDown32(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

Surface::Surface(int width, int height) : width_(width), height_(height) {
    BITMAPINFO info = TopDown32(width, height);
    void* bits = nullptr;
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<std::uint32_t*>(bits);
    for (int i = 0; i < width * height; ++i) bits_[i] = 0xFFFFFF;
    before_ = SelectObject(dc_, bitmap_);
}

Surface::~Surface() {
    SelectObject(dc_, before_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
}

std::uint32_t Surface::At(int x, int y) const {
    GdiFlush();
    return bits_[y * width_ + x] & 0xFFFFFF;
}

void Surface::Fill(std::uint32_t (*colour)(int x, int y)) {
    GdiFlush();
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) bits_[y * width_ + x] = colour(x, y);
}

bool Surface::WhiteOutside(int left, int top, int right, int bottom) const {
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x)
            if (!(x >= left && x < right && y >= top && y < bottom) && At(x, y) != 0xFFFFFF) return false;
    return true;
}

}  // namespace test_pictures
