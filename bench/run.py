"""Runs the benchmarks of a build and prints their tables (Markdown).

    python3 bench/run.py --build DIR [--quick] [--sizes 100,10000] [--reps 5]

DIR is a build of this project with ZYM_BUILD_BENCHMARKS on and its target
`benchmarks` built (scripts/bench.sh does both).  For each size N it writes a
type map of N types into the bench root and runs, in turn and several times:

  tool   the tool, writing both files
  floor  FloorWork: the same map loaded and walked twice, the same bytes written
  start  FloorStart: a process linked like the tool that starts and exits

and reports wall time, CPU time (user + system) and peak resident memory as
median [min, max], then the ratios tool/floor and the cost per type.  The shipped
type map goes through the normal build of the tool against `start`, and the
container benchmark (Google Benchmark) runs last when the build has it.

--quick runs N = 100 once, the shipped map once and the containers briefly: a
check that everything still runs, not a measurement.
"""
import argparse
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_type_map  # noqa: E402

FULL_SIZES = [100, 10000, 100000, 300000]
PER_TYPE_BASE = 10000
TYPE_MAP_NAME = "LuaContainerPrimitives.xml"
BANNER_PATH = os.path.join("tools", "Generator", "zym_copyright.txt")


class Failure(Exception):
    pass


# ---------------------------------------------------------------------------------------------
# One process, measured

LAUNCH = None


def run_process(argv, stdout_path=os.devnull):
    """Runs argv to its end through the launcher: (wall, user CPU, system CPU) in seconds, peak RSS bytes."""
    report = subprocess.run([LAUNCH, stdout_path] + argv, stdout=subprocess.PIPE, check=True).stdout.split()
    wall, user, system, rss, status = (int(field) for field in report)
    if not os.WIFEXITED(status) or os.WEXITSTATUS(status) != 0:
        raise Failure("%s ended with status %d" % (" ".join(argv), status))
    return wall * 1e-9, user * 1e-9, system * 1e-9, rss * 1024


class Series:
    """Repeated runs of one program on one input."""

    def __init__(self):
        self.wall, self.user, self.system, self.cpu, self.rss = [], [], [], [], []

    def add(self, sample):
        wall, user, system, rss = sample
        self.wall.append(wall)
        self.user.append(user)
        self.system.append(system)
        self.cpu.append(user + system)
        self.rss.append(rss)

    @staticmethod
    def median(values):
        return statistics.median(values)


def remove(*paths):
    for path in paths:
        if os.path.exists(path):
            os.unlink(path)


# ---------------------------------------------------------------------------------------------
# Formatting

def ms(seconds):
    return "%.3g" % (seconds * 1e3) if seconds < 0.01 else "%.1f" % (seconds * 1e3)


def spread(values, unit=ms):
    return "%s [%s, %s]" % (unit(statistics.median(values)), unit(min(values)), unit(max(values)))


def mib(count):
    return "%.1f" % (count / 1048576.0)


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "|".join("---" for _ in header) + "|"]
    lines += ["| " + " | ".join(str(cell) for cell in row) + " |" for row in rows]
    return "\n".join(lines)


def machine():
    model = "unknown CPU"
    with open("/proc/cpuinfo") as info:
        for line in info:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    memory = 0
    with open("/proc/meminfo") as info:
        for line in info:
            if line.startswith("MemTotal:"):
                memory = int(line.split()[1]) * 1024
    return "%d cores (nproc), %s, %.1f GiB memory" % (os.cpu_count(), model, memory / 2.0 ** 30)


def load():
    with open("/proc/loadavg") as average:
        return " ".join(average.read().split()[:3])


# ---------------------------------------------------------------------------------------------
# The tool against its floor

def measure_size(paths, work, count, reps):
    root = paths["root"]
    type_map = os.path.join(root, TYPE_MAP_NAME)
    map_bytes = make_type_map.write_type_map(type_map, count)

    package, typedefs = os.path.join(work, "tool.pkg"), os.path.join(work, "tool.h")
    floor_package, floor_typedefs = os.path.join(work, "floor.pkg"), os.path.join(work, "floor.h")

    # A first run checks the tool and finds how many bytes the floor has to write.
    report = os.path.join(work, "tool.out")
    run_process([paths["tool"], package, typedefs], report)
    with open(report) as text:
        expected = "Updated lua container declarations in file %s\nUpdated lua container typedefs in file %s\n"
        if text.read() != expected % (package, typedefs):
            raise Failure("the tool did not write both files for N = %d" % count)
    output_bytes = (os.path.getsize(package), os.path.getsize(typedefs))
    remove(package, typedefs, report)

    tool, floor, start = Series(), Series(), Series()
    floor_argv = [paths["floor_work"], type_map, floor_package, str(output_bytes[0]), floor_typedefs,
                  str(output_bytes[1])]
    for _ in range(reps):
        # Outputs are removed before the next run, so no run pays for another's pages.
        tool.add(run_process([paths["tool"], package, typedefs]))
        remove(package, typedefs)
        floor.add(run_process(floor_argv))
        remove(floor_package, floor_typedefs)
        start.add(run_process([paths["floor_start"]]))
    return {"count": count, "map_bytes": map_bytes, "output_bytes": sum(output_bytes),
            "tool": tool, "floor": floor, "start": start}


