"""Measures the tool against the contract floor and prints the tables (Markdown).

    python3 bench/run.py --build DIR [--quick] [--sizes 10000,100000,300000] [--pairs 7]

DIR is a build with ZYM_BUILD_BENCHMARKS on and its target `benchmarks` built (scripts/bench.sh
does both). For each size N a type map of N types goes into the bench root, and the tool and
FloorWork, the contract floor, run in alternating pairs: runs of one program in a row drift with
the state of memory. The shipped type map goes through the normal build of the tool, in pairs
with FloorStart, a process linked like the tool that starts and exits. The container benchmark
runs last. --quick runs N = 100 once and the shipped map in 13 pairs: a check that all still runs.
"""
import argparse
import json
import os
import random
import shutil
import statistics
import subprocess
import sys

TYPE_MAP = "LuaContainerPrimitives.xml"
BANNER = os.path.join("tools", "Generator", "zym_copyright.txt")
REPORT = None  # where the launcher reports each run


def type_map(count, seed=2026):
    """A map like a library's: one to three namespace components, a third of the types with a
    header of their own, a fifth not POD, one in fifty named String."""
    rng = random.Random(seed)
    parts = ["geo", "render", "physics", "audio", "ui", "net", "anim", "math", "io", "scene", "mesh", "nav"]
    stems = ["Vec", "Matrix", "Quat", "Transform", "Color", "Ray", "Plane", "Light", "Camera", "Joint", "Pose", "Key"]
    rows = ['<?xml version="1.0" encoding="UTF-8"?>']
    for index in range(count):
        namespace = "::".join([rng.choice(["zym", "zymData", "app", "engine"])] +
                              rng.sample(parts, rng.choice((0, 0, 1, 1, 2))))
        name = "String" if rng.random() < 0.02 else "%s%d" % (rng.choice(stems), index)
        attributes = 'name="%s" namespace="%s"' % (name, namespace)
        if rng.random() < 0.2:
            attributes += ' isPOD="false"'
        if rng.random() < 1 / 3:
            attributes += ' include="%s/%s.h"' % (namespace.replace("::", "/"), name)
        rows.append("<Type %s />" % attributes)
    return ("\n".join(rows) + "\n").encode("ascii")


def run(launch, argv, stdout=os.devnull):
    """One run through the launcher: wall, CPU (user + system) in seconds, peak RSS in bytes."""
    with open(stdout, "w") as output:
        subprocess.run([launch, REPORT] + argv, stdout=output, check=True)
    with open(REPORT) as report:
        wall, user, system, rss, status = map(int, report.read().split())
    if not os.WIFEXITED(status) or os.WEXITSTATUS(status) != 0:
        sys.exit("error: %s ended with status %d" % (" ".join(argv), status))
    return wall * 1e-9, (user + system) * 1e-9, rss * 1024


def pairs(launch, first, second, count):
    """`count` runs of each of two programs, alternating; the runs of each. Each program's targets
    stay in place between its runs, as a rebuild leaves them: a target unlinked after a run would
    give its pages back to this virtual machine's host, and the next program to write would pay for
    getting them again, a cost that follows the order of the runs, not the program."""
    runs = ([], [])
    for _ in range(count):
        for argv, series in zip((first, second), runs):
            series.append(run(launch, argv))
    return runs


def median(runs, field):
    return statistics.median(r[field] for r in runs)


def measure(paths, work, count, pair_count):
    typemap = os.path.join(paths["root"], TYPE_MAP)
    with open(typemap, "wb") as handle:
        handle.write(type_map(count))
    outputs = [os.path.join(work, name) for name in ("tool.pkg", "tool.h", "floor.pkg", "floor.h")]
    report = os.path.join(work, "tool.out")
    run(paths["launch"], [paths["tool"]] + outputs[:2], report)
    with open(report) as text:
        if text.read() != ("Updated lua container declarations in file %s\n"
                           "Updated lua container typedefs in file %s\n") % tuple(outputs[:2]):
            sys.exit("error: the tool did not write both files for N = %d" % count)
    sizes = [os.path.getsize(path) for path in outputs[:2]]
    floor = [paths["floor"], typemap, outputs[2], str(sizes[0]), outputs[3], str(sizes[1])]
    tool, contract = pairs(paths["launch"], [paths["tool"]] + outputs[:2], floor, pair_count)
    written = os.path.getsize(typemap) + sum(sizes)
    return ["%d" % count, "%.1f" % (written / 2 ** 20),
            "%.0f [%.0f, %.0f]" % tuple(f(r[0] for r in tool) * 1e3 for f in (statistics.median, min, max)),
            "%.0f" % (median(contract, 0) * 1e3),
            "**%.2f**" % (median(tool, 0) / median(contract, 0)), "%.2f" % (median(tool, 1) / median(contract, 1)),
            "%.2f" % (median(tool, 2) / written)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--sizes", default="10000,100000,300000")
    parser.add_argument("--pairs", type=int, default=7)
    arguments = parser.parse_args()
    build = os.path.abspath(arguments.build)
    with open(os.path.join(build, "bench", "bench_paths.json")) as config:
        paths = json.load(config)
    sizes = [100] if arguments.quick else [int(size) for size in arguments.sizes.split(",")]
    pair_count = 1 if arguments.quick else arguments.pairs

    os.chdir(paths["source"])  # the shipped tool searches the directory it runs in
    os.makedirs(os.path.join(paths["root"], os.path.dirname(BANNER)), exist_ok=True)
    shutil.copyfile(paths["banner"], os.path.join(paths["root"], BANNER))
    work = os.path.join(build, "bench", "work")
    os.makedirs(work, exist_ok=True)
    global REPORT
    REPORT = os.path.join(work, "launch.report")
    with open("/proc/loadavg") as load:
        print("%d cores, load average %s; %d alternating pairs per row, medians.\n" %
              (os.cpu_count(), " ".join(load.read().split()[:3]), pair_count))

    print("| types | map + outputs MiB | tool wall ms [min, max] | contract wall ms | wall tool/contract "
          "| CPU tool/contract | peak RSS / (map + outputs) |\n|---|---|---|---|---|---|---|")
    for count in sizes:
        print("| " + " | ".join(measure(paths, work, count, pair_count)) + " |", flush=True)

    shipped = [os.path.join(work, "shipped.pkg"), os.path.join(work, "shipped.h")]
    tool, start = pairs(paths["launch"], [paths["shipped_tool"]] + shipped, [paths["start"]], 3 * pair_count + 10)
    print("\nShipped type map: %.2f ms of wall time above the process that starts and exits (median %.2f ms)."
          % ((median(tool, 0) - median(start, 0)) * 1e3, median(tool, 0) * 1e3))
    print()
    sys.stdout.flush()
    subprocess.run([paths["containers"], "1000" if arguments.quick else "100000"], check=True)


if __name__ == "__main__":
    main()
