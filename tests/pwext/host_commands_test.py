#!/usr/bin/env python3
"""End-to-end tests of pwext as a host of the extension engine.

Runs the built pwext (PWEXT, default build/native/bin/pwext) on a small
definition of our own written here, and on the built-in one where the
behaviour is the shipped gallery's.
"""
import json
import os
import shutil
import stat
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
PWEXT = os.environ.get("PWEXT", os.path.join(ROOT, "build", "native", "bin", "pwext"))

from definition_text import LISTING, b64, definition  # noqa: E402

GALLERY = definition(
    [("General", "$images$", "6", "", 'gallerytemplate="%s"' % b64(LISTING)),
     ("General", "$text$", "2", "hello", ""),
     ("General", "$home$", "8", "index.html", ""),
     ("Style", "$color$", "1", "#102030", 'colortype="2"'),
     ("Links", "$more$", "8", "more.html", "")],
    files=[("style.css", "p { color: #$color$ }", True), ("raw.bin", "\x00\x01$color$\xff", False)],
    body='<div style="left:$LEFT$px">$text$ $images$ <a href="$home$">$more$</a></div>',
)


class PwextCase(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="pwext-host-")
        self.definition = self.write("gallery.xml", GALLERY)

    def tearDown(self):
        shutil.rmtree(self.dir, ignore_errors=True)

    def write(self, name, content, mode="w"):
        path = os.path.join(self.dir, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, mode, **({} if "b" in mode else {"encoding": "latin-1", "newline": ""})) as f:
            f.write(content)
        return path

    def run_pwext(self, *args, ok=True, cwd=None):
        result = subprocess.run([PWEXT, *args], capture_output=True, cwd=cwd, timeout=60)
        if ok and result.returncode != 0:
            self.fail("pwext %s failed: %s" % (args, result.stderr.decode("latin-1")))
        return result

    def text(self, *args):
        return self.run_pwext(*args).stdout.decode("latin-1")


class HtmlCommand(PwextCase):
    def test_builtin_definition_is_the_default(self):
        body = self.text("html", "body", "--set", "$backgroundcolor$=#FF8000")
        self.assertIn("background-color:#FF8000;", body)
        # A property may be named instead of its variable; anything else is refused.
        self.assertEqual(self.text("html", "body", "--set", "backgroundColor=#FF8000"), body)

    def test_usage_errors_and_refusals_are_one_line(self):
        # Usage errors exit 2; refused input exits 1 and says why.
        refused = {("base64", "decode", "--capacity", "1"): "decodes to 3 bytes but the capacity is 1",
                   ("html", "body", "--definition", "/nonexistent.xml"): "cannot read '/nonexistent.xml'",
                   ("record", "read", "/dev/null"): "bad project record"}
        for args in [("html",), ("html", "middle"), ("html", "head", "--publish"), ("html", "body", "--set", "novalue"),
                     ("site",), ("html", "body", "--definition"), ("html", "body", "--set", "FontSiz=3"),
                     ("publish", "a", "b", "--page", "x.html", "--geometry", "1,2,3")] + list(refused):
            result = subprocess.run([PWEXT, *args], input=b"TWFu", capture_output=True)
            lines = result.stderr.decode().strip().splitlines()
            self.assertEqual((result.returncode, len(lines)), (1 if args in refused else 2, 1), args)
            self.assertIn(refused.get(args, ""), lines[0])


