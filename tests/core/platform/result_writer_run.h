#pragma once
// A style sheet run over a list by libxslt alone, with a CResultWriter
// writing ahead every `period` new nodes (none for 0): what the save gives,
// and how many nodes the result tree had left. The text is empty when the
// sheet or the transformation fails.
#include <libxslt/transform.h>
#include <libxslt/xsltutils.h>

#include <optional>
#include <string>

#include "platform/libxslt_result_writer.h"

struct WriterRun {
    std::string text;
    int nodes = 0;
};

inline int CountNodes(xmlNodePtr node) {
    int count = 0;
    for (; node; node = node->next) count += 1 + CountNodes(node->children);
    return count;
}

inline WriterRun RunWithWriter(const std::string& sheet, const std::string& list, int period) {
    xmlDocPtr sheetDoc = xmlReadMemory(sheet.data(), static_cast<int>(sheet.size()), "", nullptr, XML_PARSE_NOERROR);
    xsltStylesheetPtr style = sheetDoc ? xsltParseStylesheetDoc(sheetDoc) : nullptr;
    if (!style) {
        xmlFreeDoc(sheetDoc);
        return {};
    }
    xmlDocPtr doc = xmlReadMemory(list.data(), static_cast<int>(list.size()), "", nullptr, 0);
    xsltTransformContextPtr context = xsltNewTransformContext(style, doc);
    xmlDocPtr result;
    {
        std::optional<CResultWriter> writer;
        if (period) writer.emplace(context, period);
        result = xsltApplyStylesheetUser(style, doc, nullptr, nullptr, nullptr, context);
    }
    WriterRun run;
    xmlChar* bytes = nullptr;
    int length = 0;
    if (result && context->state == XSLT_STATE_OK && xsltSaveResultToString(&bytes, &length, result, style) == 0 &&
        bytes) {
        run.text.assign(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(length));
        run.nodes = CountNodes(result->children);
    }
    xmlFree(bytes);
    xmlFreeDoc(result);
    xsltFreeTransformContext(context);
    xmlFreeDoc(doc);
    xsltFreeStylesheet(style);
    return run;
}
