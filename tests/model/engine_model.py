"""An independent model of the extension object as a host sees it through
pwext: substitution, the three HTML pieces, gallery code, publishing, links,
the site-structure searches and the project record. Written from the
documented rules; the XML side comes from xml_model.py.

Text is Python bytes throughout. On Linux the file-system separator is '/',
and file names are cut at the last backslash or slash.
"""
import os
import struct

import xml_model
import xslt_model
from xml_model import Document, Element, OrderedHashMap, escape, unescape

BLANKS = b" \t\n\v\f\r"


def atoi(text):
    v = xml_model.scan_lu(text, 0) or 0
    return v - (1 << 32) if v >= 1 << 31 else v


def file_name_part(path):
    """The name a file is published under; "." and ".." name none."""
    cut = max(path.rfind(b"\\"), path.rfind(b"/"))
    name = path[cut + 1:]
    return b"" if name in (b".", b"..") else name


def leaves_folder(name):
    """A FILE or FOLDER name that is absolute or climbs out with "..". """
    parts = name.replace(b"\\", b"/").split(b"/")
    return name[:1] in (b"/", b"\\") or b":" in name or b".." in parts


URL_PLAIN = frozenset(b"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/")


def url_path(path):
    return b"".join(bytes([c]) if c in URL_PLAIN else b"%%%02X" % c for c in path)


def find_child(elem, name):
    for c in elem.children:
        if c.name.lower() == name.lower():
            return c
    return None


def child_value(elem, name):
    c = find_child(elem, name)
    return b"" if c is None else unescape(c.value)


def set_child_value(elem, name, value):
    c = find_child(elem, name)
    if c is None:
        c = Element()
        c.name = name
        elem.children.append(c)
    c.value = escape(value, False)


def decode_or_keep(text):
    ok, _, stored = xml_model.base64_decode(text, len(text))
    return stored if ok else text


def categories(root):
    """Each CATEGORY's PROPERTY children."""
    props = find_child(root, b"PROPERTIES")
    return [[p for p in cat.children if p.name.lower() == b"property"]
            for cat in (props.children if props is not None else []) if cat.name.lower() == b"category"]


def properties_of(root):
    return [p for cat in categories(root) for p in cat]


def replace(text, variable, value):
    return text.replace(variable, value) if variable else text


def colour_text(prop, value):
    kind = xml_model.trim(prop.attrs.get(b"colortype") or b"")
    if kind:
        code = atoi(kind)
        if code == 1:
            return value.replace(b"#", b"0x")
        if code == 2:
            return value.replace(b"#", b"")
    return value


def write_image_list(paths):
    """The image-list text pwext's --images option builds: FILENAME and TITLE."""
    doc = Document()
    doc.root.name = b"GALLERY"
    for path in paths:
        image = Element()
        image.name = b"IMAGE"
        for name, text in ((b"FILENAME", path), (b"TITLE", file_name_part(path))):
            if text:
                set_child_value(image, name, text)
        doc.root.children.append(image)
    return doc.get_xml()


def cut_name(elem):
    """Cuts the name at the first blank after the leading ones; whether what
    is left is an XML name (only then is it kept)."""
    name = elem.name.lstrip(BLANKS)
    end = 0
    while end < len(name) and name[end] != 0 and name[end] not in BLANKS:
        end += 1
    name = name[:end]
    valid = bool(name) and name[0] not in b"-.0123456789" and all(
        c >= 0x80 or chr(c).isalnum() or c in b"-._:" for c in name)
    if valid:
        elem.name = name
    return valid


def clean_image_list(doc):
    """Drops the elements no XML parser reads, with their content, and
    anything inside a FILENAME."""
    cut_name(doc.root)
    stack = [doc.root]
    while stack:
        elem = stack.pop()
        elem.children = [c for c in elem.children if cut_name(c)]
        stack.extend(elem.children)
    for image in doc.root.children:
        for field in image.children:
            if field.name.lower() == b"filename":
                field.children = []


