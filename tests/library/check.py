"""The README's library example as a library author builds it, from README.md into fresh trees with
what the README says a library supplies and a core library that shares nothing with the stand-in:
as a subproject and on the installed package under Unix Makefiles and Ninja, fetched under Ninja
Multi-Config, and as a cross build; then small libraries on the package, for what a build may meet.

    check.py <project dir> <work dir> <C++ compiler>
"""
import os
import re
import resource
import shutil
import subprocess
import sys
import time

project, work, compiler = sys.argv[1:]
here = os.path.dirname(os.path.abspath(__file__))
readme = open(os.path.join(project, "README.md")).read()
prefix = os.path.join(work, "prefix")
TOOL = os.path.join(prefix, "bin", "LuaContainerGenerator")
HEADERS = ["zym/%s.h" % name for name in ("String", "Name", "Vec2", "Vec3", "Vec4", "Quat", "Matrix3x3",
                                          "AffineMatrix4x4", "Uuid", "render/Color", "geo/Ray", "Vector", "HashSet")]
HEADERS += ["zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"]
MARKS = {"Generating": "Generating Lua container declarations from ", "Binding": "Binding the Lua containers",
         "Building": "Building CXX"}
STEPS = [  # what, how the type map changes, what the build runs or how it ends
    ("first build", None, "Generating Binding Building"),
    ("second build", None, ""),
    ("type map touched", lambda map: map, "Generating"),
    ("type added", lambda map: map + "<Type name='Anchor' namespace='zym' />\n", "Generating Binding Building"),
    ("types in a root element", lambda map: map.replace("<Type ", "<Types><Type ", 1) + "</Types>", "warning"),
    ("type map broken", lambda map: map + "<Type name='Broken'", "failure"),
]
MANY = "".join("<Type name='T%d' namespace='zym::many' include='zym/T%d.h' />\n" % (i, i) for i in range(150))


def block(language, section):
    """The first code block of `language` after `section` in the README, unindented."""
    text = re.search(r"```%s\n(.*?)```" % language, readme[readme.index(section):], re.S).group(1)
    return re.sub(r"(?m)^  ", "", text) if text.startswith("  ") else text


def read(path):
    return open(path).read() if os.path.exists(path) else None


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path + ".new", "w") as file:
        file.write(text)
    if os.path.exists(path):
        time.sleep(0.02)  # a tick of the file system's clock: newer than anything built from it
    os.replace(path + ".new", path)


def run(*command, file_limit=0, background=False, cwd=None):
    def limits():  # a process that never ends is stopped by a signal, and fails the step
        resource.setrlimit(resource.RLIMIT_CPU, (600, 600))
        if file_limit:
            resource.setrlimit(resource.RLIMIT_FSIZE, (file_limit, file_limit))
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               preexec_fn=limits, cwd=cwd)
    if background:
        return process
    output = process.communicate()[0]
    return process.returncode, output


def fail(what, output=""):
    sys.exit("%s\n%s" % (what, output))


def build(directory, *options, **how):
    return run("cmake", "--build", directory, "--parallel", "2", *options, **how)


def configure(source, directory, generator, *options):
    shutil.rmtree(directory, ignore_errors=True)
    status, output = run("cmake", "-S", source, "-B", directory, "-G", generator, "-DCMAKE_CXX_COMPILER=" + compiler,
                         "-DCMAKE_PREFIX_PATH=" + prefix, "-DCMAKE_LIBRARY_OUTPUT_DIRECTORY=" + directory + "/lib",
                         *options)
    return status, " ".join(output.split())  # one line, however CMake wraps its messages


def direct(map, banner=None):
    """Both files as the installed tool writes them from `map` and `banner`."""
    directory = os.path.join(work, "direct")
    shutil.rmtree(directory, ignore_errors=True)
    write(directory + "/LuaContainerPrimitives.xml", map)
    if banner:
        write(directory + "/tools/Generator/zym_copyright.txt", banner)
    run(TOOL, "out.pkg", "out.h", cwd=directory)
    return published(directory, "out.pkg", "out.h")


def published(directory, *names):
    return tuple(read(os.path.join(directory, *name.split("/"))) for name in names or
                 ("zymLua/generated_containers.pkg", "zymLua/generated_container_typedefs.h"))


