#!/usr/bin/env python3
"""pwext's definition commands end to end: definition, info, unpack, pack.

Checks what unit tests cannot see: exit codes, one-line messages, files that
are written whole or not at all, and the round trip through real folders.

    python3 tests/pwext/definition_commands_test.py [PWEXT]
"""
import os
import subprocess
import sys
import tempfile
import unittest

PWEXT = os.environ.get("PWEXT") or (sys.argv[1] if len(sys.argv) > 1 else "build/native/bin/pwext")


def run(*args, stdin=b""):
    result = subprocess.run([PWEXT, *args], input=stdin, capture_output=True, timeout=60)
    return result.returncode, result.stdout, result.stderr.decode("latin-1")


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

    def test_definition_is_the_packed_resource(self):
        packed = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(PWEXT))), "resources", "extension.xml")
        if os.path.exists(packed):
            with open(packed, "rb") as f:
                self.assertEqual(self.builtin, f.read())
        self.assertTrue(self.builtin.startswith(b'<?xml version="1.0" encoding="UTF-8"?>\r\n<EXTENSION title="Slidewave" '))
        self.assertOneLineError(run("definition", "x"), 2, "usage")

    def test_unpack_then_pack_reproduces_the_bytes(self):
        source = self.write("extension.xml", self.builtin)
        folder = self.path("src")
        code, out, err = run("unpack", source, folder)
        self.assertEqual((code, err), (0, ""))
        self.assertEqual(os.path.getsize(os.path.join(folder, "files", "slidewave.js")), 11682)
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
        self.assertIn("  minimum size  12 x 0\n", text)
        self.assertIn("  use DIV       no\n", text)  # only exactly "1" counts
        self.assertIn("  render method 2 (HTML snapshot)\n", text)
        self.assertIn("    Untyped           type 0 (Boolean)", text)
        self.assertIn("      choices a|b|c\n", text)

        self.assertOneLineError(run("info", "--definition", self.write("g.xml", b"<GALLERY></GALLERY>")), 1,
                                "its root element is 'GALLERY'")
        self.assertOneLineError(run("info", "--definition", self.path("nope.xml")), 1, "cannot read")
        self.assertOneLineError(run("info", "--bogus"), 2, "usage")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