def measure_shipped(paths, work, reps):
    type_map = os.path.join(paths["shipped_root"], "data", TYPE_MAP_NAME)
    if not os.path.isfile(os.path.join(paths["shipped_root"], TYPE_MAP_NAME)) and not os.path.isfile(type_map):
        raise Failure("no shipped type map under %s" % paths["shipped_root"])
    package, typedefs = os.path.join(work, "shipped.pkg"), os.path.join(work, "shipped.h")
    tool, start = Series(), Series()
    run_process([paths["shipped_tool"], package, typedefs])
    for _ in range(reps):
        tool.add(run_process([paths["shipped_tool"], package, typedefs]))
        start.add(run_process([paths["floor_start"]]))
    output_bytes = os.path.getsize(package) + os.path.getsize(typedefs)
    remove(package, typedefs)
    return {"tool": tool, "start": start, "output_bytes": output_bytes}


def tool_tables(results, shipped):
    runs = []
    for result in results:
        for name in ("tool", "floor", "start"):
            series = result[name]
            runs.append(["%d" % result["count"], name, spread(series.wall), ms(statistics.median(series.user)),
                         ms(statistics.median(series.system)), mib(statistics.median(series.rss)),
                         mib(result["output_bytes"]) if name != "start" else "0"])
    for name in ("tool", "start"):
        series = shipped[name]
        runs.append(["shipped map", name, spread(series.wall), ms(statistics.median(series.user)),
                     ms(statistics.median(series.system)), mib(statistics.median(series.rss)),
                     "%.3f" % (shipped["output_bytes"] / 1048576.0) if name == "tool" else "0"])

    base = next((r for r in results if r["count"] == PER_TYPE_BASE), None)

    def per_type(result, name, measure="wall"):
        extra = statistics.median(getattr(result[name], measure)) - statistics.median(getattr(result["start"], measure))
        return extra / result["count"]

    targets = []
    for result in results:
        tool, floor = result["tool"], result["floor"]
        inputs = result["output_bytes"] + result["map_bytes"]
        row = ["%d" % result["count"], mib(result["map_bytes"]), mib(result["output_bytes"]),
               "%.2f" % (Series.median(tool.wall) / Series.median(floor.wall)),
               "%.2f" % (Series.median(tool.cpu) / Series.median(floor.cpu)),
               "%.2f" % (Series.median(tool.rss) / inputs),
               "%.3f" % (per_type(result, "tool") * 1e6)]
        # The kernel splits CPU time into user and system by its clock ticks: a few ms apart.
        for measure in ("user", "system"):
            row.append("%.3f" % (per_type(result, "tool", measure) * 1e6) if result["count"] >= 10000 else "-")
        row.append("%.3f" % (per_type(result, "floor") * 1e6))
        row.append("%.2f" % (per_type(result, "tool") / per_type(base, "tool")) if base else "-")
        targets.append(row)

    above = Series.median(shipped["tool"].wall) - Series.median(shipped["start"].wall)
    return "\n\n".join([
        "Runs: wall time in ms, median [min, max]; user and system CPU time in ms, medians; peak RSS and "
        "bytes written in MiB.\n\n" +
        table(["N", "program", "wall", "user", "system", "peak RSS", "written"], runs),
        "Ratios (medians). Cost per type: (time - time of start) / N, in wall time, and in the tool's user "
        "and system CPU time.\n\n" +
        table(["N", "map MiB", "outputs MiB", "wall tool/floor", "CPU tool/floor", "RSS / (outputs + map)",
               "tool us/type", "tool user us/type", "tool system us/type", "floor us/type",
               "tool us/type vs N=%d" % PER_TYPE_BASE], targets),
        "Shipped type map: the tool takes %.3f ms of wall time above the process that starts and exits." %
        (above * 1e3)])


# ---------------------------------------------------------------------------------------------
# Containers

