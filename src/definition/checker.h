#pragma once
// Checking an extension definition for everything that would make the
// extension misbehave. The plug-in reads any definition without a word (it
// must: it runs inside the host); authors need to hear what it swallowed:
// what the tolerant reader had to repair, elements and attributes nothing
// reads, properties and templates that cannot work, payload names that
// leave their folder, pictures the host cannot load.
//
// Errors are what the plug-in refuses or cannot use at all (a payload name
// outside its folder, a gallery template that reaches outside or does not
// compile, no EXTENSION root); everything else is a warning.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace definition {

struct Problem {
    enum class Severity { kWarning, kError };
    Severity severity = Severity::kWarning;
    int line = 0;      // of the element's start tag, 1-based; 0 for the whole text
    std::string path;  // the element, e.g. "EXTENSION/PROPERTIES/CATEGORY[2]/PROPERTY[1]"
    // The element's place in document order (the root is 0), so a caller
    // can point into the source it made the text from; -1 for none.
    int element = -1;
    std::string message;
};

struct CheckOptions {
    // Whether a gallery style sheet compiles; not asked when empty.
    std::function<bool(std::string_view stylesheet)> stylesheetCompiles;
};

// Every problem of the definition text, in document order.
std::vector<Problem> CheckDefinition(std::string_view text, const CheckOptions& options = {});

bool HasErrors(const std::vector<Problem>& problems);

}  // namespace definition
