#include "html/text_replace.h"

std::size_t ReplaceAll(std::string& text, std::string_view variable, std::string_view replacement) {
    if (variable.empty()) return 0;
    std::size_t found = text.find(variable);
    if (found == std::string::npos) return 0;

    // One pass into a new string keeps the cost linear however many times
    // the variable occurs.
    std::string out;
    out.reserve(text.size() + replacement.size());
    std::size_t from = 0, count = 0;
    while (found != std::string::npos) {
        out.append(text, from, found - from);
        out.append(replacement.data(), replacement.size());
        from = found + variable.size();
        ++count;
        found = text.find(variable, from);
    }
    out.append(text, from, std::string::npos);
    text.swap(out);
    return count;
}

bool ContainsVariable(std::string_view text, std::string_view variable) {
    return !variable.empty() && text.find(variable) != std::string_view::npos;
}
