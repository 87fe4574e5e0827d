"""The tool as a build sees it, one row per case: the type map and banner it finds, its arguments,
targets that held something before the run, how its standard output is connected; then its exit
status, both standard streams, what became of each target and each source. Whatever the input,
the tool ends by itself, never by a signal, in its time, and within three times the bytes of the
map and outputs plus 64 MiB.

    CommandLineTest.py <launcher> <tool> <tool on this tree> <its source root> <golden dir> [sanitized]

The launcher (bench/Launch.cpp) measures each run from a process of its own, so that the tool's
peak memory does not count from this script's.
"""
import os
import re
import resource
import shutil
import subprocess
import sys

LAUNCH, TOOL, SHIPPED, ROOT, GOLDEN = map(os.path.abspath, sys.argv[1:6])
SANITIZED = sys.argv[6:] == ["sanitized"]
WORK = ROOT + "-work"
MAP, BANNER = ROOT + "/LuaContainerPrimitives.xml", ROOT + "/tools/Generator/zym_copyright.txt"
KEPT, WRITTEN = "kept", "written"


def read(path):
    with open(path, "rb") as file:
        return file.read().decode("latin-1")


def write(path, text, size=None):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(text.encode("latin-1"))
        if size:  # zeros up to `size` that take no room on disk
            file.truncate(size)


def type_(attributes):
    return "<Type %s />\n" % attributes


POINT = type_('name="Point" namespace="geo"')


def success(package="out.pkg", typedefs="out.h"):
    return ("Updated lua container declarations in file %s\n" % package if package else "") + (
        "Updated lua container typedefs in file %s\n" % typedefs if typedefs else "")


def load_failure(row, why, path=MAP):  # a pattern: the line that each of the two steps prints
    line = r"TypeMap: Could not load LuaContainerPrimitives\.xml \(full file path: '%s'\)\. Error on row %s: %s" "\n"
    return 2 * (line % (re.escape(path), row, why))


def attribute_report(problem, row, element):  # the header's own source position, then what a user reads
    rule = "=" * 78
    return r"\[/.*/include/zym/Xml\.h:[0-9]+\] " + re.escape(
        "XML error: %s. Error at row %d\nFile: %s\n%s\n%s\n%s\n\n" % (problem, row, MAP, rule, element, rule))


def case(name, map=POINT, banner=None, args=("out.pkg", "out.h"), status=0, out=None, err="", package=WRITTEN,
         typedefs=WRITTEN, prepare=None, has=(), lacks=(), exact=(), check=None, output="file", file_limit=0,
         address_limit=0, data_limit=0, seconds=10, tool=TOOL):
    return dict(locals(), out=success(*args[:2]) if out is None and len(args) >= 2 else out or "")


def not_loaded(name, map, row, why, **more):
    return case(name, map, out="", err=load_failure(row, why), package=KEPT, typedefs=KEPT, **more)


def stopped(name, map, err, **more):
    return case(name, map, status=1, out="", err=err, package=KEPT, typedefs=KEPT, **more)


def includes_of_one_hash(count, blocks=(("az", "bU"),) * 4):
    """Types whose include values have one hash: at each place one of two blocks of equal hash."""
    return "".join(type_('name="T" namespace="n" include="%s"' % "".join(
        pair[bits >> place & 1] for place, pair in enumerate(blocks))) for bits in range(count))


def overwriting(kind, source, target):
    line = "LuaContainerGenerator: will not overwrite the %s '%s' with the target '%s'\n"
    return re.escape(line % (kind, source, target))


def shadowing(kind, source, target):
    line = "LuaContainerGenerator: will not write the target '%s' where the %s is looked up: '%s'\n"
    return re.escape(line % (target, kind, source))


USAGE = re.escape("Usage: %s<target file path> <typedef file path>\n" % TOOL)
NO_MAP = load_failure(0, "Failed to open file", "")
DEEPER, MORE_ATTRIBUTES = r"Elements nested deeper than 32 levels\.", r"More than 32 attributes on one element\."
NODES, TOO_LARGE = r"More than 100000 nodes besides the Type elements\.", r"File larger than 256 MiB\."
UNPLACEABLE = "LuaContainerGenerator: HashSet: cannot insert "
ALL_HELD = ": other keys hold all eleven of its probe positions even in a table of 673 slots for 16 keys\n"
TOO_DEEP = r" lies in more than 32 nested namespaces\.\n"
CUT_OFF = '<a b="\xe9'  # read as UTF-8, a character cut off by the end
ATTRIBUTES = lambda count: "".join(' a%d="x"' % i for i in range(1, count + 1))
LETTERS = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"