class Engine:
    def __init__(self, definition):
        self.doc = Document()
        self.doc.parse(definition)
        root = self.doc.root
        attr = lambda k: root.attrs.get(k) or b""
        self.min_width, self.min_height = atoi(attr(b"minwidth")), atoi(attr(b"minheight"))
        self.use_div = attr(b"usediv") == b"1"
        self.render_method = atoi(attr(b"rendermethod"))
        self.toolbar_text = attr(b"text")
        self.values = OrderedHashMap()
        self.page_context = b""
        self.site = Document()
        self.object_id = 0
        self.cache = b""
        self.update_html(0)

    # --- current values -------------------------------------------------
    def rule(self, prop):
        variable = unescape(prop.attrs.get(b"variable") or b"")
        kind = atoi(prop.attrs.get(b"type") or b"")
        value = self.values.get(variable)
        if value is None:
            value = unescape(prop.attrs.get(b"value") or b"")
        return variable, kind, value

    # --- substitution ---------------------------------------------------
    # The design view (publishing false) keeps file paths and the image
    # list's local picture paths.
    def replace_variables(self, text, publishing=True):
        for prop in properties_of(self.doc.root):
            variable, kind, value = self.rule(prop)
            if kind == 1:
                text = replace(text, variable, colour_text(prop, value))
            elif kind == 3:
                text = replace(text, variable, file_name_part(value) if publishing else value)
            elif kind == 6:
                if variable in text:
                    value = self.replace_variables(value)
                    text = replace(text, variable, self.gallery_code(prop, value, not publishing))
            else:
                text = replace(text, variable, value)
        return text

    def update_html(self, publishing):
        body = find_child(self.doc.root, b"HTML_BODY")
        if body is not None:
            self.cache = self.replace_variables(decode_or_keep(unescape(body.value)), publishing)

    def gallery_code(self, prop, value, keep_paths):
        template = decode_or_keep(prop.attrs.get(b"gallerytemplate") or b"")
        listing = value
        if not keep_paths:
            doc = Document()
            doc.parse(value)
            clean_image_list(doc)
            doc.root.name = b"GALLERY"
            for image in doc.root.children:
                if image.name.lower() != b"image":
                    continue
                name = file_name_part(child_value(image, b"FILENAME"))
                set_child_value(image, b"FILENAME", url_path(self.page_context.rstrip(b"/")) + b"/" + url_path(name))
            listing = doc.get_xml()
        template = self.replace_variables(template)
        out = xslt_model.transform(listing, template)
        if out is None:
            return b""
        start = out.find(b"<?xml")
        if start >= 0:
            end = out.find(b"?>", start)
            if end >= 0:
                out = out[end + 2:]
        return out

    def header_html(self):
        return self.template_html(b"HTML_HEAD")

    def start_of_page_html(self):
        return self.template_html(b"HTML_TAIL")

    def template_html(self, name):
        elem = find_child(self.doc.root, name)
        if elem is None:
            return b""
        return self.replace_variables(decode_or_keep(unescape(elem.value)))

    def get_html(self, context):
        self.page_context = context
        self.update_html(1)
        return self.cache

    # --- links ----------------------------------------------------------
    def link_walk(self, index):
        """The link at `index`, then the first link of every later category:
        the walk stops counting there and ends only that category's loop."""
        counter = 0
        for cat in categories(self.doc.root):
            links = [p for p in cat if atoi(p.attrs.get(b"type") or b"") == 8]
            if 0 <= index - counter < len(links):
                yield links[index - counter]
                counter = index
            else:
                counter += len(links)

    def url_count(self):
        return sum(1 for p in properties_of(self.doc.root) if atoi(p.attrs.get(b"type") or b"") == 8)

    def get_url(self, index):
        return ([b""] + [self.rule(p)[2] for p in self.link_walk(index)])[-1]

    def set_url(self, index, text):
        for prop in self.link_walk(index):
            self.values.set(self.rule(prop)[0], text)

    # --- site structure -------------------------------------------------
    def find_in_site(self, match, start=None):
        for child in (start or self.site.root).children:
            if match(child):
                return child
            found = self.find_in_site(match, child)
            if found is not None:
                return found
        return None

    def find_current_page(self):
        return self.find_in_site(lambda e: (e.attrs.get(b"current_page") or b"").lower() == b"true")

    def find_page_by_name(self, name):
        return self.find_in_site(lambda e: (e.attrs.get(b"name") or b"").lower() == name.lower())

    # --- publishing -----------------------------------------------------
    def copy_files(self, fs, output, images):
        """Plans publishing, then carries the plan out unless pwext refuses
        it; returns the refusal or None."""
        plan, left_out = [], []
        files = find_child(self.doc.root, b"FILES")
        if files is not None:
            self.plan_files(files, output.rstrip(b"/") + b"/", plan, left_out)
        for prop in properties_of(self.doc.root):
            _, kind, value = self.rule(prop)
            if kind == 3:
                if file_name_part(value):
                    plan.append(("copy", output + file_name_part(value), value))
                elif value:
                    left_out.append(value)
            elif kind == 6:
                doc = Document()
                doc.parse(value)
                for image in doc.root.children:
                    if image.name.lower() == b"image":
                        path = child_value(image, b"FILENAME")
                        if not path:   # an entry without a file has nothing to copy
                            continue
                        if not file_name_part(path):
                            left_out.append(path)
                            continue
                        plan.append(("copy", images.rstrip(b"/") + b"/" + file_name_part(path), path))
        if left_out:
            return "left out"
        targets = {}
        for step in plan:
            if step[0] == "mkdir":
                continue
            earlier = targets.setdefault(fs.real(step[1]), step)
            if earlier is not step and "copy" in (earlier[0], step[0]) and \
                    not (earlier[0] == step[0] and fs.real(earlier[2]) == fs.real(step[2])):
                return "collision"
            targets[fs.real(step[1])] = step
        fs.plan = plan
        return None

    def plan_files(self, parent, folder, plan, left_out):
        for child in parent.children:
            path = folder
            if child.name.lower() == b"folder":
                name = child.attrs.get(b"name") or b""
                if leaves_folder(name):
                    left_out.append(name)
                    continue
                path = folder + name + b"/"
                plan.append(("mkdir", path))
            elif child.name.lower() == b"file":
                name = child.attrs.get(b"filename") or b""
                if leaves_folder(name):
                    left_out.append(name)
                    continue
                content = decode_or_keep(unescape(child.value))
                if child.attrs.get(b"process_file") == b"1":
                    content = self.replace_variables(content)
                plan.append(("write", path + name, content))
            self.plan_files(child, path, plan, left_out)

    # --- project record -------------------------------------------------
    def store_record(self):
        return write_record(100, self.object_id, self.values.items())

    def load_record(self, data):
        """Reads a record into the object; returns the error text or None."""
        record, error = read_record(data)
        if record is None:
            return error
        self.object_id = record["id"]
        for k, v in record["pairs"]:
            self.values.set(k, v)
        self.update_html(0)
        return None


