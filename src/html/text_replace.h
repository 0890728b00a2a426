#pragma once
// The plain replacement used for every variable: occurrences are found left
// to right, case-sensitively and without overlap, and inserted text is not
// searched again. An empty variable replaces nothing.
#include <string>
#include <string_view>
#include <vector>

// Returns the number of occurrences replaced.
std::size_t ReplaceAll(std::string& text, std::string_view variable, std::string_view replacement);

// The same, unless the text would grow beyond limit bytes: then the text is
// left as it is and the result is false. Values that contain variables of
// later properties can otherwise double a text with every property.
bool ReplaceAllWithin(std::string& text, std::string_view variable, std::string_view replacement, std::size_t limit);

// Whether text contains variable; an empty variable is never contained.
bool ContainsVariable(std::string_view text, std::string_view variable);
// Whether text contains any of the variables, found in one pass over it.
bool ContainsAnyVariable(std::string_view text, const std::vector<std::string>& variables);
