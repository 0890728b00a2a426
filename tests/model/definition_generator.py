"""Random extension definitions and host inputs for the engine cross-check:
properties of every type code (and unknown ones), odd placements, entity
coding, missing attributes, templates in Base64 and plain text, payload
files in nested folders, link properties over several categories, image
lists with Windows paths and awkward titles, and site structures.
"""
import base64

from xml_model import escape

XSL_NS = b"http://www.w3.org/1999/XSL/Transform"
ACCENTED = [b"\xe9", b"\xfc", b"\x80", b"\xc5", b"\xdf", b"\x81", b"\x9d"]


def base64_lines(data):
    text = base64.b64encode(data)
    return b"\r\n".join(text[i:i + 76] for i in range(0, len(text), 76)) + b"\r\n"


class Case:
    """One generated definition with the values a host gives it."""

    def __init__(self, rng):
        self.rng = rng
        self.variables = []      # (variable text, type) of every property
        self.image_variables = []
        self.link_count = 0
        self.sets = []           # (variable, value) for --set
        self.images = None       # paths for --images
        self.paths = []          # every local file path the values name
        self.site = None
        self.site_names = []
        self.definition = self.make_definition()

    # --- small pieces -------------------------------------------------
    def text(self, allow_vars=True, safe=False):
        r = self.rng
        parts = [b"x", b" ", b"caption", b"a b", b"-", b"$LEFT$", b"$Z_INDEX$", b"$", b"#"]
        if not safe:
            parts += [b"&", b"<", b">", b"\"", b"'"]
        parts += ACCENTED
        if allow_vars and self.variables:
            parts += [v for v, t in self.variables if t != 6] * 2
        return b"".join(r.choice(parts) for _ in range(r.randint(0, 6)))

    def path(self):
        r = self.rng
        name = r.choice([b"a b.jpg", b"caf\xe9.png", b"x&y <1>.gif", b"p%d.jpg" % r.randint(0, 9), b"no-ext"])
        path = r.choice([b"C:\\Pics\\", b"C:\\Pics\\Sub\\", b"D:\\", b"", b"pics/", b"C:\\mixed/dir\\"]) + name
        self.paths.append(path)
        return path

    def maybe_entity(self, value):
        """Attribute text whose decoding is `value`, sometimes entity-coded."""
        if self.rng.random() < 0.3:
            return b"".join(b"&#%d;" % c if c in b"$&<>\"" or self.rng.random() < 0.1 else bytes([c]) for c in value)
        return escape(value, True).replace(b"&apos;", b"'") if b'"' in value or b"&" in value or b"<" in value \
            or b">" in value else value

    def image_list(self):
        r = self.rng
        root = r.choice([b"GALLERY"] * 6 + [b"gallery", b"LIST"])
        out = [b'<?xml version="1.0" encoding="UTF-8"?>\r\n<' + root + b">\r\n"]
        for _ in range(r.randint(0, 3)):
            tag = r.choice([b"IMAGE"] * 5 + [b"image", b"OTHER"])
            out.append(b"\t<" + tag + b">\r\n")
            for child in (b"FILENAME", b"URL", b"TARGET", b"TITLE", b"DESCRIPTION"):
                if r.random() < (0.9 if child in (b"FILENAME", b"TITLE") else 0.3):
                    value = self.path() if child == b"FILENAME" else self.text(safe=False) or b"t"
                    if child == b"FILENAME" and r.random() < 0.1:
                        child = b"filename"
                    out.append(b"\t\t<" + child + b">" + escape(value.strip(), False) + b"</" + child + b">\r\n")
            out.append(b"\t</" + tag + b">\r\n")
        out.append(b"</" + root + b">\r\n")
        return b"".join(out)

    def gallery_template(self):
        r = self.rng
        selects = [b"FILENAME", b"TITLE", b"URL", b"DESCRIPTION"]
        each = b"{" + b"|".join(b'<xsl:value-of select="%s"/>' % s for s in r.sample(selects, r.randint(1, 3))) + b"}"
        if r.random() < 0.3:   # every child, in order, as name=value
            each = b'{<xsl:for-each select="*"><xsl:value-of select="name()"/>=<xsl:value-of select="."/>;</xsl:for-each>}'
        marker = r.choice([b"[", b"[&lt;?xml v?&gt;", b"[&lt;?xml "]) + self.text(safe=True) + b"|"
        sheet = (b'<?xml version="1.0" encoding="UTF-8"?>\r\n<xsl:stylesheet xmlns:xsl="' + XSL_NS +
                 b'" version="1.0">\r\n<xsl:output method="text"/>\r\n<xsl:template match="/">' + marker +
                 b'<xsl:for-each select="GALLERY/IMAGE">' + each + b"</xsl:for-each>]</xsl:template>\r\n"
                 b"</xsl:stylesheet>\r\n")
        encoded = base64.b64encode(sheet)
        # The attribute is decoded as Base64 as it stands, entity references
        # included, so "&amp;" brings in three letters and spoils the sheet.
        return r.choice([encoded] * 8 + [b"", b"not base64 xsl", encoded[:40] + b"&amp;" + encoded[40:]])

    # --- the definition -----------------------------------------------
    def property(self, index, counted=True):
        """One PROPERTY element; `counted` is false when it sits where the
        engine never looks, so that the case does not expect it."""
        r = self.rng
        kind = r.choice([0, 1, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 8, 8, 9, -1, None,
                         b"x", b" 8", b"&#56;", b"8x", b"+8", b"08", b"3.5", b"6 "])
        # The code as a leading decimal number; entities in `type` are not decoded.
        code = kind if isinstance(kind, int) else {b" 8": 8, b"8x": 8, b"+8": 8, b"08": 8, b"3.5": 3,
                                                       b"6 ": 6}.get(kind, 0)
        variable = b"$v%d$" % index if r.random() < 0.85 else r.choice(
            [b"$v%d$" % (index - 1), b"", b"$V0$", b"v", b"caption", b"$a.b*$", b"$v1"])
        if code == 6:
            variable = b"$img%d$" % index
        attrs = {b"name": b"P%d" % index, b"description": self.maybe_entity(self.text(False))}
        if kind is not None:
            attrs[b"type"] = kind if isinstance(kind, bytes) else b"%d" % kind
        if variable or r.random() < 0.5:
            attrs[b"variable"] = self.maybe_entity(variable) if variable else b""
        default = self.value_for(code, default=True)
        if r.random() < 0.9:
            attrs[b"value"] = self.maybe_entity(default)
        if code == 1:
            attrs[b"colortype"] = r.choice([b"0", b"1", b"2", b"3", b" 1 ", b"x", b"2x", b"", b"&#49;"])
            if r.random() < 0.2:
                del attrs[b"colortype"]
        if code == 6:
            attrs[b"gallerytemplate"] = self.gallery_template()
        if code == 7:
            attrs[b"options"] = b"a|b|c"
        if counted:
            self.variables.append((variable, code))
        if counted and code == 6:
            self.image_variables.append(variable)
        if counted and code == 8:
            self.link_count += 1
        if counted and variable and r.random() < 0.4:
            self.sets.append((variable, self.value_for(code, default=False)))
        keys = list(attrs)
        r.shuffle(keys)
        text = b" ".join(k + b'="' + attrs[k] + b'"' for k in keys)
        return b"<PROPERTY " + text + r.choice([b" ></PROPERTY>", b"/>", b" />"])

    def value_for(self, code, default):
        r = self.rng
        if code == 0:
            return r.choice([b"true", b"false", b"TRUE"])
        if code == 1:
            return r.choice([b"#FF8000", b"#000000", b"##12", b"#abcdef", b""])
        if code == 3:
            return self.path()
        if code == 6:
            return b"" if default and r.random() < 0.5 else self.image_list()
        if code == 8:
            return r.choice([b"http://x.test/a?b=1&c=2", b"page.html", b"mailto:a@b", b""])
        return self.text()

    def make_definition(self):
        r = self.rng
        root_attrs = [(b"title", self.text(False, safe=True)), (b"text", b"T"),
                      (b"minwidth", r.choice([b"50", b"", b"x", b" 7px"])),
                      (b"minheight", r.choice([b"50", b"-3", b"0"])),
                      (b"usediv", r.choice([b"1", b"0", b"true", b"01", b" 1"])),
                      (b"rendermethod", r.choice([b"0", b"1", b"2", b"9"]))]
        root_attrs = [a for a in root_attrs if r.random() < 0.9]
        out = [b'<?xml version="1.0" encoding="UTF-8"?>\r\n<EXTENSION ' +
               b"".join(k + b'="' + v + b'" ' for k, v in root_attrs) + b">\r\n"]
        if r.random() < 0.1:
            out.append(b"\t<NOTE>ignored</NOTE>\r\n")
        index = 0
        if r.random() < 0.95:
            out.append(b"\t<%s>\r\n" % r.choice([b"PROPERTIES", b"Properties"]))
            for _ in range(r.randint(1, 4)):
                if r.random() < 0.1:
                    out.append(b"\t\t<PROPERTY name=\"outside\" type=\"2\" variable=\"$out$\" value=\"O\" ></PROPERTY>\r\n")
                tag = r.choice([b"CATEGORY"] * 6 + [b"category", b"GROUP"])
                out.append(b"\t\t<" + tag + b' name="C" >\r\n')
                for _ in range(r.randint(0, 4)):
                    prop = self.property(index, counted=tag != b"GROUP")
                    index += 1
                    out.append(b"\t\t\t" + prop + b"\r\n")
                    if r.random() < 0.1:
                        out.append(b"\t\t\t<OTHER>1</OTHER>\r\n")
                out.append(b"\t\t</" + tag + b">\r\n")
            out.append(b"\t</PROPERTIES>\r\n")
        if r.random() < 0.8:
            out.append(b"\t<FILES>\r\n" + self.files(2) + b"\t</FILES>\r\n")
        for name, chance in ((b"HTML_HEAD", 0.8), (b"HTML_BODY", 0.9), (b"HTML_TAIL", 0.7)):
            if r.random() < chance:
                out.append(b"\t<" + name + b">" + self.template() + b"</" + name + b">\r\n")
        out.append(b"</EXTENSION>\r\n")
        if self.image_variables and r.random() < 0.5:
            self.images = [self.path() for _ in range(r.randint(0, 4))]
        if r.random() < 0.5:
            self.site = self.site_structure()
        return b"".join(out)

    def template(self):
        r = self.rng
        body = b"<div>" + b"".join(r.choice([self.text(), b"\r\n"]) for _ in range(r.randint(1, 5)))
        body += b"".join(r.sample([v for v, _ in self.variables if v], min(3, len([v for v, _ in self.variables if v]))))
        body += b"$Img0$</div>"
        how = r.random()
        if how < 0.75:
            return base64_lines(body)
        if how < 0.85:   # Base64 with an entity-coded letter inside
            return base64_lines(body).replace(b"A", b"&#65;", 1)
        return escape(body, False)

    def files(self, depth):
        r = self.rng
        out = []
        for i in range(r.randint(0, 3)):
            if depth > 0 and r.random() < 0.3:
                name = r.choice([b"sub", b"Sub", b"two words", b"js", b"a&amp;b"])
                out.append(b'<FOLDER name="' + name + b'" >\r\n' + self.files(depth - 1) + b"</FOLDER>\r\n")
                continue
            flag = r.choice([b"1", b"1", b"0", b"01", b" 1", b"&#49;", None])
            if flag == b"1" or r.random() < 0.3:
                content = self.text() + b"\r\n" + self.text()
            else:
                content = bytes(r.randrange(256) for _ in range(r.randint(0, 40)))
            attrs = b'filename="' + r.choice([b"f%d.txt" % i, b"style.css", b"a b.js", b"x&amp;y.txt", b"sub", b""]) + b'" '
            if flag is not None:
                attrs += b'process_file="' + flag + b'" '
            encoded = base64_lines(content)
            if r.random() < 0.1:   # two Base64 blocks, padding between them
                encoded = base64_lines(content[:5]) + base64_lines(content[5:])
            out.append(b"<FILE " + attrs + b">" + encoded + b"</FILE>\r\n")
        return b"".join(out)

    def site_structure(self):
        r = self.rng

        def level(depth):
            out = []
            for i in range(r.randint(0, 3)):
                name = r.choice([b"Index", b"index", b"About Us", b"caf\xe9", b"CAF\xc9", b"news", b"R&amp;D"])
                self.site_names.append(name)
                current = r.choice([b"", b' current_page="true"', b' current_page="TRUE"', b' current_page="no"'])
                if depth and r.random() < 0.4:
                    out.append(b'<folder name="%s" url="f%d/"%s>%s</folder>' % (name, i, current, level(depth - 1)))
                else:
                    out.append(b'<page name="%s" url="%s%d.html"%s></page>' % (name, name, i, current))
            return b"".join(out)

        root = r.choice([b"<site>", b'<site name="Index" current_page="true">'])
        return b'<?xml version="1.0"?>\r\n' + root + level(2) + b"</site>\r\n"
