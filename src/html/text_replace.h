#pragma once
// The plain replacement used for every variable: occurrences are found left
// to right, case-sensitively and without overlap, and inserted text is not
// searched again. An empty variable replaces nothing.
#include <string>
#include <string_view>

// Returns the number of occurrences replaced.
std::size_t ReplaceAll(std::string& text, std::string_view variable, std::string_view replacement);

// Whether text contains variable; an empty variable is never contained.
bool ContainsVariable(std::string_view text, std::string_view variable);
