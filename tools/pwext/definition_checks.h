#pragma once
// The definition checks as pwext commands report them: "FILE:LINE: error:
// PATH: message", one line each, as editors and compilers write them.
#include <string>
#include <string_view>
#include <vector>

#include "definition/checker.h"

namespace pwext {

// The checks with the gallery template compiled by libxslt where pwext has it.
std::vector<definition::Problem> CheckDefinitionText(std::string_view text);

std::string FormatProblem(const std::string& label, const definition::Problem& problem);

// Prints the warnings on standard error and throws Failure with the first
// error, for commands that must not go on with a broken definition. With
// lines, problems point at lines[element] of the source (label) the text was
// made from, instead of the text's own lines.
void RefuseDefinitionErrors(std::string_view text, const std::string& command, const std::string& label,
                            const std::vector<int>& lines = {});

}  // namespace pwext
