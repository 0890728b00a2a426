#!/usr/bin/env python3
"""pwext's definition commands end to end: definition, info, unpack, pack.

Checks what unit tests cannot see: exit codes, one-line messages, files that
are written whole or not at all, and the round trip through real folders.

    python3 tests/pwext/definition_commands_test.py [PWEXT]
"""
import filecmp
import json
import os
import subprocess
import sys
import tempfile
import unittest

from definition_text import b64, stylesheet

PWEXT = os.environ.get("PWEXT") or (sys.argv[1] if len(sys.argv) > 1 else "build/native/bin/pwext")


def run(*args, stdin=b""):
    result = subprocess.run([PWEXT, *args], input=stdin, capture_output=True, timeout=60)
    return result.returncode, result.stdout, result.stderr.decode("latin-1")


BITMAP_32 = b64(b"BM" + bytes(16) + b"\x20\0\0\0\x20\0\0\0\x01\0\x18\0" + bytes(24))

# Purpose-made broken definitions, one line per element, each line's problems
# listed as (line, severity, words of the message).
BROKEN = {
    "reader.xml": ("""<?xml version="1.0"?>
<EXTENSION title="T" Title="x" rendermethod="5" usediv="true">
<PROPERTIES><CATEGORY name="C">
<PROPERTY Type="2" variable="$a$" value="x &bogus y"></PROPERTY>
<PROPERTY type="2" variable="$a$" value="#1"></PROPERTY>
</CATEGORY></PROPERTIES>
<UNKNOWN/>
<!-- a comment -->
<HTML_BODY>not base64 $a$</HTML_BODY>
<FILES>stray<FILE filename="a.txt" process_file="0">YQ==</FILE>kept</FILES>
<HTML_HEAD>%s</HTML_HEAD></FOLDER>
</EXTENSION>""" % b64("$a$ > $LEFT$"), [
        (2, "warning", "attribute 'Title' is not read; attribute names are case-sensitive: write 'title'"),
        (2, "warning", "rendermethod 5 draws nothing"), (2, "warning", "usediv 'true' counts as no"),
        (2, "warning", "no <HTML_BODY>"),
        (4, "warning", "'&bogus ' is no entity"), (4, "warning", "attribute 'Type' is not read"),
        (4, "warning", "no type: it is read as 0"),
        (5, "warning", "variable $a$ is also the variable of the property at line 4"),
        (7, "warning", "<UNKNOWN> is not read inside <EXTENSION>"),
        (9, "warning", "<HTML_BODY> follows a comment or declaration"),
        (10, "warning", "the text 'stray' is lost"),
        (11, "warning", "</folder> closes <extension>")]),
    "properties.xml": ("""<EXTENSION>
<PROPERTIES>
<PROPERTY type="8" variable="$link$"></PROPERTY>
<CATEGORY name="C">
<PROPERTY type="9" variable="$t$"></PROPERTY>
<PROPERTY type="2" variable=""></PROPERTY>
<PROPERTY type="1" variable="$c$" value="red"></PROPERTY>
<PROPERTY type="2" variable="$o$" options="a|b" gallerytemplate="%s"></PROPERTY>
<PROPERTY type="7" variable="$ch$" options=""></PROPERTY>
<PROPERTY type="6" variable="$g0$"></PROPERTY>
<PROPERTY type="6" variable="$g$" gallerytemplate="%s"></PROPERTY>
<PROPERTY type="6" variable="$gd$" gallerytemplate="%s"></PROPERTY>
<PROPERTY type="6" variable="$gb$" gallerytemplate="%s"></PROPERTY>
<PROPERTY type="2" variable="$unused$"></PROPERTY>
</CATEGORY>
</PROPERTIES>
<HTML_BODY>%s</HTML_BODY>
</EXTENSION>""" % (b64(stylesheet("")), b64(stylesheet("$g$")), b64(stylesheet("<xsl:copy-of select=\"document('x')\"/>")),
                   b64(stylesheet('<xsl:value-of select="(("/>')), b64("$t$ $c$ $o$ $ch$ $g0$ $g$ $gd$ $gb$ $nobody$")), [
        (3, "warning", "a property must be inside a CATEGORY, and the host is not offered this link"),
        (5, "warning", "type '9' is none of 0 to 8"), (6, "warning", "no variable"),
        (7, "warning", "colour value 'red' is not #RRGGBB"), (8, "warning", "options are read only for choices"),
        (8, "warning", "gallerytemplate is read only for image lists"), (9, "warning", "a choice without options"),
        (10, "warning", "an image list without gallerytemplate"), (11, "warning", "uses its own variable $g$"),
        (12, "error", "calls document()"), (13, "error", "does not compile"),
        (14, "warning", "variable $unused$ appears in no template"),
        (17, "warning", "$nobody$ is the variable of no property")]),
    "files.xml": ("""<EXTENSION rendermethod="x">
<FILES>
<FILE filename="" process_file="0">YQ==</FILE>
<FILE filename="/abs.txt" process_file="0">YQ==</FILE>
<FOLDER name=".."><FILE filename="x" process_file="0">YQ==</FILE></FOLDER>
<FILE filename="Same.css" process_file="true">YQ==</FILE>
<FILE filename="same.css" process_file=" 1">not base64!</FILE>
</FILES>
<BITMAP>%s</BITMAP>
<IMAGE>%s</IMAGE>
<HTML_BODY>eA==</HTML_BODY>
</EXTENSION>""" % (BITMAP_32, b64("not a picture")), [
        (3, "warning", "a FILE without filename"), (4, "error", "file '/abs.txt' leaves the output folder"),
        (5, "error", "folder '..' leaves the output folder"),
        (6, "warning", "process_file 'true' does not replace variables"),
        (7, "warning", "'same.css' is also written by the FILE at line 6"),
        (7, "warning", "the content is not Base64"),
        (9, "warning", "the toolbar picture is 32 x 32, not 16 x 16"),
        (10, "warning", "the preview picture is no PNG, GIF, JPEG or BMP")]),
}


