#!/usr/bin/env python3
"""Cross-checks pwext's host commands (html, links, record, site, info,
publish) against the independent engine model on generated definitions and
host inputs. Every case runs in its own temporary folder.

usage: compare_engine.py PWEXT [COUNT] [SEED]
"""
import json
import os
import random
import subprocess
import sys
import tempfile

import engine_model
import xslt_model
from definition_generator import Case


def run(pwext, args, cwd):
    return subprocess.run([pwext] + args, capture_output=True, cwd=cwd, check=False)


def random_record(rng, case):
    keys = [v for v, _ in case.variables if v] + [b"$unknown$", b"", b"k\xe9"]
    pairs = []
    for _ in range(rng.randint(0, 6)):
        value = rng.choice([b"", b"v", b"#00FF00", b"x" * 254, b"y" * 255, b"z" * 300, b"w" * 65534, b"q" * 70000])
        pairs.append((rng.choice(keys), value))
    data = engine_model.write_record(rng.choice([100, 7, -1]), rng.randint(-5, 5), pairs)
    if rng.random() < 0.15:
        data = data[:rng.randrange(len(data))]
    elif rng.random() < 0.05:
        data += b"\x00"
    return data


class Checker:
    def __init__(self, pwext, rng):
        self.pwext = pwext
        self.rng = rng
        self.failures = 0
        self.checks = 0

    def mismatch(self, what, detail, want, got):
        self.failures += 1
        print("MISMATCH", what, detail, "\n  want", repr(want)[:400], "\n  got ", repr(got)[:400])

    def expect(self, what, detail, want, got):
        self.checks += 1
        if want != got:
            self.mismatch(what, detail, want, got)

    def run_case(self, n, folder):
        rng = self.rng
        case = Case(rng)
        cwd = os.path.join(folder, "case%d" % n)
        os.makedirs(cwd)
        with open(os.path.join(cwd, "definition.xml"), "wb") as f:
            f.write(case.definition)
        host = [b"--definition", b"definition.xml"]
        record = random_record(rng, case) if rng.random() < 0.3 else None
        if record is not None:
            with open(os.path.join(cwd, "record.bin"), "wb") as f:
                f.write(record)
            host += [b"--record", b"record.bin"]
        for variable, value in case.sets:
            host += [b"--set", variable + b"=" + value]
        if case.site is not None:
            with open(os.path.join(cwd, "site.xml"), "wb") as f:
                f.write(case.site)
            host += [b"--site", b"site.xml"]
        if case.images is not None:
            host += [b"--images"] + case.images

        def model():
            m = engine_model.Engine(case.definition)
            if record is not None and m.load_record(record) is not None:
                return None
            for variable, value in case.sets:
                m.values.set(variable, value)
            if case.images is not None:
                variable = first_image_variable(m)
                if variable is None:   # pwext refuses --images then
                    return None
                m.values.set(variable, engine_model.write_image_list(case.images))
            if case.site is not None:
                m.site.parse(case.site)
            m.update_html(0)
            return m

        tag = "case %d" % n

        def check(args, want):
            got = run(self.pwext, args + host, cwd)
            if want is None:
                self.expect("exit", tag + " " + repr(args), True, got.returncode == 1 and got.stdout == b"")
            else:
                self.expect(repr(args), tag, (0, want), (got.returncode, got.stdout))
            return got

        context = rng.choice([b"", b"pics", b"pics/", b"a/b//", b"caf\xe9"])
        m = model()
        check([b"html", b"body"], m and (m.update_html(0) or m.cache))
        m = model()
        check([b"html", b"body", b"--publish", b"--context", context], m and m.get_html(context))
        m = model()
        check([b"html", b"head"], m and m.header_html())
        check([b"html", b"tail"], m and m.start_of_page_html())
        self.check_links(case, model, host, cwd, tag)
        object_id = rng.randint(-3, 1000)
        m = model()
        if m:
            m.object_id = object_id
        check([b"record", b"write", b"--id", b"%d" % object_id], m and m.store_record())
        if record is not None:
            self.check_record_read(record, cwd, tag)
        if case.site is not None:
            self.check_site(case, model, host, cwd, tag)
        self.check_info(case, cwd, tag)
        if rng.random() < 0.5:
            self.check_publish(case, model, host, cwd, tag)

    def check_links(self, case, model, host, cwd, tag):
        rng = self.rng
        rewrites = [(rng.randint(-1, case.link_count), rng.choice([b"new.html", b"", b"a&b \xe9"]))
                    for _ in range(rng.randint(0, 3))]
        args = [b"links"]
        for index, text in rewrites:
            args += [b"--set-url", b"%d=" % index + text]
        got = run(self.pwext, args + host, cwd)
        m = model()
        if m is None:
            self.expect("links exit", tag, 1, got.returncode)
            return
        for index, text in rewrites:
            m.set_url(index, text)
        count = m.url_count()
        text = lambda b: b.decode("latin-1")
        want = [["count", count], ["urls", [text(m.get_url(i)) for i in range(count)]],
                ["values", [[text(k), text(v)] for k, v in m.values.items()]]]
        try:
            parsed = json.loads(got.stdout.decode("ascii"), object_pairs_hook=lambda p: [list(x) for x in p])
        except ValueError:
            parsed = got
        self.expect("links", tag + " " + repr(rewrites), want, parsed)

    def check_record_read(self, record, cwd, tag):
        got = run(self.pwext, [b"record", b"read", b"record.bin"], cwd)
        parsed, _ = engine_model.read_record(record)
        if parsed is None or parsed["length"] != len(record):
            self.expect("record read exit", tag, 1, got.returncode)
            return
        want = {"version": parsed["version"], "id": parsed["id"],
                "values": [[k.decode("latin-1"), v.decode("latin-1")] for k, v in parsed["pairs"]]}
        self.expect("record read", tag, (0, want), (got.returncode, json.loads(got.stdout or b"null")))

    def check_site(self, case, model, host, cwd, tag):
        name = self.rng.choice(case.site_names + [b"missing"]).swapcase() if self.rng.random() < 0.5 else \
            self.rng.choice(case.site_names + [b"missing"])
        for args in ([b"site", b"site.xml", b"--current"], [b"site", b"site.xml", b"--page", name]):
            got = run(self.pwext, args + host, cwd)
            m = model()
            if m is None:
                self.expect("site exit", tag, 1, got.returncode)
                continue
            found = m.find_current_page() if args[2] == b"--current" else m.find_page_by_name(name)
            if found is None:
                self.expect(repr(args), tag, (1, b""), (got.returncode, got.stdout))
            else:
                want = {"name": (found.attrs.get(b"name") or b"").decode("latin-1"),
                        "url": (found.attrs.get(b"url") or b"").decode("latin-1")}
                self.expect(repr(args), tag, (0, want), (got.returncode, json.loads(got.stdout or b"null")))

    def check_info(self, case, cwd, tag):
        got = run(self.pwext, [b"info", b"--definition", b"definition.xml"], cwd)
        m = engine_model.Engine(case.definition)
        lines = [line.strip() for line in got.stdout.decode("latin-1").splitlines()]
        want = ["minimum size  %d x %d" % (m.min_width, m.min_height), "use DIV       " + ("yes" if m.use_div else "no"),
                "render method %d" % m.render_method]
        have = [next((line for line in lines if line.startswith(w[:10])), "")[:len(w)] for w in want]
        self.expect("info", tag, want, have)

    def check_publish(self, case, model, host, cwd, tag):
        rng = self.rng
        for path in case.paths:
            if rng.random() < 0.9:
                full = os.path.join(cwd, os.fsdecode(path))
                os.makedirs(os.path.dirname(full), exist_ok=True)
                if not os.path.isdir(full):
                    with open(full, "wb") as f:
                        f.write(b"picture " + path)
        output = rng.choice([b"site", b"site/", b"Site", os.fsencode(cwd) + b"/abs/site/", b"out dir"])
        images = rng.choice([output.rstrip(b"/") + b"/images", output.rstrip(b"/") + b"/Images/",
                             b"pics2", output.rstrip(b"/").lower() + b"/img//", output + b"/x/images"])
        args = [b"publish", output, images]
        page = rng.random() < 0.5
        geometry, context = (b"0", b"0", b"800", b"300"), None
        if page:
            args += [b"--page", b"index.html"]
            if rng.random() < 0.3:
                geometry = tuple(b"%d" % rng.randint(-5, 999) for _ in range(4))
                args += [b"--geometry", b",".join(geometry)]
            if rng.random() < 0.3:
                context = rng.choice([b"", b"elsewhere", b"x/"])
                args += [b"--context", context]
        # Publishing again finds the folders made and overwrites every file.
        for _ in range(2 if rng.random() < 0.2 else 1):
            self.publish_once(model, host, cwd, tag, args, page, geometry, context)

    def publish_once(self, model, host, cwd, tag, args, page, geometry, context):
        output, images = args[1], args[2]
        m = model()
        if m is None:
            self.expect("publish exit", tag, 1, run(self.pwext, args + host, cwd).returncode)
            return
        fs = engine_model.ModelFileSystem(cwd)
        out = output if output.endswith(b"/") else output + b"/"
        # pwext refers to pictures through the image folder's path below the
        # output folder, however the two are spelt.
        reach = os.path.relpath(fs.real(images), fs.real(output))
        if not reach.startswith(".."):
            m.page_context = os.fsencode(reach)
        refusal = m.copy_files(fs, out, images)
        if refusal:
            got = run(self.pwext, args + host, cwd)
            self.expect("publish refused", tag + " " + refusal, (1, b""), (got.returncode, got.stdout))
            return
        engine_model.create_directory_path(fs, out)
        engine_model.create_directory_path(fs, images)
        fs.run_plan()
        if page:
            target = out + b"index.html"
            fs.files[fs.real(target)] = host_page(m, m.page_context if context is None else context, geometry)
            fs.lines.append(b"wrote " + target + b"\n")
        want = (1 if fs.failures else 0, b"".join(fs.lines))
        got = run(self.pwext, args + host, cwd)
        self.expect("publish", tag + " " + repr(args), want, (got.returncode, got.stdout))
        for path, content in fs.files.items():
            try:
                with open(path, "rb") as f:
                    on_disk = f.read()
            except OSError:
                on_disk = None
            self.expect("published file", tag + " " + path, content, on_disk)