CASES = [
    # The command line, the targets and the standard output.
    case("NoArguments", args=(), status=255, out="", err=USAGE, package=KEPT, typedefs=KEPT),
    case("OneArgument", args=("out.pkg",), status=255, out="", err=USAGE, package=KEPT, typedefs=KEPT),
    case("SurplusArguments", args=("out.pkg", "out.h", "surplus"), lacks=[("surplus", "")]),
    case("TargetIsADirectory", args=("directory", "out.h"), out=success("", "out.h"),
         err="Could not open file'directory'\n", package=KEPT, prepare=lambda: os.makedirs(WORK + "/directory")),
    case("TargetInAMissingDirectory", args=("out.pkg", "missing/out.h"), out=success("out.pkg", ""),
         err=r"Could not open file'missing/out\.h'\n", typedefs=KEPT),
    # A write that fails once the target is open is not reported: the success line follows.
    case("TargetIsDevFull", args=("/dev/full", "out.h"), package=KEPT),
    case("FileSizeLimit", file_limit=1000, check=lambda: os.path.getsize(WORK + "/out.pkg") == 1000),
    case("SameTargetTwice", args=("out.h", "out.h"), package=KEPT, has=[("out.h", "#endif //ZYMLUA")],
         lacks=[("out.h", "class PointVector")]),
    case("StandardOutputAPipeWithoutReader", out="", output="broken pipe", has=[("out.h", "#endif //ZYMLUA")]),
    case("StandardOutputClosed", out="", output="closed", lacks=[("out.pkg", "Updated")]),

    # Finding the type map and the banner.
    case("MissingTypeMap", map=None, out="", err=NO_MAP, package=KEPT, typedefs=KEPT),
    case("TypeMapInData", map=None, prepare=lambda: write(ROOT + "/data/LuaContainerPrimitives.xml", POINT),
         has=[("out.h", "PointVector;")]),
    case("TypeMapALinkToAFile", map=None, has=[("out.h", "#endif //ZYMLUA")],
         prepare=lambda: os.symlink(GOLDEN + "/no-types/LuaContainerPrimitives.xml", MAP)),
    case("TypeMapALinkToADevice", map=None, out="", err=NO_MAP, package=KEPT, typedefs=KEPT,
         prepare=lambda: os.symlink("/dev/zero", MAP)),
    case("TypeMapAtTheRootBeforeTheOneInData", map=type_('name="AtRoot" namespace="n"'),
         prepare=lambda: write(ROOT + "/data/LuaContainerPrimitives.xml", POINT),
         has=[("out.h", "AtRootVector;")], lacks=[("out.h", "PointVector;")]),
    case("BannerUpToItsFirstNulByte", banner="/* kept */\n\0/* dropped */\n", lacks=[("out.h", "dropped")],
         has=[("out.pkg", "/* kept */\n$#include <"), ("out.h", "/* kept */\n\n#ifndef ")]),
    case("BannerIsADirectory", prepare=lambda: os.makedirs(BANNER), has=[("out.pkg", "$#include <", 0)]),
    case("TenMegabyteBanner", prepare=lambda: write(BANNER, "*" * (10 << 20)),
         has=[("out.pkg", "*$#include <", (10 << 20) - 1), ("out.h", "*\n#ifndef ", (10 << 20) - 1)]),
    # Sources read only as far as they count.
    case("GibibyteBannerOfZeros", prepare=lambda: write(BANNER, "", 1 << 30), has=[("out.pkg", "$#include <", 0)],
         seconds=1),
    case("BannerBeforeAGibibyteOfZeros", prepare=lambda: write(BANNER, "/* b */\n", 1 << 30),
         has=[("out.h", "/* b */\n\n#ifndef ", 0)], seconds=1),
    not_loaded("FourGibibyteTypeMap", None, 0, TOO_LARGE, prepare=lambda: write(MAP, POINT, 4 << 30),
               address_limit=1000000 << 10, seconds=1),
    not_loaded("TypeMapOneByteOverTheLimit", None, 0, TOO_LARGE, prepare=lambda: write(MAP, POINT, (256 << 20) + 1),
               seconds=1),
    # The run's own sources are never targets: the run stops before it opens one for writing.
    case("PackageTargetIsTheTypeMap", args=(MAP, "out.h"), status=1, out="", package=KEPT, typedefs=KEPT,
         err=overwriting("type map", MAP, MAP), seconds=1),
    case("TypedefTargetIsAHardLinkToTheTypeMap", args=("out.pkg", "map"), status=1, out=success("out.pkg", ""),
         err=overwriting("type map", MAP, "map"), typedefs=KEPT, prepare=lambda: os.link(MAP, WORK + "/map")),
    case("TypedefTargetIsALinkToTheBanner", banner="/* b */\n", args=("out.pkg", "banner"), status=1,
         out=success("out.pkg", ""), err=overwriting("banner", BANNER, "banner"), typedefs=KEPT,
         prepare=lambda: os.symlink(BANNER, WORK + "/banner")),
    # Nor where the tool looks for a source that is not there: the next run would read the target.
    stopped("PackageTargetAtTheRootWhileTheTypeMapIsInData", None, shadowing("type map", MAP, MAP), args=(MAP, "out.h"),
            prepare=lambda: write(ROOT + "/data/LuaContainerPrimitives.xml", POINT),
            check=lambda: not os.path.exists(MAP)),
    stopped("PackageTargetALinkToWhereTheBannerIsLookedUp", POINT, shadowing("banner", BANNER, "link"),
            args=("link", "out.h"), prepare=lambda: os.makedirs(os.path.dirname(BANNER)) or
            os.symlink(BANNER, WORK + "/link"), check=lambda: not os.path.exists(BANNER)),
    stopped("BannerALinkToWhereThePackageTargetWillBe", POINT, shadowing("banner", BANNER, "new.pkg"),
            args=("new.pkg", "out.h"), prepare=lambda: os.makedirs(os.path.dirname(BANNER)) or
            os.symlink(WORK + "/new.pkg", BANNER), check=lambda: not os.path.exists(WORK + "/new.pkg")),
    stopped("TargetWithControlBytesIsALinkToTheTypeMap", POINT, overwriting("type map", MAP, "m&#x0A;&#x1B;[31m"),
            args=("m\n\x1b[31m", "out.h"), prepare=lambda: os.symlink(MAP, WORK + "/m\n\x1b[31m")),

    # Type maps the XML reader cannot load, and some that it can.
    not_loaded("EmptyTypeMap", "", 0, r"Error document empty\."),
    not_loaded("CutOffInsideATag", POINT + '<Type name="B" nam', 2, r"Error reading Attributes\."),
    # Read as UTF-8, the last character runs past the end of the text: onto zero bytes only.
    not_loaded("EncodingUtf8mb4", '<?xml encoding="utf8mb4"?>\n' + POINT + CUT_OFF, 3, r"Error parsing Element\."),
    case("ByteOrderMark", map="\xef\xbb\xbf" + POINT, has=[("out.h", "zym::VectorPOD< geo::Point > PointVector;")]),
    # The reader takes an unterminated comment to the end of the file, and stops at text at the top.
    case("UnterminatedComment", map=POINT + "<!-- never closed\n" + type_('name="Lost" namespace="n"'),
         has=[("out.h", "PointVector;")], lacks=[("out.h", "LostVector;")]),
    case("CommentOpenerThatSeemsClosed", map=POINT + "<!-->" + "<a>" * 300 + " -->\n"),
    case("TextAtTheTopBeforeDeepNesting", map=POINT + "text\n" + "<a>" * 300),

    # The limits of what the reader is shown, at their edges, and slipped past its rules.
    case("NestedThirtyTwoDeep", map=POINT + "<a>" * 32 + "</a>" * 32),
    not_loaded("NestedThirtyThreeDeepBehindAClosedElementAcrossCrLfRows",
               POINT + "\r\n" + "<a>\r\n" * 31 + "<b>x</b><a>\r\n<a/>", 35, DEEPER),
    not_loaded("CharacterDataWithAnEndBracketBeforeDeepNesting", POINT + "<![CDATA[>]]>" + "<a>" * 40, 2, DEEPER),
    not_loaded("EntityAcrossAQuoteBeforeDeepNesting", POINT + '<a b="&#"#1;">' + "<a>" * 100000, 2, DEEPER),
    not_loaded("RepeatedAttributeBeforeDeepNesting", POINT + '<a x="1" x="2">' + "<a>" * 40, 2,
               r"Error parsing Element\."),
    not_loaded("AttributeWithoutAnEqualsSignBeforeDeepNesting", POINT + '<a b ""x">' + "<a>" * 40, 2,
               r"Error reading Attributes\."),
    not_loaded("ElementsNamedWithAnUnderscoreNestedDeep", POINT + "<_a>" * 40, 2, DEEPER),
    not_loaded("EndTagInAnotherCaseBeforeDeepNesting", POINT + "<b></B>" + "<a>" * 40, 2, r"Error reading end tag\."),
    not_loaded("EntitiesAcrossEndTags", POINT + "<a>&#</a>#1;" * 100000, 2, DEEPER),
    not_loaded("Utf8CharactersOverEndTags", "\xef\xbb\xbf" + POINT + "<a>\xe0</a>" * 100000, 2, DEEPER),
    not_loaded("Utf8CharactersOverEndTagsBehindADeclarationInCapitals",
               '<?XML version="1.0" encoding="utf-8"?>\n' + POINT + "<a>\xe0</a>" * 40, 3, DEEPER),
    case("ThirtyTwoAttributes", map='<Type name="A" namespace="n"' + ATTRIBUTES(30) + " />"),
    not_loaded("ThirtyThreeAttributesAfterCrRows", POINT + '\r\r<Type name="A" namespace="n"' + ATTRIBUTES(31) + " />",
               4, MORE_ATTRIBUTES),
    not_loaded("ThirtyThousandAttributesBehindAnEntity", POINT + '<Type b="&#"#1;"' + ATTRIBUTES(30000) + " />", 2,
               MORE_ATTRIBUTES),
    case("HundredThousandNodes", map="<a></a>" * 50000 + "<a/>" * 50000, seconds=1),
    not_loaded("ElementsAndCommentsBeyondTheBudget", POINT + "<a/>" * 50001 + "<!---->" * 50000, 2, NODES),
    not_loaded("UnreadAttributesOfTypesBeyondTheBudget", type_('name="" namespace=""' + ATTRIBUTES(30)) * 3334, 3334,
               NODES),
    not_loaded("NodesBeyondTheBudgetInsideDeepNesting", "<a>" * 31 + "x<b/>" * 50000 + "</a>" * 31, 1, NODES),
    not_loaded("ChildrenOfATypeBeyondTheBudget",
               POINT + "<Type name='T' namespace='n'>" + "\n<c/>" * 100001 + "</Type>", 100003, NODES),

    # Attributes.
    stopped("MissingNamespace", '<?xml version="1.0"?>\n' + POINT * 10 + type_('name="Lonely"'),
            attribute_report("Could not locate attribute 'namespace'", 12, '<Type name="Lonely" />')),
    stopped("MissingNameAndNamespace", type_('isPOD="false"'),
            attribute_report("Could not locate attribute 'name'", 1, '<Type isPOD="false" />')),

    # Sizes. The largest inputs are made only when their row runs.
    case("FiftyMegabyteAttributeValue", map=None, has=[("out.pkg", "x" * (50 << 20) + ">\n")],
         prepare=lambda: write(MAP, type_("name='A' namespace='n' include='%s'" % ("x" * (50 << 20))))),
    case("ThirtyMegabyteCommentInAGigabyteOfAddressSpace", map=POINT + "<!--" + "x" * (30 << 20) + "-->",
         address_limit=1000000 << 10),
    case("ThirtyMegabytesOfBlanksUnderADataLimit", map=POINT + " " * (30 << 20), data_limit=600000 << 10),
    # Each of them with all four attributes that the tool reads, none of which counts against the node budget.
    case("TwoHundredThousandTypes", map=None, has=[("out.h", "typedef zymData::ValueT< n::Last > LastValue;")],
         prepare=lambda: write(MAP, type_('name="P" namespace="g" isPOD="true" include="g/P.h"') * 199999
                               + type_('name="Last" namespace="n"'))),

    # Include values the include set cannot place, and namespaces too deep to write.
    case("ElevenIncludesOfOneHash", map=includes_of_one_hash(11)),
    stopped("TwelveIncludesOfOneHash", includes_of_one_hash(12),
            UNPLACEABLE + r"'bUbUazbU' \(hash 2133336812\)" + ALL_HELD),
    stopped("TwelveIncludesWithHashesSquaresApart",
            "".join(type_('name="T" namespace="n" include="%s"' % value)
                    for value in "azAA azAB azAE azAJ azAQ azAZ azAe azBM azB\\ azCH azC[ bUAA".split()),
            UNPLACEABLE + r"'bUAA' \(hash 5082829\)" + ALL_HELD),
    stopped("TwoLetterIncludes", "".join(type_("name='T' namespace='n' include='%s%s'" % (first, second))
                                         for first in LETTERS for second in LETTERS),
            UNPLACEABLE + r"'fA' \(hash 3839\): other keys hold all eleven of its probe positions even in a table of "
                          r"10949 slots for 291 keys\n"),
    # A refused value is written on one line, its control bytes as the reader writes them.
    stopped("IncludesOfOneHashWithALineFeedAndAnEscape",
            includes_of_one_hash(12, (("`/", "a&#10;"), ("`@", "a\x1b"), ("az", "bU"), ("az", "bU"))),
            UNPLACEABLE + r"'a&\#x0A;a&\#x1B;azbU' \(hash 2356742541\)" + ALL_HELD),
    stopped("IncludesOfOneHashWithATab", includes_of_one_hash(12, (("`.", "a&#9;"),) + (("az", "bU"),) * 3),
            UNPLACEABLE + r"'a&\#x09;bUazbU' \(hash 4264028723\)" + ALL_HELD),
    # The map is trusted: an include value with a line feed writes a row of its own.
    case("IncludeWithALineFeed", map=type_("name='A' namespace='n' include='a>&#10;$#include <b'"),
         has=[("out.pkg", "\n$#include <a>\n$#include <b>\n")]),
    case("ThirtyTwoNamespacesOneWithAColon", map=type_('name="T" namespace="a:b%s"' % ("::n" * 31))),
    stopped("ThirtyThreeEmptyNamespacesAfterCrLfRows", POINT + "\r\n" + type_('name="T" namespace="%s"' % ("::" * 32)),
            "TypeMap: the Type on row 3" + TOO_DEEP),
    stopped("ThirtyThreeNamespacesThroughTheName", type_('name="n::T" namespace="%s"' % "::".join(["n"] * 32)),
            "TypeMap: the Type on row 1" + TOO_DEEP),
]