def create_directory_path(fs, path):
    for k in range(1, len(path)):
        if path[k] == ord("/"):
            fs.create(path[:k])
    fs.create(path)


class ModelFileSystem:
    """Folders and files as the machine would have them, with the report
    lines pwext's publish prints for each operation."""

    def __init__(self, cwd):
        self.cwd = cwd
        self.dirs = set()
        self.files = {}  # normalised path -> bytes
        self.lines = []
        self.failures = 0
        self.plan = []

    def run_plan(self):
        for step in self.plan:
            if step[0] == "mkdir":
                create_directory_path(self, step[1])
            elif step[0] == "write":
                self.write(step[1], step[2])
            else:
                self.copy(step[2], step[1])

    def real(self, path):
        return os.path.normpath(os.path.join(self.cwd, os.fsdecode(path)))

    def is_dir(self, p):
        return p in self.dirs or (p not in self.files and os.path.isdir(p))

    def exists(self, p):
        return self.is_dir(p) or p in self.files or os.path.exists(p)

    def create(self, path):
        p = self.real(path)
        if path and not self.exists(p) and self.is_dir(os.path.dirname(p)):
            self.dirs.add(p)
            self.lines.append(b"created " + path + b"\n")

    def write(self, path, content):
        p = self.real(path)
        if path and not path.endswith(b"/") and not self.is_dir(p) and self.is_dir(os.path.dirname(p)):
            self.files[p] = content
            self.lines.append(b"wrote " + path + b"\n")
        else:
            self.failures += 1

    def copy(self, source, target):
        s = self.real(source) if source else None
        if s is not None and (s in self.files or (os.path.isfile(s) and not self.is_dir(s))):
            content = self.files.get(s)
            if content is None:
                with open(s, "rb") as f:
                    content = f.read()
            t = self.real(target)
            if not target.endswith(b"/") and not self.is_dir(t) and self.is_dir(os.path.dirname(t)):
                self.files[t] = content
                self.lines.append(b"copied " + source + b" -> " + target + b"\n")
                return
        self.failures += 1


# --- archive encoding -----------------------------------------------------
def write_count(n):
    return struct.pack("<H", n) if n < 0xFFFF else struct.pack("<HI", 0xFFFF, n)


def write_record(version, object_id, pairs):
    """A project record: version, ID, then the count and the key/value pairs."""
    pairs = list(pairs)
    head = struct.pack("<ii", version, object_id) + write_count(len(pairs))
    return head + b"".join(write_string(k) + write_string(v) for k, v in pairs)


def write_string(s):
    n = len(s)
    if n < 255:
        head = bytes([n])
    elif n < 0xFFFE:
        head = b"\xff" + struct.pack("<H", n)
    else:
        head = b"\xff\xff\xff" + struct.pack("<I", n)
    return head + s


class Truncated(Exception):
    pass


def read_record(data):
    """Returns ({version, id, pairs, length}, None) or (None, reason); bytes
    after the record are left for the caller to judge."""
    pos = 0

    def take(n):
        nonlocal pos
        if pos + n > len(data):
            raise Truncated()
        chunk = data[pos:pos + n]
        pos += n
        return chunk

    def string():
        n = take(1)[0]
        if n == 0xFF:
            n = struct.unpack("<H", take(2))[0]
            if n == 0xFFFF:
                n = struct.unpack("<I", take(4))[0]
        return take(n)

    try:
        version, object_id = struct.unpack("<Ii", take(8))
        count = struct.unpack("<H", take(2))[0]
        if count == 0xFFFF:
            count = struct.unpack("<I", take(4))[0]
        pairs = []
        for _ in range(count):
            k = string()
            pairs.append((k, string()))
    except Truncated:
        return None, "truncated"
    return {"version": version, "id": object_id, "pairs": pairs, "length": pos}, None
