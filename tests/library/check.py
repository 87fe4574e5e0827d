"""Builds the library example of README.md, as it stands, in a fresh tree with the files that the
README says a library supplies, under Unix Makefiles and Ninja; runs a Lua script on its bindings;
then changes its inputs step by step and checks what each build runs, and nothing else.

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
HEADERS = ["zym/" + name + ".h" for name in ("String", "Name", "Vec2", "Vec3", "Vec4", "Quat", "Matrix3x3",
                                             "AffineMatrix4x4", "Uuid", "render/Color", "geo/Ray", "Vector",
                                             "HashSet")] + ["zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"]
MARKS = {"Generating": "Generating Lua container", "Binding": "Binding the Lua containers", "Building": "Building CXX"}
ALL = "Generating Binding Building"
STEPS = [  # step, the file changed, what is appended to it, what the build runs
    ("first build", None, "", ALL),
    ("second build", None, "", ""),
    ("type map touched", "LuaContainerPrimitives.xml", "", "Generating"),
    ("map in data/ touched", "data/LuaContainerPrimitives.xml", "", ""),
    ("banner added", "tools/Generator/zym_copyright.txt", "/* banner */\n", ALL),
    ("type added", "LuaContainerPrimitives.xml", "<Type name='Anchor' namespace='zym' />\n", ALL),
    ("type map broken", "LuaContainerPrimitives.xml", "<Type name='Broken'", "failure"),
]


def block(language, section):
    """The first code block of `language` in the README's section."""
    return re.search(r"```%s\n(.*?)```" % language, readme[readme.index(section):], re.S).group(1)


def write(path, text, mode="w"):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, mode) as file:
        file.write(text)


def run(*command):  # a process that never ends is stopped by a signal, and fails the step
    limit = lambda: resource.setrlimit(resource.RLIMIT_CPU, (600, 600))
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, preexec_fn=limit)
    return result.returncode, result.stdout


def fail(what, output):
    sys.exit("%s\n%s" % (what, output))


def make_tree(source):
    shutil.rmtree(source, ignore_errors=True)
    for directory in ("core", "checks", "zym"):
        shutil.copytree(os.path.join(here, directory), os.path.join(source, directory))
    os.makedirs(os.path.join(source, "extern"))
    os.symlink(project, os.path.join(source, "extern", "LuaContainerGenerator"))
    write(source + "/CMakeLists.txt", block("cmake", "## Using it in a library") + "add_subdirectory(checks)\n")
    write(source + "/LuaContainerPrimitives.xml", block("xml", "## The type map"))
    write(source + "/data/LuaContainerPrimitives.xml", "<Type name='Decoy' namespace='zym' />\n")
    for header in HEADERS:
        write(os.path.join(source, "include", header), '#include "%s/StandIns.h"\n' % here)


for generator in ("Unix Makefiles", "Ninja"):
    source, build = (os.path.join(work, generator.replace(" ", ""), part) for part in ("source", "build"))
    shutil.rmtree(build, ignore_errors=True)
    make_tree(source)
    status, output = run("cmake", "-S", source, "-B", build, "-G", generator, "-DCMAKE_CXX_COMPILER=" + compiler)
    if status != 0:
        fail("%s: configuring the example failed" % generator, output)
    cache = open(os.path.join(build, "CMakeCache.txt")).read()
    tests = run("ctest", "-N", "--test-dir", build)[1]
    if not re.search(r"^CMAKE_BUILD_TYPE:STRING=$", cache, re.M) or "Total Tests: 0" not in tests:
        fail("%s: the generator set a build type or added tests to the library" % generator, tests)
    typedefs = os.path.join(build, "zymLuaContainers", "zymLua", "generated_container_typedefs.h")

    for what, changed, text, runs in STEPS:
        if changed:
            path, built = os.path.join(source, changed), os.path.getmtime(typedefs)
            write(path, text, "a")
            while os.path.getmtime(path) <= built:  # newer than what was built from it, on any clock
                time.sleep(0.1)
                os.utime(path)
        before = open(typedefs).read() if os.path.exists(typedefs) else None
        status, output = run("cmake", "--build", build, "--parallel", "2")
        after = open(typedefs).read()
        if runs == "failure":
            if status == 0 or after != before or not re.search(
                    r"^\S*/LuaContainerPrimitives\.xml:\d+: error: .+\n"
                    r"TypeMap: Could not load LuaContainerPrimitives\.xml", output, re.M):
                fail("%s, %s: the build did not fail with the map's place first, or replaced the header" %
                     (generator, what), output)
            continue
        if status != 0:
            fail("%s, %s: the build failed" % (generator, what), output)
        for mark, line in MARKS.items():
            if (mark in runs) != (line in output) or (mark == "Generating" and output.count(line) > 1):
                fail("%s, %s: '%s' should%s run once" % (generator, what, line, "" if mark in runs else " not"), output)
        if what == "first build":
            status, output = run(os.path.join(build, "checks", "luaHost"), os.path.join(here, "containers.lua"))
            if status != 0:
                fail("%s: the Lua script failed on the bindings" % generator, output)
    if "/* banner */" not in after or "zym::Anchor > AnchorVector;" not in after or "Decoy" in after:
        fail("%s: the banner or the added type is missing, or the map in data/ was read" % generator, after)
print("The README's library example builds, binds and runs under Unix Makefiles and Ninja.")