def container_table(program, quick):
    arguments = [program, "--benchmark_format=json"]
    if quick:
        arguments += ["--benchmark_filter=/1000/", "--benchmark_min_time=0.01"]
    else:
        arguments += ["--benchmark_repetitions=5", "--benchmark_report_aggregates_only=true"]
    with tempfile.NamedTemporaryFile("w+", suffix=".json") as output:
        run_process(arguments, output.name)
        output.seek(0)
        report = json.load(output)

    found = {}
    for entry in report["benchmarks"]:
        if entry.get("run_type") == "aggregate" and entry.get("aggregate_name") != "median":
            continue
        name, count, kind = entry["run_name"].split("/")
        found[(name, int(count), int(kind))] = entry

    rows = []
    for ours, theirs in (("HashSetInsert", "UnorderedSetInsert"), ("VectorPushBack", "StdVectorPushBack")):
        for (name, count, kind) in sorted(key for key in found if key[0] == ours):
            mine, other = found[(ours, count, kind)], found.get((theirs, count, kind))
            if other is None:
                continue
            rows.append([ours.replace("Insert", "").replace("PushBack", ""), "%d %s" % (
                count, "include paths" if kind == 0 else "random keys"),
                "%.2f" % (mine["items_per_second"] / 1e6), "%.2f" % (other["items_per_second"] / 1e6),
                "%.2f" % (other["items_per_second"] / mine["items_per_second"]),
                "%.0f" % mine["bytes_per_key"], "%.0f" % other["bytes_per_key"],
                "%.2f" % mine["allocs_per_key"], "%.2f" % other["allocs_per_key"]])
    runs = "one short run" if quick else "median of 5"
    return (("Containers against std::unordered_set<std::string> and std::vector<std::string> "
             "(Google Benchmark, %s): millions of keys inserted per second, heap bytes held per key "
             "at the peak, heap blocks allocated per key.\n\n") % runs +
            table(["zym", "keys", "zym M/s", "std M/s", "time zym/std", "zym B/key", "std B/key",
                   "zym allocs/key", "std allocs/key"], rows))


# ---------------------------------------------------------------------------------------------

def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", required=True, help="build directory with the target `benchmarks` built")
    parser.add_argument("--quick", action="store_true", help="N = 100 once: a check that everything runs")
    parser.add_argument("--sizes", help="comma-separated type counts (default %s)" %
                        ",".join(str(size) for size in FULL_SIZES))
    parser.add_argument("--reps", type=int, help="runs of each program per size (default 5)")
    parser.add_argument("--shipped-reps", type=int, default=31, help="runs on the shipped type map")
    parser.add_argument("--no-containers", action="store_true", help="leave out the container benchmark")
    arguments = parser.parse_args()

    config_path = os.path.join(arguments.build, "bench", "bench_paths.json")
    if not os.path.isfile(config_path):
        sys.exit("error: %s not found: configure %s with -DZYM_BUILD_BENCHMARKS=ON and build the target "
                 "`benchmarks`" % (config_path, arguments.build))
    with open(config_path) as config:
        paths = json.load(config)
    for key in ("tool", "shipped_tool", "floor_work", "floor_start", "launch"):
        if not os.access(paths[key], os.X_OK):
            sys.exit("error: %s is not built: build the target `benchmarks` of %s" % (paths[key], arguments.build))

    global LAUNCH
    LAUNCH = paths["launch"]
    sizes = [100] if arguments.quick else FULL_SIZES
    if arguments.sizes:
        sizes = [int(size) for size in arguments.sizes.split(",")]
    reps = arguments.reps or (1 if arguments.quick else 5)
    shipped_reps = 1 if arguments.quick else arguments.shipped_reps

    # The bench root: the generated type map, and the project's banner as in a real tree.
    root = paths["root"]
    os.makedirs(os.path.join(root, os.path.dirname(BANNER_PATH)), exist_ok=True)
    if os.path.isfile(paths["banner"]):
        shutil.copyfile(paths["banner"], os.path.join(root, BANNER_PATH))
    work = os.path.join(arguments.build, "bench", "work")
    os.makedirs(work, exist_ok=True)

    print("Machine: %s. Build type: %s. Load average before: %s." % (machine(), paths["build_type"] or "none",
                                                                       load()))
    try:
        results = [measure_size(paths, work, count, reps) for count in sizes]
        shipped = measure_shipped(paths, work, shipped_reps)
        print()
        print(tool_tables(results, shipped))
        if paths["containers"] and not arguments.no_containers:
            print()
            print(container_table(paths["containers"], arguments.quick))
    except Failure as failure:
        sys.exit("error: %s" % failure)
    print()
    print("Load average after: %s. Repetitions: %d per size, %d on the shipped map." % (load(), reps, shipped_reps))


if __name__ == "__main__":
    main()