def check_builtin(checker, folder):
    """The built-in definition: head, tail, design body and its payload files
    with the style sheet's variables filled in."""
    cwd = os.path.join(folder, "builtin")
    os.makedirs(cwd)
    definition = run(checker.pwext, [b"definition"], cwd).stdout
    sets = [(b"$backgroundcolor$", b"#12AB00"), (b"$textcolor$", b"#FFFFFF"), (b"$fontsize$", b"13"),
            (b"$fontname$", b"Caf\xe9 & <Sans>")]
    host = [b"--set" if i % 2 == 0 else k + b"=" + v for k, v in sets for i in range(2)]
    with open(os.path.join(cwd, "a b.jpg"), "wb") as f:
        f.write(b"jpeg")
    m = engine_model.Engine(definition)
    for k, v in sets:
        m.values.set(k, v)
    m.values.set(b"$images$", engine_model.write_image_list([b"a b.jpg", b"missing.jpg"]))
    for part, want in ((b"head", m.header_html()), (b"tail", m.start_of_page_html())):
        got = run(checker.pwext, [b"html", part] + host, cwd)
        checker.expect("built-in html " + part.decode(), "", (0, want), (got.returncode, got.stdout))
    fs = engine_model.ModelFileSystem(cwd)
    m.copy_files(fs, b"site/", b"site/images")
    engine_model.create_directory_path(fs, b"site/")
    engine_model.create_directory_path(fs, b"site/images")
    fs.run_plan()
    got = run(checker.pwext, [b"publish", b"site", b"site/images", b"--images", b"a b.jpg", b"missing.jpg"] + host, cwd)
    checker.expect("built-in publish", "", (1, b"".join(fs.lines)), (got.returncode, got.stdout))
    for path, content in fs.files.items():
        with open(path, "rb") as f:
            checker.expect("built-in published file", path, content, f.read())


