#include "html/color_type.h"

#include "html/attribute_number.h"
#include "xml/ascii.h"

std::string ApplyColorType(std::string_view value, std::string_view colorType) {
    std::string_view trimmed = ascii::Trim(colorType);
    std::string out(value);
    if (trimmed.empty()) return out;
    int code = AttributeToInt(trimmed);
    if (code != 1 && code != 2) return out;

    std::string converted;
    converted.reserve(out.size() + 8);
    for (char c : out) {
        if (c != '#')
            converted += c;
        else if (code == 1)
            converted += "0x";
    }
    return converted;
}
