#!/usr/bin/env python3
"""The plug-in DLL driven through the stand-in host under 32-bit Wine.

    plugin_test.py --bin DIR --source DIR --pwext PATH [unittest options]

DIR holds pwhost.exe, mfc42.dll (the stand-in run time), slidewave.dll, the
test plug-ins built from definitions/ and pwimportcheck.exe. Drawing tests
need a display (the win32 test stage runs under xvfb-run). --pwext names the
native pwext for the cross-checks of records and HTML.
"""
import argparse
import http.server
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import unittest

# The project record's archive encoding, shared with the engine model.
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "model"))
from engine_model import write_record  # noqa: E402

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "definitions"))
import pictures  # noqa: E402  (the pictures of the picture_*.xml definitions)

BIN = SOURCE = PWEXT = None
WHITE = (255, 255, 255)
MSXML_MESSAGE = "A problem occurred while loading MSXML.DLL!"


def wine_env(overrides="mfc42=n"):
    env = dict(os.environ)
    env.setdefault("WINEPREFIX", os.path.join(SOURCE, "build", "wineprefix"))
    env["WINEARCH"] = "win32"
    env.setdefault("WINEDEBUG", "-all")
    env["WINEDLLOVERRIDES"] = overrides
    return env


def windows_path(path):
    """Wine's Z: drive is the Unix root."""
    return "Z:" + os.path.abspath(path).replace("/", "\\")