class DefinitionCommands(unittest.TestCase):
    def setUp(self):
        self.temp = tempfile.TemporaryDirectory(prefix="pwext-definition-")
        self.dir = self.temp.name
        code, self.builtin, _ = run("definition")
        self.assertEqual(code, 0)

    def tearDown(self):
        self.temp.cleanup()

    def path(self, *parts):
        return os.path.join(self.dir, *parts)

    def write(self, name, data):
        with open(self.path(name), "wb") as f:
            f.write(data)
        return self.path(name)

    def assertOneLineError(self, result, code, fragment):
        self.assertEqual(result[0], code, result[2])
        self.assertEqual(result[1], b"")
        self.assertEqual(result[2].count("\n"), 1, result[2])
        self.assertTrue(result[2].startswith("pwext: "), result[2])
        self.assertIn(fragment, result[2])

    def test_check_reports_each_problem_with_its_line_and_path(self):
        self.assertEqual(run("check"), (0, b"", ""))
        for name, (text, expected) in BROKEN.items():
            path = self.write(name, text.encode())
            code, out, err = run("check", "--definition", path)
            self.assertEqual((code, err), (1, ""), name)
            lines = out.decode().splitlines()
            for line, severity, words in expected:
                prefix = "%s:%d: %s: EXTENSION" % (path, line, severity)
                self.assertTrue(any(l.startswith(prefix) and words in l for l in lines), (name, line, words, out))
            code, out, _ = run("check", "--definition", path, "--json")
            problems = json.loads(out)["problems"]
            self.assertEqual(len(problems), len(lines), name)
            self.assertTrue(all(set(p) == {"severity", "line", "path", "message"} for p in problems))

    def test_pack_refuses_errors_and_passes_warnings(self):
        plain = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "win", "host", "definitions", "plain.xml")
        with open(plain, "rb") as f:
            warned = f.read()  # usediv="true"
        for name, text, wanted in (("properties.xml", BROKEN["properties.xml"][0].encode(), 1), ("plain.xml", warned, 0)):
            folder = self.path(name + ".src")
            self.assertEqual(run("unpack", self.write(name, text), folder)[0], 0)
            code, _, err = run("pack", folder, "-o", self.path(name + ".packed"))
            self.assertEqual(code, wanted, err)
            self.assertRegex(err, r"manifest.txt:\d+: %s: EXTENSION" % ("error" if wanted else "warning"))
            self.assertEqual(os.path.exists(self.path(name + ".packed")), not wanted)

    def test_unpack_then_pack_reproduces_the_bytes(self):
        source = self.write("extension.xml", self.builtin)
        folder = self.path("src")
        code, out, err = run("unpack", source, folder)
        self.assertEqual((code, err), (0, ""))
        # The built-in definition unpacks to the source folder it is packed from.
        resources = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "slidewave")
        names = [os.path.relpath(os.path.join(d, n), folder) for d, _, found in os.walk(folder) for n in found]
        self.assertEqual(filecmp.cmpfiles(folder, resources, names, shallow=False), (names, [], []))
        code, out, _ = run("pack", folder)
        self.assertEqual((code, out), (0, self.builtin))
        code, out, _ = run("pack", folder, "-o", self.path("again.xml"))
        self.assertEqual((code, out), (0, b""))
        with open(self.path("again.xml"), "rb") as f:
            self.assertEqual(f.read(), self.builtin)
        # From standard input as well.
        folder2 = self.path("src2")
        self.assertEqual(run("unpack", "-", folder2, stdin=self.builtin)[0], 0)
        self.assertEqual(run("pack", folder2)[1], self.builtin)

    def test_unpack_refuses_and_writes_nothing(self):
        self.assertOneLineError(run("unpack", self.write("x.xml", b"<GALLERY/>"), self.path("out")), 1,
                                "not an extension definition")
        self.assertFalse(os.path.exists(self.path("out")))
        self.assertOneLineError(run("unpack", self.write("e.xml", b""), self.path("out")), 1, "empty")
        os.mkdir(self.path("busy"))
        self.write(os.path.join("busy", "keep.txt"), b"mine")
        self.assertOneLineError(run("unpack", self.write("d.xml", self.builtin), self.path("busy")), 1, "not empty")
        self.assertEqual(os.listdir(self.path("busy")), ["keep.txt"])
        self.assertOneLineError(run("unpack", self.path("missing.xml"), self.path("out")), 1, "cannot read")
        self.assertOneLineError(run("unpack", "only-one"), 2, "usage")
        self.assertOneLineError(run("definition", "x"), 2, "usage")

    def test_pack_messages_name_the_problem_and_leave_no_output(self):
        os.mkdir(self.path("empty"))
        self.assertOneLineError(run("pack", self.path("empty")), 1, "no readable manifest.txt")
        os.mkdir(self.path("bad"))
        self.write(os.path.join("bad", "manifest.txt"), b"[EXTENSION]\n    title = a \"quoted\" title\n")
        target = self.path("out.xml")
        self.assertOneLineError(run("pack", self.path("bad"), "-o", target), 1, "&quot;")
        self.assertFalse(os.path.exists(target))
        self.write(os.path.join("bad", "manifest.txt"), b"[EXTENSION]\n    [HTML_HEAD] < head.html\n")
        self.assertOneLineError(run("pack", self.path("bad")), 1, "head.html")
        self.write(os.path.join("bad", "manifest.txt"), b"[EXTENSION]\n\ttitle = x\n")
        self.assertOneLineError(run("pack", self.path("bad")), 1, "manifest line 2")
        self.assertOneLineError(run("pack"), 2, "usage")
        self.assertOneLineError(run("pack", "a", "b"), 2, "one folder")

    def test_info_reads_the_object_settings_as_the_constructor_does(self):
        code, out, _ = run("info")
        text = out.decode("latin-1")
        self.assertEqual(code, 0)
        for line in ['  title         "Slidewave"', "  minimum size  50 x 50", "  use DIV       no",
                     "  render method 0 (placeholder with the toolbar text)",
                     "    Images            type 6 (image list), variable $images$, default \"\"",
                     "      Specified the images",
                     "toolbar bitmap: 822 bytes, 16 x 16, 24-bit", "preview image: none",
                     "  HTML_TAIL 0 bytes"]:
            self.assertIn(line + "\n", text)
        self.assertRegex(text, r"\n  slidewave.css +\d+ bytes  \(variables replaced\)\n")

        odd = self.write("odd.xml", b'<?xml version="1.0"?>\r\n<EXTENSION minwidth="12px" minheight="x" usediv="1 " '
                                    b'rendermethod=" 2" ><UNKNOWN>1</UNKNOWN><PROPERTIES><CATEGORY name="C" >'
                                    b'<PROPERTY name="Untyped" ></PROPERTY><PROPERTY name="Pick" type="7" '
                                    b'options="a|b|c" ></PROPERTY></CATEGORY></PROPERTIES></EXTENSION>')
        code, out, _ = run("info", "--definition", odd)
        text = out.decode("latin-1")
        self.assertEqual(code, 0)
        self.assertIn("  render method 2 (HTML snapshot)\n", text)
        self.assertIn("    Untyped           type 0 (Boolean)", text)
        self.assertIn("      choices a|b|c\n", text)

        self.assertOneLineError(run("info", "--definition", self.write("g.xml", b"<GALLERY></GALLERY>")), 1,
                                "its root element is 'GALLERY'")
        self.assertOneLineError(run("info", "--definition", self.path("nope.xml")), 1, "cannot read")
        self.assertOneLineError(run("info", "--bogus"), 2, "usage")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
