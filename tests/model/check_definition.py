#!/usr/bin/env python3
"""Checks the built-in definition printed by `pwext definition` against the
documented content, reading it with the independent model in xml_model.py.

usage: check_definition.py PWEXT
"""
import base64
import re
import struct
import subprocess
import sys

import xml_model

HEAD = (b'<link rel="stylesheet" title="Standard" href="slidewave.css" type="text/css" media="screen" />\r\n'
        b'<script language="JavaScript" type="text/javascript" src="slidewave.js"></script>')
BODY = b"\r\n".join([
    b'<div style="background-color:$backgroundcolor$;position:absolute;left:$LEFT$px;top:$TOP$px;'
    b'width:$WIDTH$px;height:$HEIGHT$px;z-index:$Z_INDEX$">',
    b'<div id="slidewave" style="left:0px;top:0px;width:$WIDTH$px;height:$HEIGHT$px">',
    b'   <div id="loading">',
    b'      <b>Loading images</b><br/>',
    b'      <img src="loading.gif" width="208" height="13" alt="loading" />',
    b'   </div>',
    b'   <div id="images">',
    b'      $images$',
    b'   </div>',
    b'   <div id="captions"></div>',
    b'   <div id="scrollbar">',
    b'      <div id="slider"></div>',
    b'   </div>',
    b'</div>',
    b'</div>'])
XSL = b"".join(line + b"\r\n" for line in [
    b'<?xml version="1.0" encoding="UTF-8"?>',
    b'<xsl:stylesheet xmlns:xsl="http://www.w3.org/1999/XSL/Transform" version="1.0">',
    b'<xsl:output method="xml" indent="yes"/>',
    b"<xsl:template match='/'>",
    b'<xsl:for-each select="GALLERY/IMAGE">',
    b'<xsl:choose>',
    b"<xsl:when test=\"'$enablereflection$'='true'\">",
    b'      <img src="reflect.php?img={FILENAME}" longdesc="{FILENAME}" alt="{TITLE}" />',
    b'',
    b'</xsl:when>',
    b'<xsl:otherwise>',
    b'      <img src="{FILENAME}" longdesc="{FILENAME}" alt="{TITLE}" />',
    b'',
    b'</xsl:otherwise>',
    b'</xsl:choose>',
    b'</xsl:for-each>',
    b'</xsl:template>',
    b'</xsl:stylesheet>']) + b"\r\n"

PROPERTIES = [
    ("General", b"Images", b"6", b"", b"$images$", b"Specified the images"),
    ("General", b"EnableReflection", b"0", b"false", b"$enablereflection$",
     b"Specifies whether to enable reflection (PHP required!)"),
    ("Style", b"BackgroundColor", b"1", b"#000000", b"$backgroundcolor$", b"Specifies the background color"),
    ("Style", b"FontName", b"4", b"Arial", b"$fontname$", b"Specifies the font name"),
    ("Style", b"FontSize", b"5", b"10", b"$fontsize$", b"Specifies the font size"),
    ("Style", b"TextColor", b"1", b"#FFFFFF", b"$textcolor$", b"Specifies the text color"),
]
FILES = [(b"reflect.php", b"0", 10819), (b"slider.png", b"0", 258), (b"slidewave.css", b"1", 839),
         (b"slidewave.js", b"0", 11682), (b"loading.gif", b"0", 5886)]

failures = []


def check(condition, what):
    if not condition:
        failures.append(what)


def decode(text):
    ok, length, stored = xml_model.base64_decode(text, len(text))
    check(ok, "base64 decodes")
    return stored


def base64_lines(text, what):
    # Every line, the last one too, ends with CR LF (the parser trims the
    # last one from element values).
    lines = (text[:-2] if text.endswith(b"\r\n") else text).split(b"\r\n")
    check(all(len(line) == 76 for line in lines[:-1]) and 0 < len(lines[-1]) <= 76,
          what + ": Base64 in 76-character lines joined by CR LF")
    check(base64.b64encode(base64.b64decode(b"".join(lines))) == b"".join(lines), what + ": standard Base64")


def keys(element):
    # The order as written; a re-read map would list keys that share a
    # bucket the other way round.
    return re.findall(rb'(\w+)="', element.attr_text)


