#!/usr/bin/env python3
"""Summarises the extension engine's benchmarks from pwbench's JSON output:
each figure as a multiple of one plain parse of the built-in definition, and
the cost per image between the largest and smallest image counts."""
import json
import sys


def main(path):
    with open(path) as f:
        runs = {b["name"]: b for b in json.load(f)["benchmarks"] if b.get("run_type", "iteration") == "iteration"}
    base = runs.get("BM_Engine_ParseDefinition")
    if not base:
        print("no engine benchmarks in %s" % path)
        return 0
    parse = base["cpu_time"]
    unit = base["time_unit"]
    print("\nextension engine (CPU time; 1.0 = one parse of the built-in definition, %.1f %s)" % (parse, unit))
    print("%-34s %14s %10s" % ("benchmark", "time (%s)" % unit, "x parse"))
    for name, run in runs.items():
        if name.startswith("BM_Engine_"):
            print("%-34s %14.1f %10.1f" % (name[len("BM_Engine_"):], run["cpu_time"], run["cpu_time"] / parse))
    for family in ("UpdateHtmlDesign", "GetHtmlPublished", "CopyFiles"):
        sizes = sorted(int(n.rsplit("/", 1)[1]) for n in runs if n.startswith("BM_Engine_%s/" % family))
        if len(sizes) < 3:
            continue
        time = {s: runs["BM_Engine_%s/%d" % (family, s)]["cpu_time"] for s in sizes}
        small, middle, large = sizes[1], sizes[-2], sizes[-1]
        per_image = (time[large] - time[sizes[0]]) / (large - sizes[0])
        growth = (time[large] - time[sizes[0]]) / max(time[middle] - time[sizes[0]], 1e-9)
        print("%-34s %.2f %s per image; %d -> %d images costs %.1fx more (linear: %.1fx)"
              % (family, per_image, unit, middle, large, growth, (large - sizes[0]) / (middle - sizes[0])))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else "build/bench/pwbench.json"))
