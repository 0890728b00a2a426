#include "platform/libxslt_result_writer.h"

#include <libxml/globals.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxslt/imports.h>

namespace {

thread_local CResultWriter* tWatching = nullptr;

// Marks the text nodes that hold nodes written ahead (libxslt never looks at
// a result node's psvi).
char writtenAheadMark;

bool WrittenAhead(xmlNodePtr node) { return node->type == XML_TEXT_NODE && node->psvi == &writtenAheadMark; }

// Nodes whose serialisation is the same wherever it is made, given the
// same indentation: below the top level, when the output is not indented,
// any node but an entity reference; at the top level, elements only (the
// save writes line breaks after some other kinds, by what follows them).
bool Foldable(xmlNodePtr node, bool topLevel) {
    if (topLevel) return node->type == XML_ELEMENT_NODE;
    switch (node->type) {
        case XML_ELEMENT_NODE:
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE:
        case XML_PI_NODE: return true;
        default: return false;
    }
}

}  // namespace

CResultWriter::CResultWriter(xsltTransformContextPtr context, int period)
    : context_(context), period_(period), previousHook_(xmlRegisterNodeDefault(OnNodeCreated)) {
    tWatching = this;
}

CResultWriter::~CResultWriter() {
    tWatching = nullptr;
    xmlRegisterNodeDefault(previousHook_);
}

void CResultWriter::OnNodeCreated(xmlNodePtr node) {
    CResultWriter* writer = tWatching;
    if (!writer) return;
    if (writer->previousHook_) writer->previousHook_(node);
    if (writer->writing_ || ++writer->created_ < writer->period_) return;
    writer->created_ = 0;
    writer->writing_ = true;
    writer->WriteFinishedNodes();
    writer->writing_ = false;
}

void CResultWriter::WriteFinishedNodes() {
    // libxslt makes a variable's value in a document of its own, which is
    // the context's output meanwhile; the result is the first other one.
    xmlDocPtr output = context_->output;
    if (!output || XSLT_IS_RES_TREE_FRAG(output)) return;
    if (!result_) result_ = output;
    xsltStylesheetPtr style = context_->style;
    if (output != result_ || !style || output->type != XML_DOCUMENT_NODE || context_->type != XSLT_OUTPUT_XML) return;
    const xmlChar* method = nullptr;
    const xmlChar* methodURI = nullptr;
    const xmlChar* encoding = nullptr;
    const xmlChar* doctypePublic = nullptr;
    const xmlChar* doctypeSystem = nullptr;
    int indent = -1;
    XSLT_GET_IMPORT_PTR(method, style, method)
    XSLT_GET_IMPORT_PTR(methodURI, style, methodURI)
    XSLT_GET_IMPORT_PTR(encoding, style, encoding)
    XSLT_GET_IMPORT_PTR(doctypePublic, style, doctypePublic)
    XSLT_GET_IMPORT_PTR(doctypeSystem, style, doctypeSystem)
    XSLT_GET_IMPORT_INT(indent, style, indent)
    if (methodURI || (method && !xmlStrEqual(method, BAD_CAST "xml"))) return;
    // An XHTML document type has the save write every node the XHTML way;
    // libxslt adds the sheet's when the transformation ends.
    if ((doctypePublic || doctypeSystem) && xmlIsXHTML(doctypeSystem, doctypePublic)) return;
    if (xmlDtdPtr dtd = xmlGetIntSubset(output); dtd && xmlIsXHTML(dtd->SystemID, dtd->ExternalID)) return;
    // Another encoding converts at the save, with character references for
    // what it cannot hold; UTF-8 writes each text as it stands.
    if (encoding && xmlStrcasecmp(encoding, BAD_CAST "UTF-8") != 0) return;
    // With no method named, a result whose root element is "html" is saved
    // as HTML; which element is the root is settled once there is one.
    xmlNodePtr root = xmlDocGetRootElement(output);
    if (!root || (!method && !root->ns && xmlStrcasecmp(root->name, BAD_CAST "html") == 0)) return;

    // The open elements: from where libxslt adds nodes, up to the document.
    // A node being built apart (the text of an attribute or a comment) never
    // reaches it.
    xmlNodePtr insert = context_->insert;
    xmlNodePtr top = insert;
    while (top && top->parent) top = top->parent;
    if (top != reinterpret_cast<xmlNodePtr>(output)) return;

    for (xmlNodePtr open = insert, openChild = nullptr; open; openChild = open, open = open->parent) {
        bool topLevel = open == reinterpret_cast<xmlNodePtr>(output);
        if (!topLevel && indent == 1) continue;
        // libxslt adds only at the end: every child before the open one, or
        // before the last, is finished. The last stays, as text may still be
        // added to it.
        xmlNodePtr end = openChild ? openChild : open->last;
        if (!end || end != open->last) continue;
        // Back to what was written ahead before (or the root element, which
        // stays), folding each run of nodes that may be written ahead.
        for (xmlNodePtr runEnd = end; runEnd->prev && runEnd->prev != root && !WrittenAhead(runEnd->prev);) {
            xmlNodePtr first = runEnd;
            while (first->prev && first->prev != root && !WrittenAhead(first->prev) && Foldable(first->prev, topLevel))
                first = first->prev;
            if (first != runEnd)
                runEnd = Fold(first, runEnd, topLevel && indent == 1, reinterpret_cast<const char*>(encoding));
            else
                runEnd = runEnd->prev;  // one that may not, kept
        }
    }
}

xmlNodePtr CResultWriter::Fold(xmlNodePtr first, xmlNodePtr end, bool indent, const char* encoding) {
    xmlDocPtr output = context_->output;
    xmlOutputBufferPtr buffer = xmlAllocOutputBuffer(nullptr);
    if (!buffer) return first;
    // As the save writes each of them (see xsltSaveResultTo). The document
    // is only looked at for an XHTML document type, which there is not; and
    // looking means walking all its children, for every node.
    for (xmlNodePtr node = first; node != end; node = node->next)
        xmlNodeDumpOutput(buffer, nullptr, node, 0, indent ? 1 : 0, encoding);
    xmlNodePtr folded = buffer->error ? nullptr
                                      : xmlNewDocTextLen(output, xmlOutputBufferGetContent(buffer),
                                                         static_cast<int>(xmlOutputBufferGetSize(buffer)));
    xmlOutputBufferClose(buffer);
    if (!folded) return first;
    folded->name = xmlStringTextNoenc;  // written as it stands, like disable-output-escaping
    folded->psvi = &writtenAheadMark;

    xmlNodePtr parent = end->parent;
    xmlNodePtr before = first->prev;
    for (xmlNodePtr node = first; node != end;) {
        xmlNodePtr next = node->next;
        xmlUnlinkNode(node);
        xmlFreeNode(node);
        node = next;
    }
    // Linked by hand: xmlAddPrevSibling would merge it into a text before it.
    folded->parent = parent;
    folded->prev = before;
    folded->next = end;
    end->prev = folded;
    if (before)
        before->next = folded;
    else
        parent->children = folded;
    // libxslt appends to the last text node it made through a pointer to
    // its content; a freed node's content must not be taken for it.
    context_->lasttext = nullptr;
    return folded;
}