def library(name, way, generator, *options):
    """A library's tree with the README's example, taking this project in `way`, configured."""
    source, directory = (os.path.join(work, name, part) for part in ("source", "build"))
    shutil.rmtree(source, ignore_errors=True)
    for part in ("core", "checks", "zym"):
        shutil.copytree(os.path.join(here, part), os.path.join(source, part))
    example, subproject = block("cmake", "The library's `CMakeLists.txt`"), "add_subdirectory(extern/LuaContainerGenerator)\n"
    if way == "subproject":
        os.makedirs(source + "/extern")
        os.symlink(project, source + "/extern/LuaContainerGenerator")
    write(source + "/CMakeLists.txt", example.replace(subproject, block("cmake", "- " + way)) + "add_subdirectory(checks)\n"
          if way != "subproject" else example + "add_subdirectory(checks)\n")
    write(source + "/LuaContainerPrimitives.xml", block("xml", "## The type map"))
    for header in HEADERS:
        write(os.path.join(source, "include", header), '#include "%s/StandIns.h"\n' % here)
    status, output = configure(source, directory, generator, *options)
    if status:
        fail("%s, %s: configuring the example failed" % (generator, way), output)
    return source, directory


def check_steps(where, source, directory):
    """The README's steps, each build running what it should and nothing else."""
    map_path, outputs = source + "/LuaContainerPrimitives.xml", directory + "/zymLuaContainers"
    for what, change, runs in STEPS:
        if change:
            write(map_path, change(read(map_path)))
        before = published(outputs)
        status, output = build(directory)
        if runs == "failure":
            if status == 0 or published(outputs) != before or not re.search(
                    r"^\S*/LuaContainerPrimitives\.xml:\d+: error: .+\nTypeMap: Could not load", output, re.M):
                fail("%s, %s: the build did not fail with the map's place first, or replaced a file" % (where, what), output)
        elif runs == "warning":
            if "%s: warning: no Type element at the top level" % map_path not in output:
                fail("%s, %s: no warning that names the type map" % (where, what), output)
        elif status or any((mark in runs) != (line in output) or output.count(line) > 1 and mark != "Building"
                           for mark, line in dict(MARKS, Generating=MARKS["Generating"] + map_path).items()):
            fail("%s, %s: the build failed, or did not run exactly %s" % (where, what, runs or "nothing"), output)
        if what == "first build":
            status, output = run(directory + "/checks/luaHost", here + "/containers.lua")
            status = status or run("cmake", "--install", directory, "--prefix", directory + "-installed")[0]
            if status or not os.path.exists(directory + "-installed/include/zymLua/generated_container_typedefs.h"):
                fail("%s: the Lua script failed on the bindings, or the library did not install" % where, output)
            if published(directory + "/checks/otherContainers") != direct(*published(
                    source + "/checks/other", "data/LuaContainerPrimitives.xml", "tools/Generator/zym_copyright.txt")):
                fail("%s: the second library did not publish its own map's files" % where)


def check_failures(where, source, directory):
    """Regenerations that fail or race, and the build behind each that brings the files to the map."""
    map_path, outputs = source + "/LuaContainerPrimitives.xml", directory + "/zymLuaContainers"
    stage, target = directory + "/CMakeFiles/zymLuaContainers.stage", ("--target", "zymLuaContainers_generate")

    def regenerate(what, map, error=": error: ", full_disk=False, **how):
        old = published(outputs)
        write(map_path, map)
        os.makedirs(stage, exist_ok=True)
        if full_disk and subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", stage]).returncode:
            return print("%s: a full disk not tried: no tmpfs can be mounted here" % where)
        try:
            process = build(directory, *target, background=True, **how)
            if what == "map replaced":  # once the generation has copied it
                copy = stage + "/LuaContainerPrimitives.xml"
                while process.poll() is None and not (os.path.exists(copy) and os.path.getsize(copy) == len(map)):
                    time.sleep(0.01)
                map = MANY
                write(map_path, map)
            output = process.communicate()[0]
        finally:
            if full_disk:
                subprocess.run(["umount", stage], check=True)
        if process.returncode and error not in output or published(outputs) not in (old, direct(map), direct(MANY)):
            fail("%s, %s: the build failed without a reason, or published a cut or mixed pair" % (where, what), output)
        status, output = build(directory, *target)
        if status or published(outputs) != direct(map):
            fail("%s, %s: the next build did not bring the files to the map" % (where, what), output)

    regenerate("file-size limit", MANY, "generated_containers.pkg: error: written short, 65536 of ", file_limit=64 << 10)
    regenerate("full disk", MANY + "<Type name='Full' namespace='n' />", "error: written short", full_disk=True)
    regenerate("map replaced", "".join("<Type name='L%d' namespace='zym::large' />\n" % i for i in range(20000)))