def run_wine(cmd, env):
    """Runs a Windows program; returns (exit code, stdout bytes, stderr text).

    Output goes through files, not pipes: Wine's own service processes,
    started by whichever program comes first, inherit the handles and would
    keep a pipe open long after the program ends."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        code = subprocess.run(["wine"] + cmd, stdin=subprocess.DEVNULL, stdout=out, stderr=err, env=env,
                              timeout=300).returncode
        out.seek(0)
        err.seek(0)
        return code, out.read(), err.read().decode("latin-1")


def pwhost(dll, *args, host_dir=None, overrides="mfc42=n", env_extra=None):
    """Runs pwhost; returns (exit code, stdout bytes, stderr text)."""
    host_dir = host_dir or BIN
    env = wine_env(overrides)
    env.update(env_extra or {})
    dll_path = dll if os.path.isabs(dll) else os.path.join(BIN, dll)
    code, out, err = run_wine([os.path.join(host_dir, "pwhost.exe"), windows_path(dll_path)] + list(args), env)
    if code != 0:
        shown = " ".join(a if len(a) < 80 else a[:77] + "..." for a in args)
        raise AssertionError(f"pwhost {shown} exited {code}: {err}")
    return code, out, err


def pwhost_json(dll, *args, **kw):
    return json.loads(pwhost(dll, *args, **kw)[1].decode("latin-1"))


def read_file(path):
    with open(path, "rb") as f:
        return f.read()


def read_bmp(path):
    """(width, height, rows of (r, g, b)) of a 24-bit BMP, top row first."""
    data = read_file(path)
    offset = struct.unpack_from("<I", data, 10)[0]
    width, height = struct.unpack_from("<ii", data, 18)
    bits = struct.unpack_from("<H", data, 28)[0]
    assert bits == 24, bits
    row = (width * 3 + 3) & ~3
    rows = []
    for y in range(abs(height)):
        line = y if height < 0 else abs(height) - 1 - y
        base = offset + line * row
        rows.append([tuple(reversed(data[base + 3 * x: base + 3 * x + 3])) for x in range(width)])
    return width, abs(height), rows


def record_bytes(record_id, pairs):
    return write_record(100, record_id, pairs)


class Scratch(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="pwhost-")
        self.addCleanup(shutil.rmtree, self.dir, True)

    def path(self, name):
        return os.path.join(self.dir, name)

    def write(self, name, data):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as f:
            f.write(data)
        return self.path(name)

    def draw(self, dll, width, height, rect=None):
        """Draws into a white bitmap through pwhost; returns its pixels."""
        out = self.path("draw.bmp")
        args = ["draw", out, str(width), str(height)] + (["--rect", rect] if rect else [])
        self.assertEqual(pwhost_json(dll, *args), {"dcRestored": True})
        return read_bmp(out)[2]


class SmallOperations(Scratch):
    def test_root_attributes_are_read_literally(self):
        # usediv counts only as the exact text "1"; sizes go through atoi.
        cases = {"slidewave_test_plain.dll": (0, 0, 0),        # usediv="true", no sizes
                 "slidewave_test_usediv_01.dll": (0, 0, 7),    # usediv="01", minwidth="abc"
                 "slidewave_test_usediv_1.dll": (1, 120, -5)}
        for dll, (use_div, width, height) in cases.items():
            info = pwhost_json(dll, "info")
            self.assertEqual((info["useDiv"], info["minWidth"], info["minHeight"]), (use_div, width, height), dll)
        self.assertEqual(info, {"version": 2, "minWidth": 120, "minHeight": -5, "useDiv": 1, "toolbarText": "T" * 255,
                                "urlCount": 0, "bkColor": "", "bkImage": "", "uniqueName": "", "pngFix": 0})

    def test_toolbar_text_copies_like_lstrcpyn(self):
        cases = [("slidewave.dll", 1, 1, ""), ("slidewave.dll", 5, 5, "Slid"), ("slidewave.dll", 64, 9, "Slidewave"),
                 ("slidewave.dll", 0, 0, None), ("slidewave_test_usediv_01.dll", 1, 0, ""),
                 ("slidewave_test_usediv_1.dll", 256, 256, "T" * 255)]
        for dll, size, returned, text in cases:
            got = pwhost_json(dll, "toolbar-text", str(size))
            self.assertEqual((got["returned"], got["buffer"], got["guardIntact"]), (returned, text, True),
                             (dll, size))

    def test_null_and_out_of_range_arguments(self):
        got = pwhost_json("slidewave_test_plain.dll", "odd-arguments")
        self.assertEqual(got, {"survived": True, "urlLength": 0, "toolbarNull": 5, "toolbarNegative": -3})

    def test_delete_of_null_is_ignored(self):
        self.assertEqual(pwhost_json("slidewave.dll", "delete-null"), {"returned": True})

    def test_extension_module_and_strings_with_the_run_time(self):
        # One CDynLinkLibrary while loaded, none after unloading; every
        # string handed out was made by MFC and freed by the host.
        self.assertEqual(pwhost_json("slidewave.dll", "runtime"), {
            "librariesAfterLoad": 1, "librariesAfterUnload": 0, "liveStrings": 0, "foreignFrees": 0})

    def test_run_time_without_the_bridge_ordinals(self):
        partial = os.path.join(BIN, "partial-mfc42")
        self.assertEqual(pwhost_json("slidewave.dll", "runtime", host_dir=partial)["librariesAfterLoad"], 0)
        info = pwhost_json("slidewave.dll", "--set", "$fontsize$=12", "info", host_dir=partial)
        self.assertEqual((info["toolbarText"], info["bkColor"], info["useDiv"]), ("Slidewave", "", 0))
        self.assertEqual(pwhost("slidewave.dll", "html", "body", host_dir=partial)[1], b"")
        pwhost("slidewave.dll", "save", self.path("empty.rec"), host_dir=partial)
        self.assertEqual(read_file(self.path("empty.rec")), b"")

    def test_an_msvc_host_links_and_calls_every_export(self):
        code, out, err = run_wine([os.path.join(BIN, "pwimportcheck.exe")], wine_env())
        out = out.decode("latin-1")
        self.assertEqual(code, 0, out + err)
        self.assertNotIn("FAIL", out)


class ToolbarBitmap(Scratch):
    def pixels(self, dll):
        out = self.path(dll + ".bmp")
        info = pwhost_json(dll, "toolbar-bitmap", out)
        self.assertEqual((info["width"], info["height"], info["deviceDependent"], info["deleted"]),
                         (16, 16, True, True))
        return read_bmp(out)[2]

    def test_the_definition_picture(self):
        self.assertEqual(self.pixels("slidewave.dll"),
                         read_bmp(os.path.join(SOURCE, "resources", "slidewave", "toolbar.bmp"))[2])

    def test_resource_31550_without_a_usable_bitmap_element(self):
        fallback = read_bmp(os.path.join(SOURCE, "resources", "win", "toolbar_fallback.bmp"))[2]
        self.assertEqual(self.pixels("slidewave_test_plain.dll"), fallback)       # no BITMAP
        self.assertEqual(self.pixels("slidewave_test_usediv_01.dll"), fallback)   # BITMAP not a "BM" file


class Records(Scratch):
    def save(self, *args, **kw):
        out = self.path("saved.rec")
        pwhost("slidewave.dll", *args, "save", out, **kw)
        return read_file(out)

    def test_record_ending_early_raises_the_archive_exception(self):
        whole = record_bytes(7, [(b"$fontsize$", b"14"), (b"$fontname$", b"Verdana")])
        for cut in (3, 9, 12, len(whole) - 1):
            for buffer in ("4096", "3"):
                rec = self.write("cut.rec", whole[:cut])
                code, _, err = pwhost("slidewave.dll", "--record", rec, "save", self.path("after.rec"),
                                      env_extra={"PWHOST_ARCHIVE_BUFFER": buffer})
                # Raised the way the archive raises it: end of file, its own name.
                self.assertIn('Serialize raised CArchiveException cause 3 file "project.pwx"', err, (cut, buffer))
                kept = read_file(self.path("after.rec"))
                expected_pairs = [(b"$fontsize$", b"14")] if cut > 24 else []
                expected_id = 7 if cut >= 8 else 0
                self.assertEqual(kept, record_bytes(expected_id, expected_pairs), (cut, buffer))

    def test_pwext_reads_what_the_dll_stores_and_back(self):
        # 255 bytes take the three-byte length, 70,000 the seven-byte one (too
        # long for a command line: it comes in as a record).
        long_value = self.write("long.rec", record_bytes(3, [(b"$extra$", b"x" * 70000)]))
        sets = ["--record", long_value, "--set", "$fontsize$=14", "--set", "$fontname$=" + "V" * 255]
        stored = self.save(*sets)
        done = subprocess.run([PWEXT, "record", "read", self.write("dll.rec", stored)], capture_output=True,
                              timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        read = json.loads(done.stdout.decode("latin-1"))
        self.assertEqual((read["version"], read["id"]), (100, 3))
        self.assertEqual(dict(read["values"]), {"$fontsize$": "14", "$fontname$": "V" * 255, "$extra$": "x" * 70000})
        # pwext's record of the same values, loaded and stored by the DLL,
        # comes back byte for byte (same pairs, same map order).
        done = subprocess.run([PWEXT, "record", "write", "--id", "5"] + sets, capture_output=True, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        native = self.write("native.rec", done.stdout)
        self.assertEqual(self.save("--record", native), done.stdout)
        self.assertEqual(stored[8:], done.stdout[8:])


def squeeze(html):
    """HTML with white space between and inside tags folded: the gallery
    markup comes from different XSLT processors (the Windows XML component
    here, libxslt in pwext), which lay it out differently."""
    return re.sub(rb"\s*/>", b"/>", re.sub(rb"\s+", b" ", html)).replace(b"> <", b"><").strip()


GALLERY = ('<?xml version="1.0"?><GALLERY><IMAGE><FILENAME>{a}</FILENAME><TITLE>First &amp; best</TITLE></IMAGE>'
           '<IMAGE><FILENAME>{b}</FILENAME></IMAGE></GALLERY>')


class Html(Scratch):
    def test_strings_cross_the_boundary_binary_safe(self):
        # A value with a zero byte and bytes above 127 comes back whole: the
        # host's CString is built with its length, not up to the first zero.
        rec = self.write("zero.rec", record_bytes(0, [(b"$caption$", b"a\x00b\xe9c")]))
        self.assertEqual(pwhost("slidewave_test_plain.dll", "--record", rec, "html", "tail")[1],
                         b"<!-- tail a\x00b\xe9c -->")

    def test_gallery_never_reads_files_or_the_network(self):
        # The hostile definition's gallery style sheet reads document($secret$)
        # and document($url$); the list of the second round declares an
        # external entity.
        secret = self.write("secret.xml", b"<s>top secret</s>")
        requests = []

        class Answer(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                requests.append(self.path)
                self.send_response(200)
                self.end_headers()
                self.wfile.write(b"<s>fetched</s>")

            def log_message(self, *args):
                pass

        server = http.server.HTTPServer(("127.0.0.1", 0), Answer)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        local = "file:///" + windows_path(secret).replace("\\", "/")
        lists = (GALLERY.format(a="C:\\a.jpg", b="C:\\b.jpg"),
                 '<!DOCTYPE GALLERY [<!ENTITY s SYSTEM "%s">]><GALLERY><IMAGE><FILENAME>&s;</FILENAME></IMAGE>'
                 '</GALLERY>' % local)
        for images in lists:
            for dll in ("slidewave_test_hostile.dll", "slidewave.dll"):
                for publish in ([], ["--publish", "pics"]):
                    body = pwhost(dll, "--set", "$images$=" + images, "--set", "$secret$=" + local, "--set",
                                  "$url$=http://127.0.0.1:%d/x.xml" % server.server_port, "html", "body", *publish)[1]
                    self.assertNotIn(b"secret", body, (dll, publish))
                    self.assertNotIn(b"fetched", body, (dll, publish))
                    self.assertIn(b'<div class="around">' if "hostile" in dll else b'<div id="images">', body)
        self.assertEqual(requests, [])

    def test_records_that_would_cost_without_bound_keep_the_page(self):
        # Deeply nested pictures, and values that hold later variables tens
        # of thousands of times: the gallery or the variables stay empty or
        # in place, the rest of the page is there.
        deep = b"<GALLERY>" + b"<IMAGE><FILENAME>C:\\a.jpg</FILENAME>" * 4000
        blowing = [(b"$backgroundcolor$", b"$fontname$" * 30000), (b"$fontname$", b"$fontsize$" * 30000)]
        for pairs in ([(b"$images$", deep)], blowing):
            rec = self.write("hostile.rec", record_bytes(0, pairs))
            for publish in ([], ["--publish", "pics"]):
                body = pwhost("slidewave.dll", "--record", rec, "html", "body", *publish)[1]
                self.assertIn(b'<div id="images">', body)
                self.assertIn(b'<div id="scrollbar">', body)
                self.assertNotIn(b"a.jpg", body)
                self.assertLess(len(body), 40 << 20)

    def test_missing_xml_component_shows_the_message_each_time(self):
        images = GALLERY.format(a="C:\\a.jpg", b="C:\\b.jpg")
        code, body, err = pwhost("slidewave.dll", "--set", "$images$=" + images, "html", "body",
                                 overrides="mfc42=n;msxml3=d")
        boxes = [line for line in err.splitlines() if "message box" in line]
        self.assertGreaterEqual(len(boxes), 2, err)  # loading the record, then GetHtml
        for line in boxes:
            self.assertEqual(line, f'pwhost: message box 0x00000010 "{MSXML_MESSAGE}" ""')
        self.assertNotIn(b"a.jpg", body)
        self.assertIn(b'<div id="images">', body)

    def test_same_html_as_native_pwext(self):
        # The gallery markup comes from different XSLT processors (MSXML
        # here, libxslt there): white space between and inside tags aside,
        # the HTML is the same.
        images = GALLERY.format(a="C:\\pics\\a.jpg", b="C:\\pics\\b.png")
        for reflection in ("false", "true"):
            sets = ["--set", "$images$=" + images, "--set", "$fontsize$=14", "--set", "$textcolor$=#FF0000",
                    "--set", "$enablereflection$=" + reflection]
            for part, dll_extra, pwext_extra in (("body", ["--publish", "gallery"], ["--publish", "--context", "gallery"]),
                                                 ("head", [], []), ("tail", [], [])):
                dll_html = pwhost("slidewave.dll", *sets, "html", part, *dll_extra)[1]
                done = subprocess.run([PWEXT, "html", part, *pwext_extra, *sets], capture_output=True, timeout=60)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual(squeeze(dll_html), squeeze(done.stdout), (part, reflection))


class Links(Scratch):
    def test_urls_are_enumerated_and_rewritten(self):
        dll = "slidewave_test_plain.dll"
        self.assertEqual(pwhost_json(dll, "urls"),
                         {"count": 2, "urls": ["index.html", "http://example.com/more"], "values": {}})
        got = pwhost_json(dll, "urls", "--set-url", "1=other.html", "--set-url", "9=ignored")
        self.assertEqual(got["urls"], ["index.html", "other.html"])
        self.assertEqual(got["values"], {"$more$": "other.html"})
        self.assertEqual(pwhost_json("slidewave.dll", "urls"), {"count": 0, "urls": [], "values": {}})


class CopyFiles(Scratch):
    def test_payload_and_images_are_published(self):
        picture = self.write("holiday.jpg", b"\xff\xd8 not really a jpeg")
        # The host makes both folders before publishing.
        output = self.path("site/out")
        images = self.path("site/out/pics")
        os.makedirs(images)
        gallery = GALLERY.format(a=windows_path(picture), b=windows_path(picture))
        got = pwhost_json("slidewave.dll", "--set", "$images$=" + gallery, "--set", "$backgroundcolor$=#123456",
                          "copy-files", windows_path(output), windows_path(images))
        self.assertEqual(got, {"returned": 1})
        published = set(os.listdir(output))
        for name in ("slidewave.css", "slidewave.js", "reflect.php", "loading.gif", "slider.png"):
            self.assertIn(name, published)
        self.assertIn(b"#123456", read_file(os.path.join(output, "slidewave.css")))
        self.assertEqual(read_file(os.path.join(images, "holiday.jpg")), b"\xff\xd8 not really a jpeg")
        # Publishing again overwrites.
        got = pwhost_json("slidewave.dll", "copy-files", windows_path(output), windows_path(images))
        self.assertEqual(got, {"returned": 1})
        self.assertNotIn(b"#123456", read_file(os.path.join(output, "slidewave.css")))


    def test_names_never_leave_the_output_and_image_folders(self):
        # A FILENAME whose name part climbs out ("../../pic.jpg" after the
        # last backslash) is published as pic.jpg in the image folder; the
        # definition's "../escaped.txt" and "..\\up" are skipped.
        self.write("pics/pic.jpg", b"picture")
        output, images = self.path("site/out"), self.path("site/out/images")
        os.makedirs(images)
        climbing = windows_path(self.path("pics/a/b")) + "\\../../pic.jpg"
        got = pwhost_json("slidewave_test_hostile.dll", "--set", "$images$=" + GALLERY.format(a=climbing, b=climbing),
                          "copy-files", windows_path(output) + "\\", windows_path(images))
        self.assertEqual(got, {"returned": 1})
        found = sorted(os.path.relpath(os.path.join(d, n), self.dir) for d, _, names in os.walk(self.dir) for n in names)
        self.assertEqual(found, ["pics/pic.jpg", "site/out/images/pic.jpg", "site/out/sub/kept.txt"])


class PictureDrawing(Scratch):
    """Render method 1: the definition's IMAGE picture, drawn at its natural
    size from the rectangle's top-left corner, cut at the rectangle's right
    and bottom, never scaled; nothing at all without a picture."""

    def expected(self, picture, width, height, left, top, right, bottom):
        """White everywhere except the part of the picture inside the
        rectangle, placed at its top-left; transparent pixels stay white."""
        rows = [[WHITE] * width for _ in range(height)]
        for y, row in enumerate(picture):
            for x, (r, g, b, a) in enumerate(row):
                if left + x < right and top + y < bottom and a:
                    rows[top + y][left + x] = (r, g, b)
        return rows

    def test_natural_size_from_the_top_left_cut_never_scaled(self):
        picture = pictures.png_picture()
        for size, rect in (((60, 40), (7, 5, 55, 38)), ((40, 30), (3, 2, 15, 9))):
            self.assertEqual(self.draw("slidewave_test_picture_png.dll", *size, ",".join(map(str, rect))),
                             self.expected(picture, *size, *rect), rect)

    def test_without_picture_draws_nothing(self):
        # rendermethod="1" and no IMAGE: no placeholder, no frame.
        px = self.draw("slidewave_test_usediv_01.dll", 50, 30, "0,0,50,30")
        self.assertTrue(all(c == WHITE for row in px for c in row))

    def test_temporary_picture_file_is_removed(self):
        prefix = wine_env()["WINEPREFIX"]
        folders = [os.path.join(prefix, "drive_c", *parts) for parts in
                   (("users", user, "Temp") for user in os.listdir(os.path.join(prefix, "drive_c", "users")))]
        folders += [os.path.join(prefix, "drive_c", "windows", "temp")]

        def leftovers():
            return {os.path.join(f, n) for f in folders if os.path.isdir(f) for n in os.listdir(f)
                    if n.lower().startswith("~pw")}
        before = leftovers()
        pwhost("slidewave_test_picture_png.dll", "info")
        self.assertEqual(leftovers() - before, set())


def page(x, y):
    """The page that pwhost draw --page paints under the object."""
    return (0xCF, 0xE0, 0xF5) if (x // 8 + y // 8) & 1 else WHITE


def regsvr32(*flags):
    code, _, err = run_wine(["regsvr32", "/s", *flags, windows_path(os.path.join(BIN, "pwhtmlfile_double.dll"))],
                            wine_env())
    assert code == 0, err


class SnapshotDrawing(Scratch):
    """Render method 2: the body HTML as the system's HTML component draws
    it, over the host's page. Wine has no HTML engine here: the stand-in of
    htmlfile_double.cpp, registered while a test needs it, draws each
    positioned element with a background as a box of that colour."""
    DLL = "slidewave_test_snapshot.dll"

    def test_the_body_over_the_page_following_the_values(self):
        regsvr32()
        self.addCleanup(regsvr32, "/u")
        out = self.path("draw.bmp")
        for sets, first in (([], (0x1E, 0x3A, 0x5F)), (["--set", "$boxcolor$=#802040"], (0x80, 0x20, 0x40))):
            self.assertEqual(pwhost_json(self.DLL, *sets, "draw", out, "220", "100", "--rect", "200,90,10,8", "--page"),
                             {"dcRestored": True})
            boxes = (((12, 10, 120, 44), first), ((84, 38, 72, 30), (0xE8, 0xA3, 0x3D)))
            for y, row in enumerate(read_bmp(out)[2]):
                for x, colour in enumerate(row):
                    inside = [c for (l, t, w, h), c in boxes if 10 + l <= x < 10 + l + w and 8 + t <= y < 8 + t + h]
                    if not inside:
                        self.assertEqual(colour, page(x, y), (x, y))
                    elif inside[-1] == first and y < 8 + 10 + 20:
                        pass  # the caption's line
                    else:
                        self.assertEqual(colour, inside[-1], (x, y))

    def test_design_view_html_is_what_pwext_gives(self):
        # The design view keeps local paths: of the file property and of
        # every picture of the image list.
        regsvr32()
        self.addCleanup(regsvr32, "/u")
        sets = ["--set", "$images$=" + GALLERY.format(a="C:\\pics\\a b.jpg", b="D:\\x\\b.png"),
                "--set", "$logo$=C:\\art\\new logo.gif", "--set", "$caption$=Tea & cake"]
        page = pwhost(self.DLL, *sets, "html", "design")[1]
        body = page[page.index(b"<span>") + 6:page.rindex(b"</span>")]
        definition = os.path.join(SOURCE, "tests", "win", "host", "definitions", "snapshot.xml")
        done = subprocess.run([PWEXT, "html", "body", "--definition", definition, *sets], capture_output=True,
                              timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(squeeze(body), squeeze(done.stdout))
        for path in (b'src="C:\\art\\new logo.gif"', b'src="C:\\pics\\a b.jpg"', b'src="D:\\x\\b.png"'):
            self.assertIn(path, body)


class BinaryInterface(unittest.TestCase):
    SYSTEM_DLLS = {"kernel32.dll", "user32.dll", "gdi32.dll", "ole32.dll", "oleaut32.dll", "msvcrt.dll",
                   "advapi32.dll", "comctl32.dll", "comdlg32.dll", "shell32.dll", "shlwapi.dll", "urlmon.dll",
                   "version.dll", "uxtheme.dll", "imm32.dll", "winmm.dll", "oleacc.dll"}

    def objdump(self, dll):
        done = subprocess.run(["i686-w64-mingw32-objdump", "-p", os.path.join(BIN, dll)], capture_output=True,
                              timeout=60, check=True)
        return done.stdout.decode("latin-1")

    def test_imports_are_system_dlls_only(self):
        for dll in ("slidewave.dll", "slidewave_test_plain.dll"):
            imported = {m.lower() for m in re.findall(r"DLL Name: (\S+)", self.objdump(dll))}
            self.assertTrue(imported, dll)
            self.assertLessEqual(imported, self.SYSTEM_DLLS, dll)
            for bound_at_run_time in ("mfc42.dll", "gdiplus.dll", "msimg32.dll"):
                self.assertNotIn(bound_at_run_time, imported)

    def test_version_information(self):
        data = read_file(os.path.join(BIN, "slidewave.dll"))
        for text in ("VS_VERSION_INFO", "OriginalFilename", "slidewave.dll", "FileVersion", "1.0.0.0"):
            self.assertIn(text.encode("utf-16-le"), data, text)

    def test_exports(self):
        dump = self.objdump("slidewave.dll")
        table = dump[dump.index("[Ordinal/Name Pointer] Table"):]
        names = set(re.findall(r"^\s+\[\s*\d+\]\s+(\S+)$", table, re.M))
        for plain in ("CreateExtensionObject", "DeleteExtensionObject", "GetToolbarBitmap", "GetToolbarText"):
            self.assertIn(plain, names)
        for decorated in ("??0CPagewrightExtension@@QAE@XZ", "??1CPagewrightExtension@@UAE@XZ",
                          "??_7CPagewrightExtension@@6B@", "?GetVersion@CPagewrightExtension@@UAEHXZ",
                          "?Serialize@CPagewrightExtension@@UAEXAAVCArchive@@@Z",
                          "?ReplaceVariables@CPagewrightExtension@@IAEXAAVCString@@@Z"):
            self.assertIn(decorated, names)
        self.assertEqual(len(names), 4 + 2 + 1 + 21 + 5)


class PropertiesDialog(Scratch):
    """Properties() opens the dialog modally over the host's frame; pwhost
    drives it with keys and the grid's accessibility interface, then reports
    what it showed, the values the object keeps and its published HTML."""
    SLIDEWAVE_ROWS = [["General", ""], ["Images", "Click to add/remove files"], ["EnableReflection", "No"],
                      ["Style", ""], ["BackgroundColor", "#000000"], ["FontName", "Arial"], ["FontSize", "10"],
                      ["TextColor", "#FFFFFF"]]

    def properties(self, dll, *steps, values=()):
        sets = [a for pair in values for a in ("--set", pair)]
        return pwhost_json(dll, *sets, "properties", *steps)

    def test_shows_the_definition_and_gives_the_host_its_frame_back(self):
        got = self.properties("slidewave.dll", "rows", "cancel")
        self.assertEqual((got["caption"], got["developer"], got["website"]),
                         ("Slidewave Properties", "Slidewave Project", "https://slidewave.example/"))
        self.assertEqual(got["rows"], self.SLIDEWAVE_ROWS)
        self.assertTrue(got["frameDisabled"])   # modal over the frame, which gets it back
        self.assertTrue(got["frameEnabled"])

    def test_keyboard_edits_reach_the_published_html_on_ok(self):
        # OK takes the font size still being typed.
        got = self.properties("slidewave.dll", "select BackgroundColor", "type #1e3a5f", "key return", "rows",
                              "select FontSize", "type 14", "ok", "publish " + windows_path(self.dir))
        self.assertEqual(dict(map(tuple, got["rows"]))["BackgroundColor"], "#1E3A5F")
        self.assertEqual(got["values"], {"$backgroundcolor$": "#1E3A5F", "$fontsize$": "14"})
        self.assertIn("background-color:#1E3A5F;", got["html"])
        self.assertNotIn("#000000", got["html"])
        css = read_file(self.path("slidewave.css")).decode("latin-1")
        self.assertIn("background-color:#1E3A5F;", css)
        self.assertIn("font-size:14;", css)

    def test_cancel_leaves_the_values_and_the_html(self):
        before = pwhost("slidewave.dll", "--set", "$backgroundcolor$=#123456", "html", "body")[1].decode("latin-1")
        got = self.properties("slidewave.dll", "select BackgroundColor", "type #FF0000", "key return",
                              "set FontSize=14", "cancel", values=["$backgroundcolor$=#123456"])
        self.assertEqual(got["values"], {"$backgroundcolor$": "#123456"})
        self.assertEqual(got["html"], before)

    def test_values_are_copied_pair_by_pair_both_ways(self):
        # "$k17$", "$k28$" and "$backgroundcolor$" share a hash bucket. The
        # run time's copies reverse a bucket's order each time, so the keys
        # the object had come back in their order and the new one goes last.
        got = self.properties("slidewave.dll", "set BackgroundColor=#102030", "ok",
                              values=["$k17$=1", "$k28$=2"])
        self.assertEqual(list(got["values"].items()),
                         [("$k28$", "2"), ("$k17$", "1"), ("$backgroundcolor$", "#102030")])

    def test_without_properties_ok_keeps_the_map_and_the_template_caption(self):
        got = self.properties("slidewave_test_usediv_01.dll", "rows", "ok", values=["$x$=y"])
        self.assertEqual((got["caption"], got["developer"], got["website"], got["rows"]), ("Properties", "", "", []))
        self.assertEqual(got["values"], {"$x$": "y"})
        self.assertEqual(got["html"], "<p>01</p>")


def setUpModule():
    # One wine server for the whole run (it ends a few seconds after the
    # last test); starting one per call would dominate the run time. The
    # first program after a fresh start may wait for the prefix to be
    # brought up to date, so a throw-away run comes first.
    quiet = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    subprocess.run(["wineserver", "-p5"], env=wine_env(), timeout=60, **quiet)
    subprocess.run(["wine", os.path.join(BIN, "pwhost.exe")], env=wine_env(), timeout=300, **quiet)


def main():
    global BIN, SOURCE, PWEXT
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", required=True)
    parser.add_argument("--source", required=True)
    parser.add_argument("--pwext", required=True)
    args, rest = parser.parse_known_args()
    BIN, SOURCE, PWEXT = os.path.abspath(args.bin), os.path.abspath(args.source), args.pwext
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)


if __name__ == "__main__":
    main()
