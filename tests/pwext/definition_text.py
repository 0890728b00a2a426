"""Definition texts for the pwext tests: Base64 fields, style sheets, and
whole definitions in the layout pwext itself stores."""
import base64


def b64(text):
    """Base64 of bytes, or of text in Latin-1."""
    return base64.b64encode(text if isinstance(text, bytes) else text.encode("latin-1")).decode("ascii")


def stylesheet(template, output=""):
    """A style sheet whose root template is template (output: an xsl:output method)."""
    method = '<xsl:output method="%s"/>' % output if output else ""
    return ('<xsl:stylesheet xmlns:xsl="http://www.w3.org/1999/XSL/Transform" version="1.0">%s'
            '<xsl:template match="/">%s</xsl:template></xsl:stylesheet>' % (method, template))


# A gallery style sheet listing every picture as an img.
LISTING = stylesheet('<xsl:for-each select="GALLERY/IMAGE"><img src="{FILENAME}" alt="{TITLE}"/></xsl:for-each>',
                     "xml")


def definition(properties, files=(), body="<p>$text$</p>", head="<h>$text$</h>", tail=""):
    """A definition in the stored layout: properties are (category, variable,
    type, value, extra attributes); files are (name, content, processed)."""
    out = ['<?xml version="1.0" encoding="UTF-8"?>\r\n<EXTENSION title="T" text="Test" minwidth="5" >\r\n',
           "\t<PROPERTIES>\r\n"]
    for c in dict.fromkeys(c for c, *_ in properties):
        out.append('\t\t<CATEGORY name="%s" >\r\n' % c)
        for cat, var, typ, value, extra in properties:
            if cat == c:
                out.append('\t\t\t<PROPERTY variable="%s" type="%s" value="%s" %s>\r\n\t\t\t</PROPERTY>\r\n'
                           % (var, typ, value, extra))
        out.append("\t\t</CATEGORY>\r\n")
    out.append("\t</PROPERTIES>\r\n\t<FILES>\r\n")
    for name, content, processed in files:
        out.append('\t\t<FILE filename="%s" process_file="%s" >%s</FILE>\r\n'
                   % (name, "1" if processed else "0", b64(content)))
    out.append("\t</FILES>\r\n")
    for element, text in (("HTML_HEAD", head), ("HTML_BODY", body), ("HTML_TAIL", tail)):
        out.append("\t<%s>%s</%s>\r\n" % (element, b64(text), element))
    out.append("</EXTENSION>\r\n")
    return "".join(out)
