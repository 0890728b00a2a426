#include "html/text_replace.h"

namespace {

std::size_t CountOccurrences(const std::string& text, std::string_view variable) {
    std::size_t count = 0;
    for (std::size_t at = text.find(variable); at != std::string::npos; at = text.find(variable, at + variable.size()))
        ++count;
    return count;
}

// Rebuilds text with count occurrences of variable replaced, in one pass
// into a string of exactly the final size.
void ReplaceCounted(std::string& text, std::string_view variable, std::string_view replacement, std::size_t count) {
    std::string out;
    out.reserve(text.size() - count * variable.size() + count * replacement.size());
    std::size_t from = 0;
    for (std::size_t found = text.find(variable); found != std::string::npos; found = text.find(variable, from)) {
        out.append(text, from, found - from);
        out.append(replacement.data(), replacement.size());
        from = found + variable.size();
    }
    out.append(text, from, std::string::npos);
    text.swap(out);
}

}  // namespace

std::size_t ReplaceAll(std::string& text, std::string_view variable, std::string_view replacement) {
    if (variable.empty()) return 0;
    std::size_t count = CountOccurrences(text, variable);
    if (count > 0) ReplaceCounted(text, variable, replacement, count);
    return count;
}

bool ReplaceAllWithin(std::string& text, std::string_view variable, std::string_view replacement, std::size_t limit) {
    if (variable.empty()) return true;
    std::size_t count = CountOccurrences(text, variable);
    if (count == 0) return true;
    if (replacement.size() > variable.size()) {
        std::size_t room = limit > text.size() ? limit - text.size() : 0;
        if (count > room / (replacement.size() - variable.size())) return false;
    }
    ReplaceCounted(text, variable, replacement, count);
    return true;
}

bool ContainsVariable(std::string_view text, std::string_view variable) {
    return !variable.empty() && text.find(variable) != std::string_view::npos;
}
