#include "html/text_replace.h"

#include <cstring>

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

bool ContainsAnyVariable(std::string_view text, const std::vector<std::string>& variables) {
    // Candidates are where a variable's first character stands; when the
    // variables share it (the usual '$'), memchr finds them.
    bool startsOne[256] = {};
    int starts = 0;
    for (const std::string& variable : variables) {
        if (variable.empty()) continue;
        bool& start = startsOne[static_cast<unsigned char>(variable[0])];
        if (!start) ++starts;
        start = true;
    }
    auto containedAt = [&](std::size_t at) {
        for (const std::string& variable : variables)
            if (!variable.empty() && text.compare(at, variable.size(), variable) == 0) return true;
        return false;
    };
    if (starts == 1) {
        char first = 0;
        for (const std::string& variable : variables)
            if (!variable.empty()) first = variable[0];
        for (const char *at = text.data(), *end = at + text.size();
             (at = static_cast<const char*>(std::memchr(at, first, static_cast<std::size_t>(end - at)))); ++at)
            if (containedAt(static_cast<std::size_t>(at - text.data()))) return true;
        return false;
    }
    for (std::size_t at = 0; at < text.size() && starts > 0; ++at)
        if (startsOne[static_cast<unsigned char>(text[at])] && containedAt(at)) return true;
    return false;
}
