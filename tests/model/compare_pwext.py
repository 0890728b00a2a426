#!/usr/bin/env python3
"""Cross-checks pwext's XML, entity and Base64 commands against the
independent model in xml_model.py on generated inputs.

usage: compare_pwext.py PWEXT [COUNT] [SEED]
"""
import json
import random
import subprocess
import sys

import xml_model

PIECES = [b"<", b">", b"/", b"?", b"!", b"=", b'"', b"'", b" ", b"\t", b"\r\n", b"&", b";", b"#",
          b"amp;", b"lt;", b"GT;", b"#65;", b"#x41;", b"# 66", b"nbsp;", b"A", b"b", b"CATEGORY",
          b"<?xml version=\"1.0\"?>", b"<!-- c -->", b"</", b"/>", b"<R", b"<A x=\"1\">", b"</A>",
          b"\x00", b"\xe9", b"\xff", b"name=\"v\"", b" = ", b"TWFu", b"=="]


def generated(rng):
    if rng.random() < 0.5:
        return b"".join(rng.choice(PIECES) for _ in range(rng.randint(0, 60)))
    # A plausible document with noise.
    out = [b'<?xml version="1.0" encoding="UTF-8"?>\r\n<ROOT a="1" b="two" >']
    for _ in range(rng.randint(0, 6)):
        name = rng.choice([b"A", b"b", b"Item", b"x-y", b"N\xe9"])
        attrs = b" ".join(b'%s="%s"' % (rng.choice([b"k", b"name", b"type", b"v\xe9"]),
                                      rng.choice([b"", b"1", b"a b", b"&amp;"])) for _ in range(rng.randint(0, 3)))
        out.append(b"\t<" + name + (b" " + attrs if attrs else b"") + b">")
        out.append(rng.choice([b"text", b"&lt;x&gt;", b"", b"  spaced  ", b"a&b", b"&#300;"]))
        if rng.random() < 0.3:
            out.append(b"<C/>")
        out.append(b"</" + name + b">\r\n")
        if rng.random() < 0.1:
            out.append(rng.choice(PIECES))
    out.append(b"</ROOT>\r\n")
    return b"".join(out)


def run(pwext, args, data):
    return subprocess.run([pwext] + args, input=data, capture_output=True, check=False)


def main():
    pwext = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 300
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    failures = 0
    for n in range(count):
        data = generated(rng)
        doc = xml_model.Document()
        doc.parse(data)
        checks = [
            (["xml", "print"], doc.get_xml()),
            (["xml", "escape"], xml_model.escape(data, False)),
            (["xml", "escape", "--quotes"], xml_model.escape(data, True)),
        ]
        for args, want in checks:
            got = run(pwext, args, data).stdout
            if got != want:
                failures += 1
                print("MISMATCH", args, repr(data)[:300], "\n want", repr(want)[:300], "\n got ", repr(got)[:300])
        got = json.loads(run(pwext, ["xml", "json"], data).stdout.decode("utf-8"))
        want = xml_model.tree_json(doc.root)
        if got != want:
            failures += 1
            print("MISMATCH json", repr(data)[:300])
        capacity = rng.randint(0, len(data) + 2)
        ok, length, stored = xml_model.base64_decode(data, capacity)
        got = json.loads(run(pwext, ["base64", "decode", "--json", "--capacity", str(capacity)], data).stdout)
        want = {"ok": ok, "length": length, "bytes": stored.decode("latin-1")}
        if got != want:
            failures += 1
            print("MISMATCH base64", capacity, repr(data)[:200], got, want)
    print(f"model: {count - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