class PublishCommand(PwextCase):
    def test_missing_picture_fails_but_publishes_the_rest(self):
        present = self.write("here.png", "here")
        site = os.path.join(self.dir, "s")
        result = self.run_pwext("publish", site, os.path.join(site, "img"), "--definition", self.definition,
                                "--images", os.path.join(self.dir, "gone.png"), present, ok=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"cannot read '%s': No such file" % os.path.join(self.dir, "gone.png").encode(), result.stderr)
        self.assertTrue(os.path.exists(os.path.join(site, "img", "here.png")))
        self.assertFalse(os.path.exists(os.path.join(site, "img", "gone.png")))
        self.assertEqual([n for n in os.listdir(os.path.join(site, "img")) if n.startswith("gone")], [])

    def publish_page(self, site, images, *pictures, cwd=None, ok=True):
        result = self.run_pwext("publish", site, images, "--page", "p.html", "--definition", self.definition,
                                "--images", *pictures, cwd=cwd, ok=ok)
        if not ok:
            return result
        with open(os.path.join(cwd or "", site, "p.html"), "rb") as f:
            return f.read()

    def test_any_spelling_of_the_folders_gives_the_same_page(self):
        picture = self.write("p.png", "p")
        os.symlink(os.path.join(self.dir, "site"), os.path.join(self.dir, "link"))
        absolute = os.path.join(self.dir, "site")
        pages = {self.publish_page(site, images, picture, cwd=self.dir)
                 for site, images in (("site", "site/images"), ("./site", "site/images"), ("site/", "./site/images/"),
                                      (absolute, "site/images"), ("link", absolute + "/images"))}
        self.assertEqual(len(pages), 1, pages)
        self.assertIn(b'src="images/p.png"', pages.pop())
        self.assertIn(b'src="./p.png"', self.publish_page("site", "site", picture, cwd=self.dir))
        warned = self.publish_page("site", "elsewhere", picture, cwd=self.dir, ok=False)
        self.assertEqual(warned.returncode, 0)
        self.assertIn(b"warning: the image folder 'elsewhere' is not inside", warned.stderr)

    def test_refuses_before_writing_anything(self):
        a, other = self.write("pics/a.png", "mine"), self.write("other/a.png", "other")
        traversing = self.write("up.xml", definition([("G", "$text$", "2", "x", "")], files=[("../up.css", "u", False)]))
        for args, message in (
                (["--images", a, other], b"two files would be published as '%s': '%s' and '%s'"
                 % (b"site/images/a.png", a.encode(), other.encode())),
                (["--definition", traversing], b"FILE '../up.css' leaves the output folder")):
            result = self.run_pwext("publish", "site", "site/images", *args, cwd=self.dir, ok=False)
            self.assertEqual(result.returncode, 1, args)
            self.assertIn(message, result.stderr)
            self.assertFalse(os.path.exists(os.path.join(self.dir, "site")), args)
            self.assertFalse(os.path.exists(os.path.join(self.dir, "up.css")), args)
        unpacked = os.path.join(self.dir, "unpacked")
        self.run_pwext("unpack", traversing, unpacked)
        for command in (["info", "--definition", traversing], ["pack", unpacked, "-o", "packed.xml"]):
            result = self.run_pwext(*command, cwd=self.dir, ok=False)
            self.assertEqual(result.returncode, 1, command)
            self.assertIn(b"file '../up.css' leaves the output folder", result.stderr, command)
        self.assertFalse(os.path.exists(os.path.join(self.dir, "packed.xml")))

    def test_what_is_no_regular_file_is_refused_without_harm(self):
        site = os.path.join(self.dir, "site")
        os.makedirs(os.path.join(site, "images"))
        fifo = os.path.join(self.dir, "fifo.png")
        os.mkfifo(fifo)
        try:
            os.mknod(os.path.join(site, "null"), stat.S_IFCHR | 0o666, os.makedev(1, 3))
        except PermissionError:
            os.mkfifo(os.path.join(site, "null"))
        result = self.run_pwext("publish", site, os.path.join(site, "images"), "--page", "null", "--images",
                                fifo, "--definition", self.definition, ok=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"cannot read '%s': it is a FIFO" % fifo.encode(), result.stderr)
        self.assertIn(b"cannot write '%s': it is a" % os.path.join(site, "null").encode(), result.stderr)
        self.assertFalse(stat.S_ISREG(os.lstat(os.path.join(site, "null")).st_mode))


