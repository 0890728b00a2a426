#pragma once
// Writes out the finished parts of a result tree while libxslt builds it.
//
// libxslt builds the whole result tree before anything is written: with
// 10,000 pictures, the gallery's result tree is larger than the list it was
// made from. Once libxslt has moved past a node, though, it never touches it
// again; it only adds nodes at the end of the element it is in. While a
// CResultWriter watches a transformation, every so many new nodes it
// replaces the nodes that are finished by one text node holding what they
// serialise to, marked to be written as it stands. Saving the result then
// gives the same bytes, from a much smaller tree.
//
// Only nodes whose text cannot depend on what comes after them are written
// ahead: those of the XML output method (named, or the default when the
// root element is not "html"), in UTF-8 and with no XHTML document type;
// below the top level, only when the output is not indented (an indented
// element lays out its children by what they all are). Everything else is
// left whole, as are nodes being built anywhere but in the result (a
// variable's value, an attribute's text).
#include <libxslt/xsltInternals.h>

class CResultWriter {
public:
    // Watches the nodes created on this thread until destroyed; the context
    // must outlive the writer. Every `period` new nodes, the finished ones
    // are written ahead.
    explicit CResultWriter(xsltTransformContextPtr context, int period = 1024);
    ~CResultWriter();
    CResultWriter(const CResultWriter&) = delete;
    CResultWriter& operator=(const CResultWriter&) = delete;

private:
    static void OnNodeCreated(xmlNodePtr node);
    void WriteFinishedNodes();
    // Replaces the nodes from first up to end by one text node, returned
    // (first, when nothing changed).
    xmlNodePtr Fold(xmlNodePtr first, xmlNodePtr end, bool indent, const char* encoding);

    xsltTransformContextPtr context_;
    xmlDocPtr result_ = nullptr;
    int period_;
    int created_ = 0;
    bool writing_ = false;
    xmlRegisterNodeFunc previousHook_;
};