def small(name, calls, *generator):
    """A library that only generates, on the installed package, configured."""
    source = os.path.join(work, "small", name)
    write(source + "/CMakeLists.txt", "cmake_minimum_required(VERSION 3.21)\nproject(small NONE)\n"
          "find_package(LuaContainerGenerator 1.0 CONFIG REQUIRED)\n" + calls)
    status, output = configure(source, source + "/build", *(generator or ["Unix Makefiles"]))
    return status or build(source + "/build", "--target", "s_generate")[0], output, source + "/build"


def check_small_libraries():
    # Two build trees that publish into one directory at the same time, each round from one map.
    root, map_path = os.path.join(work, "small"), os.path.join(work, "small", "map.xml")
    write(map_path, MANY)
    write(root + "/banner.txt", "/* banner */\n")
    trees = [small(tree, "lua_container_generate(s TYPE_MAP %s BANNER %s/banner.txt OUTPUT_DIRECTORY %s/shared)\n"
                   % (map_path, root, root))[2] for tree in ("a", "b")]
    for round in range(8):
        write(map_path, MANY + "<Type name='Round%d' namespace='n' />\n" % round)
        builds = [build(tree, "--target", "s_generate", background=True) for tree in trees]
        outputs = [process.communicate()[0] for process in builds]
        if any(process.returncode for process in builds) or published(root + "/shared") != direct(
                read(map_path), "/* banner */\n"):
            fail("round %d: two builds that share an output directory broke each other" % round, outputs)
    os.symlink(root + "/shared", root + "/link")
    status, output, _ = small("twice", "lua_container_generate(a TYPE_MAP %s OUTPUT_DIRECTORY %s/shared)\n"
                              "lua_container_generate(b TYPE_MAP %s OUTPUT_DIRECTORY %s/link)\n" % ((map_path, root) * 2))
    if not re.search(r"lua_container_generate\(b\) in \S+ writes into \S+/link, where lua_container_generate\(a\) "
                     r"in \S+ writes already", output):
        fail("two calls that write into one directory through a link were not refused", output)

    for character in ";#\t:|\\ $'\u00e9":
        map_path = os.path.join(root, "with%sin" % character, "LuaContainerPrimitives.xml")
        write(map_path, MANY)
        refused = " ".join(("the path '%s' holds %s, which the build cannot carry." % (
            map_path, "a tab" if character == "\t" else "'%s'" % character)).split())
        status, output, directory = small("characters", "lua_container_generate(s TYPE_MAP [=[%s]=])\n" % map_path)
        if (refused in output) != (character in ";#\t:|\\") or refused not in output and (
                status or published(directory + "/s") != direct(MANY)):
            fail("a type map in %r was not refused in one message, or not generated from" % map_path, output)


# The package, installed into a prefix of its own, then the library example in each way.
shutil.rmtree(work, ignore_errors=True)
package_build = os.path.join(work, "package-build")
status, output = configure(project, package_build, "Ninja", "-DZYM_BUILD_TESTS=OFF", "-DZYM_BUILD_BENCHMARKS=OFF")
if status or build(package_build)[0] or run("cmake", "--install", package_build, "--prefix", prefix)[0]:
    fail("building and installing the package failed", output)
for generator in ("Unix Makefiles", "Ninja"):
    for way in ("subproject", "installed once"):
        source, directory = library(generator.replace(" ", "") + "-" + way.split()[0], way, generator)
        check_steps(generator + ", " + way, source, directory)
        if way == "subproject":
            check_failures(generator, source, directory)

# Fetched, under Ninja Multi-Config: switching configurations generates at most once.
source, directory = library("fetched", "fetched at configure time", "Ninja Multi-Config",
                            "-DFETCHCONTENT_SOURCE_DIR_LUACONTAINERGENERATOR=" + project)
outputs = [build(directory, "--config", config, "--target", "zymLua") for config in ("Debug", "Release", "Debug")]
if any(status for status, _ in outputs) or sum(output.count(MARKS["Generating"]) for _, output in outputs[1:]) > 1:
    fail("Ninja Multi-Config: a build failed, or a switch of configuration generated more than once", outputs)

# A cross build: the host's tool, and nothing of TinyXML or pystring.
source, directory = library("cross", "subproject", "Ninja", "-DZYM_BUILD_GENERATOR=OFF",
                            "-DZYM_GENERATOR_EXECUTABLE=" + TOOL)
status, output = build(directory, "--target", "zymLuaContainers_generate")
if re.search("TINYXML|PYSTRING", read(directory + "/CMakeCache.txt")) or status or published(
        directory + "/zymLuaContainers") != direct(read(source + "/LuaContainerPrimitives.xml")):
    fail("the cross build looked for TinyXML or pystring, or did not generate with the host's tool", output)

check_small_libraries()
print("The README's library example builds, binds, runs and installs as a subproject, as a package and fetched.")