# Both outputs of the type maps under tests/golden/, byte for byte: each directory holds a map,
# perhaps a banner, and the two files that the tool must write from them; the one without a map
# holds those of the shipped type map, which the tool built on this tree reads.
for directory in sorted(os.scandir(GOLDEN), key=lambda entry: entry.name):
    if directory.is_dir():
        text = lambda name: read(directory.path + "/" + name) if os.path.exists(directory.path + "/" + name) else None
        CASES.append(case("Golden_" + directory.name, map=text("LuaContainerPrimitives.xml"),
                          banner=text("zym_copyright.txt"),
                          tool=TOOL if text("LuaContainerPrimitives.xml") else SHIPPED,
                          exact=[("out.pkg", text("generated_containers.pkg")),
                                 ("out.h", text("generated_container_typedefs.h"))]))

# Only lower-case true and false, after white space, are read as a bool: the typedef step fails on
# the rest, after the package step has written its file.
for spelling in ("True", "TRUE", "1", "0", "", " ", "tru"):
    element = '<Type name="Bad" namespace="geo" isPOD="%s" />' % spelling
    CASES.append(case("IsPOD" + repr(spelling), map=POINT + element, status=1, out=success("out.pkg", ""),
                      err=attribute_report("Unable to parse attribute isPOD", 2, element), typedefs=KEPT,
                      has=[("out.pkg", "class BadValue")]))