def main():
    text = subprocess.run([sys.argv[1], "definition"], capture_output=True, check=True).stdout
    check(text.startswith(b'<?xml version="1.0" encoding="UTF-8"?>\r\n<EXTENSION '), "declaration, then the root")
    doc = xml_model.Document()
    doc.parse(text)
    root = doc.root
    check(root.name == b"\r\nEXTENSION", "root name as the parser reads it")
    # The file is laid out by the writer, so writing the parsed tree (with the
    # original root name and the file's attribute order) gives the text back.
    start = re.search(rb"<EXTENSION ([^>]*)>", text).group(1)
    check(start == b'title="Slidewave" website="%s" minheight="50" rendermethod="0" usediv="0" minwidth="50" '
          b'developer="%s" text="Slidewave Extension" ' % (root.attrs.get(b"website"), root.attrs.get(b"developer")),
          "root attributes and their order")
    check(root.attrs.get(b"developer") and root.attrs.get(b"website"), "developer and website filled")

    names = [c.name for c in root.children]
    check(names[:2] == [b"PROPERTIES", b"FILES"], "PROPERTIES then FILES: %r" % names)
    by_name = {c.name: c for c in root.children}
    for element in (b"BITMAP", b"HTML_HEAD", b"HTML_BODY", b"HTML_TAIL"):
        check(element in by_name, element.decode() + " present")
    check(b"IMAGE" not in by_name, "no IMAGE element")

    props = [(cat.attrs.get(b"name").decode(), p) for cat in by_name[b"PROPERTIES"].children for p in cat.children]
    check([c.attrs.get(b"name") for c in by_name[b"PROPERTIES"].children] == [b"General", b"Style"], "categories")
    check(len(props) == len(PROPERTIES), "six properties")
    order = ["gallerytemplate", "variable", "options", "description", "type", "value", "name", "colortype"]
    for (cat, p), (wcat, name, typ, value, variable, description) in zip(props, PROPERTIES):
        what = name.decode()
        check(cat == wcat, what + ": category")
        got = (p.attrs.get(b"name"), p.attrs.get(b"type"), xml_model.unescape(p.attrs.get(b"value") or b""),
               xml_model.unescape(p.attrs.get(b"variable") or b""), p.attrs.get(b"description"), p.attrs.get(b"options"))
        check(got == (name, typ, value, variable, description, b""), what + ": attributes %r" % (got,))
        present = [k.decode() for k in keys(p)]
        check(present == [k for k in order if k in present], what + ": attribute order %r" % present)
        if typ == b"1":
            check(p.attrs.get(b"colortype") == b"0", what + ": colortype 0")
        if typ == b"6":
            template = p.attrs.get(b"gallerytemplate")
            base64_lines(template, "gallerytemplate")
            check(decode(template) == XSL, "gallery template bytes")

    files = by_name[b"FILES"].children
    check([(f.attrs.get(b"filename"), f.attrs.get(b"process_file")) for f in files] == [(a, b) for a, b, _ in FILES],
          "files, names and flags")
    for f, (name, _, size) in zip(files, FILES):
        check(keys(f) == [b"filename", b"process_file"], name.decode() + ": attribute order")
        base64_lines(f.value, name.decode())
        check(len(decode(f.value)) == size, "%s: %d bytes" % (name.decode(), size))
    css = decode(files[2].value)
    for variable in (b"$backgroundcolor$", b"$textcolor$", b"$fontsize$", b"$fontname$"):
        check(variable in css, "style sheet uses " + variable.decode())

    bitmap = decode(by_name[b"BITMAP"].value)
    check(len(bitmap) == 822 and bitmap[:2] == b"BM", "BITMAP: 822-byte BM file")
    width, height, planes, bits = struct.unpack("<iiHH", bitmap[18:30])
    check((width, abs(height), bits) == (16, 16, 24), "BITMAP: 16x16, 24 bits")
    check(decode(by_name[b"HTML_HEAD"].value) == HEAD, "HTML_HEAD bytes")
    check(decode(by_name[b"HTML_BODY"].value) == BODY, "HTML_BODY bytes")
    check(by_name[b"HTML_TAIL"].value == b"", "HTML_TAIL empty")
    check(text.count(b"\r\n</FILE>\r\n") == 5, "file values end with a line break")
    check(b'\r\n" variable="$images$"' in text, "gallery template ends with a line break")
    check(b"\t<HTML_TAIL>\r\n</HTML_TAIL>\r\n" in text, "HTML_TAIL's value is a line break only")

    for f in failures:
        print("FAIL:", f)
    print(f"definition: {0 if failures else 1} passed, {1 if failures else 0} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