def check_big_record(checker, folder):
    """More than 65534 pairs: the count escape, and the map's order over many keys."""
    cwd = os.path.join(folder, "big-record")
    os.makedirs(cwd)
    pairs = [(b"k%d" % i, b"v" * (i % 300)) for i in range(65536)]
    data = engine_model.write_record(7, 9, pairs)
    with open(os.path.join(cwd, "record.bin"), "wb") as f:
        f.write(data)
    m = engine_model.Engine(run(checker.pwext, [b"definition"], cwd).stdout)
    m.load_record(data)
    m.object_id = 9
    got = run(checker.pwext, [b"record", b"write", b"--record", b"record.bin", b"--id", b"9"], cwd)
    checker.expect("big record", "", (0, m.store_record()), (got.returncode, got.stdout))


def first_image_variable(m):
    for prop in engine_model.properties_of(m.doc.root):
        variable, kind, _ = m.rule(prop)
        if kind == 6 and variable:
            return variable
    return None


def host_page(m, context, geometry):
    """The page pwext's publish --page writes around the object's HTML, with
    the geometry variables filled in as a host does."""
    body = m.get_html(context)
    for name, value in zip((b"$LEFT$", b"$TOP$", b"$WIDTH$", b"$HEIGHT$", b"$Z_INDEX$"), geometry + (b"1",)):
        body = body.replace(name, value)
    return (b"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n<html>\r\n<head>\r\n"
            b"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\r\n"
            b"<title>" + m.toolbar_text + b"</title>\r\n" + m.header_html() + b"\r\n</head>\r\n<body>\r\n" +
            m.start_of_page_html() + b"\r\n" + body + b"\r\n</body>\r\n</html>\r\n")


def main():
    pwext = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    checker = Checker(os.path.abspath(pwext), random.Random(seed))
    keep = os.environ.get("PW_MODEL_KEEP")  # a folder to keep the cases in, for debugging
    with tempfile.TemporaryDirectory(prefix="pw-engine-model-") as scratch:
        folder = keep or scratch
        os.makedirs(folder, exist_ok=True)
        check_builtin(checker, folder)
        check_big_record(checker, folder)
        for n in range(count):
            try:
                checker.run_case(n, folder)
            except (xslt_model.Unsupported, RecursionError) as e:
                print("case %d outside the model: %s" % (n, e))
                checker.failures += 1
    print("engine model (seed %d): %d checks, %d failed" % (seed, checker.checks, checker.failures))
    return 1 if checker.failures else 0


if __name__ == "__main__":
    sys.exit(main())
