"""An independent model of the XML scanner, writer, entity decoder and Base64
decoder, written from the documented rules without looking at the C++ code.
Used to cross-check `pwext` on generated documents (see compare_pwext.py).

Text is handled as Python bytes throughout.
"""

WS = b" \t\n\v\f\r"


def trim(b):
    return b.strip(WS)


def bucket(key):
    h = 0
    for c in key:
        h = (h * 33 + c) & 0xFFFFFFFF
    return h % 17


class OrderedHashMap:
    """17 buckets, ascending; newest key first inside a bucket; re-set keeps place."""

    def __init__(self):
        self.buckets = [[] for _ in range(17)]  # each: list of [key, value], newest first
        self.index = {}

    def set(self, key, value):
        if key in self.index:
            self.index[key][1] = value
            return
        entry = [key, value]
        self.buckets[bucket(key)].insert(0, entry)
        self.index[key] = entry

    def get(self, key):
        e = self.index.get(key)
        return None if e is None else e[1]

    def items(self):
        return [(k, v) for b in self.buckets for k, v in b]


class Element:
    def __init__(self):
        self.name = b""
        self.children = []
        self.attrs = OrderedHashMap()
        self.parent = None
        self.value = b""


def parse_attributes(elem, text):
    n = len(text)
    pos = 0
    while pos < n:
        eq = text.find(b"=", pos)
        if eq < 0:
            break
        key = trim(text[pos:eq])
        q1 = text.find(b'"', eq + 1)
        if q1 < 0:
            elem.attrs.set(key, b"")
            break
        q2 = text.find(b'"', q1 + 1)
        end = n if q2 < 0 else q2 + 1
        span = text[q1:end]
        elem.attrs.set(key, span.strip(b'"'))
        if q2 < 0:
            break
        pos = q2 + 1


def classify(tag):
    inner = bytearray()
    if not tag:
        return -1, b""
    p = ord("0")
    r = 0
    for c in tag:
        if p == ord("<"):
            if c in (ord("!"), ord("?")):
                return -1, bytes(inner)
            if c == ord("/"):
                r = 1
        elif p == ord("/") and c == ord(">"):
            r = 2
            if inner:
                inner.pop()
        skip = c in (ord("<"), ord(">")) or (p == ord("<") and c == ord("/")) or (p == ord("/") and c == ord(">"))
        if not skip:
            inner.append(c)
        p = c
    return r, bytes(inner)


def split(inner):
    sp = inner.find(b" ")
    if sp < 0:
        return inner, b""
    return inner[:sp], trim(inner[sp + 1:])


class Document:
    def __init__(self):
        self.root = Element()

    def parse(self, text):
        root = self.root
        root.children = []
        root.name = b""
        root.value = b""
        root.parent = None
        cur = root
        tag = bytearray()
        content = bytearray()
        in_tag = False
        for c in text:
            if c == ord("<"):
                tag.append(c)
                cur.value = trim(bytes(content))
                content = bytearray()
                in_tag = True
            elif c == ord(">"):
                tag.append(c)
                r, inner = classify(bytes(tag))
                tag = bytearray()
                if r in (0, 2):
                    name, attrs = split(inner)
                    if root.name == b"":
                        root.name = name
                        parse_attributes(root, attrs)
                    else:
                        e = Element()
                        e.parent = cur
                        e.name = name
                        parse_attributes(e, attrs)
                        cur.children.append(e)
                        cur = e
                if r in (1, 2):
                    if cur.parent is not None:
                        cur = cur.parent
                if r != -1:
                    in_tag = False
            else:
                if in_tag:
                    tag.append(c)
                else:
                    content.append(c)

    def get_xml(self):
        out = [b'<?xml version="1.0" encoding="UTF-8"?>\r\n']
        # iterative
        stack = [(self.root, 0, False)]
        while stack:
            e, d, closing = stack.pop()
            if closing:
                if e.value == b"" and d >= 1:
                    out.append(b"\t" * d)
                out.append(b"</" + e.name + b">\r\n")
                continue
            out.append(b"\t" * d + b"<" + e.name)
            at = b"".join(k + b'="' + v + b'" ' for k, v in e.attrs.items())
            if at:
                out.append(b" " + at)
            out.append(b">")
            out.append(e.value if e.value else b"\r\n")
            stack.append((e, d, True))
            for child in reversed(e.children):
                stack.append((child, d + 1, False))
        return b"".join(out)


ENTITIES = [(b"amp;", b"&"), (b"lt;", b"<"), (b"gt;", b">"), (b"quot;", b'"'), (b"apos;", b"'"), (b"nbsp;", b" ")]


def scan_lu(text, i):
    n = len(text)
    while i < n and text[i] in WS:
        i += 1
    neg = False
    if i < n and text[i] in b"+-":
        neg = text[i] == ord("-")
        i += 1
    start = i
    v = 0
    while i < n and 48 <= text[i] <= 57:
        v = (v * 10 + text[i] - 48) & 0xFFFFFFFF
        i += 1
    if i == start:
        return None
    return (-v) & 0xFFFFFFFF if neg else v


def unescape(text):
    out = bytearray()
    i = 0
    n = len(text)
    while i < n:
        c = text[i]
        if c != ord("&"):
            out.append(c)
            i += 1
            continue
        i += 1
        if i >= n:
            break
        low = text[i:i + 5].lower()
        for word, rep in ENTITIES:
            if low.startswith(word):
                out += rep
                i += len(word)
                break
        else:
            if text[i] == ord("#"):
                v = scan_lu(text, i + 1)
                if v is not None:
                    out.append(v & 0xFF)
                semi = text.find(b";", i + 1)
                if semi < 0:
                    break
                i = semi + 1
            else:
                out.append(ord("&"))
                i += 1
    return bytes(out)


def escape(text, quotes):
    out = bytearray()
    for c in text:
        if c == ord("&"):
            out += b"&amp;"
        elif c == ord("<"):
            out += b"&lt;"
        elif c == ord(">"):
            out += b"&gt;"
        elif c == ord('"') and quotes:
            out += b"&quot;"
        elif c == ord("'") and quotes:
            out += b"&apos;"
        else:
            out.append(c)
    return bytes(out)


ALPHA = b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"
VAL = {c: i for i, c in enumerate(ALPHA)}


def base64_decode(text, capacity):
    """Returns (ok, length, stored bytes) for a non-null destination."""
    if len(text) == 0:
        return True, 0, b""
    overflow = False
    written = 0
    stored = bytearray()
    i = 0
    n = len(text)
    while i < n:
        bits = 0
        b = 0
        while b < 24 and i < n:
            v = VAL.get(text[i])
            i += 1
            if v is None:
                continue
            bits = (bits << 6) | v
            b += 6
        nbytes = b // 8
        if not overflow and written + nbytes > capacity:
            overflow = True
        if nbytes:
            bits <<= 24 - b
            for k in range(nbytes):
                if not overflow:
                    stored.append((bits >> (16 - 8 * k)) & 0xFF)
            written += nbytes
    return not overflow, written, bytes(stored)


def tree_json(elem):
    return {
        "name": elem.name.decode("latin-1"),
        "attributes": [[k.decode("latin-1"), v.decode("latin-1")] for k, v in elem.attrs.items()],
        "value": elem.value.decode("latin-1"),
        "text": unescape(elem.value).decode("latin-1"),
        "children": [tree_json(c) for c in elem.children],
    }