def run(c):
    """Runs the tool of case `c` in WORK; its wait status, peak memory, time and standard streams. The
    child gets SIGPIPE and SIGXFSZ back as a build gives them, though Python ignores both."""
    def limits():
        if c["output"] == "closed":
            os.close(1)
        for limit, value in ((resource.RLIMIT_FSIZE, c["file_limit"]), (resource.RLIMIT_AS, c["address_limit"]),
                             (resource.RLIMIT_DATA, c["data_limit"]),
                             (resource.RLIMIT_CPU, 600 if SANITIZED else 60)):  # a tool that never ends gets a signal
            if value and not (limit in (resource.RLIMIT_AS, resource.RLIMIT_DATA) and SANITIZED):  # they reserve more
                resource.setrlimit(limit, (value, value))
    pipe = os.pipe() if c["output"] == "broken pipe" else None
    with open(WORK + ".out", "wb") as out, open(WORK + ".err", "wb") as err:
        child = subprocess.Popen([LAUNCH, WORK + ".report", c["tool"]] + list(c["args"]), stdin=subprocess.DEVNULL,
                                 stdout=pipe[1] if pipe else out if c["output"] == "file" else None, stderr=err,
                                 cwd=WORK, preexec_fn=limits)
        if pipe:
            os.close(pipe[0])
            os.close(pipe[1])
        child.wait()
    wall, _, _, memory, status = map(int, read(WORK + ".report").split())
    out = "" if c["output"] != "file" else read(WORK + ".out")
    return status, memory * 1024, wall * 1e-9, out, read(WORK + ".err")