class BoundedCost(PwextCase):
    def test_inputs_that_would_cost_without_bound_fail_in_one_line(self):
        deep = self.write("deep.xml", "<A>" * 60000)
        chain = self.write("chain.xml", definition(
            [("G", "$v%d$" % i, "2", "$v%d$$v%d$" % (i + 1, i + 1), "") for i in range(40)], body="$v0$"))
        deep_list = "<GALLERY>" + "<IMAGE><FILENAME>a.png</FILENAME>" * 100
        for args in (["xml", "print", deep], ["xml", "json", deep], ["html", "body", "--definition", chain],
                     ["html", "body", "--definition", self.definition, "--set", "$images$=" + deep_list]):
            result = self.run_pwext(*args, ok=False)
            self.assertEqual(result.returncode, 1, args)
            self.assertEqual(result.stdout, b"", args)
            self.assertEqual(len(result.stderr.splitlines()), 1, args)
            self.assertRegex(result.stderr, rb"nest deeper than 64 levels|expand to more than 32 MB", args)


def png_pixels(path):
    """(width, height, rows of (r, g, b)) of an 8-bit RGB or RGBA PNG."""
    with open(path, "rb") as f:
        data = f.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    width, height, depth, kind = struct.unpack(">IIBB", data[16:26])
    assert depth == 8 and kind in (2, 6), (depth, kind)
    chunks, at = [], 8
    while at < len(data):
        length, name = struct.unpack(">I4s", data[at:at + 8])
        if name == b"IDAT":
            chunks.append(data[at + 8:at + 8 + length])
        at += 12 + length
    raw, step = zlib.decompress(b"".join(chunks)), 3 if kind == 2 else 4
    stride, rows, above = width * step, [], bytearray(width * step)
    for y in range(height):
        kind_of_filter, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a, b = line[i - step] if i >= step else 0, above[i]
            c = above[i - step] if i >= step else 0
            guess = a + b - c
            paeth = min((abs(guess - a), 0, a), (abs(guess - b), 1, b), (abs(guess - c), 2, c))[2]
            line[i] = (line[i] + (0, a, b, (a + b) // 2, paeth)[kind_of_filter]) & 255
        rows.append([tuple(line[x * step:x * step + 3]) for x in range(width)])
        above = line
    return width, height, rows


class PreviewCommand(PwextCase):
    # A box in the flow at the body's top-left corner (no margins once the
    # body is prepared) and one placed absolutely, in a colour of the values.
    BOXES = definition([("Style", "$color$", "1", "#102030", "")], body=(
        '<div style="width:6px;height:5px;background:#00FF00"></div>'
        '<div style="position:absolute;left:20px;top:12px;width:30px;height:16px;background:$color$"></div>'))

    def test_the_body_over_the_background(self):
        definition_file = self.write("boxes.xml", self.BOXES)
        out = os.path.join(self.dir, "preview.png")
        for extra, background, size in (([], (255, 255, 255), (640, 640)),
                                        (["--size", "60,40", "--background", "#FFCC00"], (255, 204, 0), (60, 40))):
            self.run_pwext("preview", out, "--definition", definition_file, "--set", "$color$=#C02040", *extra)
            width, height, rows = png_pixels(out)
            self.assertEqual((width, height), size)
            for y in range(40):
                for x in range(60):
                    expected = ((0, 255, 0) if x < 6 and y < 5 else
                                (192, 32, 64) if 20 <= x < 50 and 12 <= y < 28 else background)
                    self.assertEqual(rows[y][x], expected, (x, y, extra))

    def test_errors_are_one_line_and_write_nothing(self):
        out = os.path.join(self.dir, "preview.png")
        for args, code, env in ((["preview"], 2, {}), (["preview", out, "--size", "0,5"], 2, {}),
                                (["preview", out, "--background", "red"], 2, {}),
                                (["preview", out], 1, {"CHROMIUM": os.path.join(self.dir, "no-chromium")})):
            result = subprocess.run([PWEXT, *args], capture_output=True, env=dict(os.environ, **env))
            self.assertEqual(result.returncode, code, args)
            self.assertEqual(len(result.stderr.decode().strip().splitlines()), 1, args)
            self.assertFalse(os.path.exists(out), args)


if __name__ == "__main__":
    if not os.path.exists(PWEXT):
        print("pwext not built: %s" % PWEXT, file=sys.stderr)
        sys.exit(1)
    unittest.main(verbosity=1)
