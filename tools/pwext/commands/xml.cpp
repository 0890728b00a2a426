// pwext xml print|json|escape: the XML model as the plug-in sees a document.
#include <string>
#include <vector>

#include "command.h"
#include "pwext_io.h"
#include "xml/xml_document.h"

namespace pwext {
namespace {

// The parsed tree as JSON, written without recursion so any depth works.
std::string TreeAsJson(CXmlElement* root) {
    std::string out;
    struct Frame {
        CXmlElement* element;
        std::size_t next;
    };
    auto open = [&out](CXmlElement* e) {
        out += "{\"name\": ";
        out += JsonLatin1(e->GetName());
        out += ", \"attributes\": [";
        bool first = true;
        e->GetAttributes().ForEach([&](const std::string& k, const std::string& v) {
            if (!first) out += ", ";
            first = false;
            out += "[" + JsonLatin1(k) + ", " + JsonLatin1(v) + "]";
        });
        out += "], \"value\": ";
        out += JsonLatin1(e->GetRawValue());
        out += ", \"text\": ";
        out += JsonLatin1(e->GetValue());
        out += ", \"children\": [";
    };
    std::vector<Frame> stack;
    open(root);
    stack.push_back({root, 0});
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next < top.element->GetChildCount()) {
            if (top.next > 0) out += ", ";
            CXmlElement* child = top.element->GetChild(top.next++);
            open(child);
            stack.push_back({child, 0});
        } else {
            out += "]}";
            stack.pop_back();
        }
    }
    out += "\n";
    return out;
}

int RunXml(Args args) {
    if (args.empty()) throw UsageError{"usage: pwext xml print|json|escape [--quotes] [FILE|-]"};
    const std::string& action = args[0];
    bool quotes = false;
    std::string file;
    int files = 0;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (action == "escape" && args[i] == "--quotes") {
            quotes = true;
        } else if (args[i].size() > 1 && args[i][0] == '-' && args[i] != "-") {
            throw UsageError{"xml " + action + ": unknown option '" + args[i] + "'"};
        } else {
            file = args[i];
            ++files;
        }
    }
    if (files > 1) throw UsageError{"xml " + action + ": give at most one file"};

    if (action == "print" || action == "json") {
        std::string text = ReadInput(file);
        CXmlDocument document;
        document.Parse(text);
        RequireWholeDocument(document, file.empty() || file == "-" ? std::string("standard input") : file);
        WriteOutput(action == "print" ? document.GetXml() : TreeAsJson(document.GetRoot()));
        return 0;
    }
    if (action == "escape") {
        WriteOutput(CXmlDocument::Escape(ReadInput(file), quotes));
        return 0;
    }
    throw UsageError{"xml: unknown action '" + action + "' (print, json or escape)"};
}

}  // namespace

PWEXT_COMMAND(xml, "xml", "print|json|escape [--quotes] [FILE|-]: the XML model's view of a document", RunXml);

}  // namespace pwext