def check(c):
    """What went wrong in the run of case `c`, in words; nothing when all held."""
    for path in (ROOT, WORK, WORK + ".out"):
        shutil.rmtree(path, ignore_errors=True) if os.path.isdir(path) else os.path.exists(path) and os.remove(path)
    write(WORK + "/out.pkg", "old package")
    write(WORK + "/out.h", "old header")
    os.makedirs(ROOT, exist_ok=True)
    for path, text in ((MAP, c["map"]), (BANNER, c["banner"])):
        if text is not None:
            write(path, text)
    if c["prepare"]:
        c["prepare"]()
    status, memory, seconds, out, err = run(c)
    size = lambda path: os.path.getsize(path) if os.path.isfile(path) else 0
    bytes_ = size(MAP) + size(WORK + "/out.pkg") + size(WORK + "/out.h")
    problems = [
        "ended by signal %d" % os.WTERMSIG(status) if os.WIFSIGNALED(status) else
        "exit status %d, not %d" % (os.WEXITSTATUS(status), c["status"])
        if os.WEXITSTATUS(status) != c["status"] else "",
        "stdout %r" % out if out != c["out"] else "",
        "stderr %r" % err[:2000] if not re.fullmatch(c["err"], err) else "",
        "took %.1f s" % seconds if seconds > c["seconds"] * (10 if SANITIZED else 1) else "",
        "peak memory %d bytes" % memory if not SANITIZED and memory >= 3 * bytes_ + (64 << 20) else ""]
    for target, path, old in (("package", "/out.pkg", "old package"), ("typedefs", "/out.h", "old header")):
        if (read(WORK + path) == old) != (c[target] == KEPT):
            problems.append("%s %s" % (target, "replaced" if c[target] == KEPT else "kept"))
    for source, text in ((MAP, c["map"]), (BANNER, c["banner"])):
        if text is not None and read(source) != text:
            problems.append("%s changed" % source)
    for file, text, *at in c["has"]:
        found = read(os.path.join(WORK, file)).find(text)
        if found < 0 or at and found != at[0]:
            problems.append("%s lacks %r%s" % (file, text[:200], " at %d" % at[0] if at else ""))
    for file, text in c["lacks"]:
        if os.path.exists(os.path.join(WORK, file)) and text in read(os.path.join(WORK, file)):
            problems.append("%s has %r" % (file, text))
    problems += ["%s differs" % file for file, text in c["exact"] if read(os.path.join(WORK, file)) != text]
    problems.append("check failed" if c["check"] and not c["check"]() else "")
    return [problem for problem in problems if problem]


failures = 0
for c in CASES:
    problems = check(c)
    failures += bool(problems)
    print("%-60s %s" % (c["name"], "; ".join(problems) or "ok"), flush=True)
shutil.rmtree(ROOT, ignore_errors=True)
print("%d of %d cases failed" % (failures, len(CASES)))
sys.exit(1 if failures else 0)
