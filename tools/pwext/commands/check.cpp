// pwext check: everything in a definition that would make the extension
// misbehave, which the plug-in itself swallows without a word.
#include <iostream>

#include "command.h"
#include "definition/builtin_definition.h"
#include "definition_checks.h"
#include "pwext_io.h"
#if defined(PW_HAVE_LIBXSLT)
#include "platform/libxslt_transformer.h"
#endif

namespace pwext {

std::vector<definition::Problem> CheckDefinitionText(std::string_view text) {
    definition::CheckOptions options;
#if defined(PW_HAVE_LIBXSLT)
    options.stylesheetCompiles = [](std::string_view stylesheet) { return LibxsltCompiles(stylesheet); };
#endif
    return definition::CheckDefinition(text, options);
}

std::string FormatProblem(const std::string& label, const definition::Problem& problem) {
    std::string out = label;
    if (problem.line > 0) out += ":" + std::to_string(problem.line);
    out += problem.severity == definition::Problem::Severity::kError ? ": error: " : ": warning: ";
    if (!problem.path.empty()) out += problem.path + ": ";
    return out + problem.message;
}

void RefuseDefinitionErrors(std::string_view text, const std::string& command, const std::string& label,
                            const std::vector<int>& lines) {
    std::vector<definition::Problem> problems = CheckDefinitionText(text);
    const definition::Problem* firstError = nullptr;
    for (definition::Problem& problem : problems) {
        if (!lines.empty())
            problem.line =
                problem.element >= 0 && problem.element < static_cast<int>(lines.size()) ? lines[problem.element] : 0;
        if (problem.severity == definition::Problem::Severity::kError) {
            if (!firstError) firstError = &problem;
        } else {
            std::cerr << "pwext: " << FormatProblem(label, problem) << "\n";
        }
    }
    if (firstError) throw Failure{command + ": " + FormatProblem(label, *firstError)};
}

namespace {

const char kUsage[] = "usage: pwext check [--definition FILE] [--json]";

int RunCheck(Args args) {
    std::string file;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--definition" && i + 1 < args.size() && file.empty())
            file = args[++i];
        else if (args[i] == "--json")
            json = true;
        else
            throw UsageError{kUsage};
    }
    std::string text = file.empty() ? std::string(BuiltinDefinition()) : ReadInput(file);
    std::string label = file.empty() ? std::string("built-in definition") : file;
    std::vector<definition::Problem> problems = CheckDefinitionText(text);

    if (json) {
        std::string out = "{\"file\": " + JsonLatin1(label) + ", \"problems\": [";
        for (std::size_t i = 0; i < problems.size(); ++i) {
            const definition::Problem& p = problems[i];
            out += std::string(i ? ", " : "") + "{\"severity\": \"" +
                   (p.severity == definition::Problem::Severity::kError ? "error" : "warning") +
                   "\", \"line\": " + std::to_string(p.line) + ", \"path\": " + JsonLatin1(p.path) +
                   ", \"message\": " + JsonLatin1(p.message) + "}";
        }
        WriteOutput(out + "]}\n");
    } else {
        std::string out;
        for (const definition::Problem& problem : problems) out += FormatProblem(label, problem) + "\n";
        WriteOutput(out);
    }
    return problems.empty() ? 0 : 1;
}

}  // namespace

PWEXT_COMMAND(check, "check", "[--definition FILE] [--json]: report what in a definition would misbehave", RunCheck);

}  // namespace pwext
