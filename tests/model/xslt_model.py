"""The XSL transformation of gallery code, for the small family of style
sheets the engine cross-check generates: text output, one template for '/',
literal text, xsl:for-each over a two-step path and over "*", and
xsl:value-of of a child element, of "name()" and of ".". Anything outside that family is refused, so that the model never
guesses.

Both documents are 8-bit text in the Windows code page; they are read as
such, and the output is written back the same way.
"""
import codecs
import xml.etree.ElementTree as ET

# Windows maps the five bytes Windows-1252 leaves undefined to the control
# characters of the same number and back.
GAPS = b"\x81\x8d\x8f\x90\x9d"
codecs.register_error("windows-gaps-in", lambda e: (chr(e.object[e.start]), e.start + 1))
codecs.register_error("windows-gaps-out", lambda e: (
    "".join(c if ord(c) in GAPS else "?" for c in e.object[e.start:e.end]).encode("latin-1"), e.end))

XSL = "{http://www.w3.org/1999/XSL/Transform}"


class Unsupported(Exception):
    pass


def _parse(data):
    try:
        return ET.fromstring(data.decode("cp1252", "windows-gaps-in"))
    except (ET.ParseError, UnicodeDecodeError, ValueError):
        return None


def _string_value(element):
    # The list is loaded without its text nodes of blanks only.
    return "".join(t for t in element.itertext() if t.strip(" \t\r\n"))


def _run(node, document, context, out):
    """Appends the output of the instructions under `node` for `context`."""
    if node.text:
        out.append(node.text)
    for child in node:
        select = child.get("select", "")
        if child.tag == XSL + "for-each" and select == "*" and context is not None:
            for item in context:
                _run(child, document, item, out)
        elif child.tag == XSL + "for-each":
            steps = select.split("/")
            if len(steps) != 2 or context is not None:
                raise Unsupported("for-each " + select)
            if document.tag == steps[0]:
                for item in document:
                    if item.tag == steps[1]:
                        _run(child, document, item, out)
        elif child.tag == XSL + "value-of":
            if context is None:
                raise Unsupported("value-of outside for-each")
            if select == "name()":
                out.append(context.tag)
            elif select == ".":
                out.append(_string_value(context))
            else:
                found = context.find(select)
                if found is not None:
                    out.append(_string_value(found))
        else:
            raise Unsupported(child.tag)
        if child.tail:
            out.append(child.tail)



def transform(listing, template):
    """The output bytes, or None when either document is not well-formed."""
    source, sheet = _parse(listing), _parse(template)
    if source is None or sheet is None:
        return None
    output = sheet.find(XSL + "output")
    if output is None or output.get("method") != "text":
        raise Unsupported("only text output is modelled")
    main = [t for t in sheet.findall(XSL + "template") if t.get("match") == "/"]
    if len(main) != 1:
        raise Unsupported("one template for '/' expected")
    out = []
    _run(main[0], source, None, out)
    return "".join(out).encode("cp1252", "windows-gaps-out")
