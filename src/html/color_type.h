#pragma once
// How a colour value ("#" and six hexadecimal digits) is written into a
// template, chosen by the property's colortype attribute (blanks around it
// ignored): 1 puts "0x" in place of every "#", 2 removes every "#", anything
// else (0, absent, other numbers, no number) keeps the value.
#include <string>
#include <string_view>

std::string ApplyColorType(std::string_view value, std::string_view colorType);
