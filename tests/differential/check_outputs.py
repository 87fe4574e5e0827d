"""Run the generator on random type maps and banners and compare its files,
standard streams and exit status byte for byte with reference_generator.

    python3 check_outputs.py --tool PATH --root DIR --cases N --seed S [--only K]

DIR is the source root the tool was built with.  The type map and banner are
written there for each case; whatever stood at those paths before the run is
put back at the end.
"""
import argparse
import difflib
import os
import random
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import reference_generator as ref  # noqa: E402

IDENT = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_"
MAP_NAME = "LuaContainerPrimitives.xml"
BANNER_NAME = os.path.join("tools", "Generator", "zym_copyright.txt")


def word(rng, lo=1, hi=10, chars=IDENT):
    return "".join(rng.choice(chars) for _ in range(rng.randint(lo, hi)))


def type_name(rng):
    r = rng.random()
    if r < 0.10:
        return "String"
    if r < 0.15:
        return rng.choice(["string", "Strings", "MyString", "STRING", "Stringy"])
    if r < 0.25:
        return "::".join(word(rng) for _ in range(rng.randint(2, 3)))
    return "" if r < 0.28 else word(rng)


def namespace(rng):
    parts = [word(rng, 1, 6) for _ in range(rng.randint(0, 4))]
    if parts and rng.random() < 0.1:
        parts[rng.randrange(len(parts))] = ""
    return "::".join(parts)


def collision_family(rng):
    """Eight paths of one hash: "az" and "bU" hash alike as two-byte blocks."""
    stem = word(rng, 1, 6)
    return ["c/%s%s%s%s.h" % (stem, a, b, c) for a in ("az", "bU")
            for b in ("az", "bU") for c in ("az", "bU")]


def include(rng, used, fresh, family):
    r = rng.random()
    if family and r < 0.3:
        return rng.choice(family)
    if not fresh and r < 0.3:
        return rng.choice(ref.DEFAULT_INCLUDES)
    if not fresh and r < 0.55 and used:
        return rng.choice(used)
    if not fresh and r < 0.62:
        return ""
    used.append("%s/%s.%s" % (word(rng, 1, 8), word(rng, 1, 12), rng.choice("hp")))
    return used[-1]


def element(rng, tag, attrs, body=""):
    rng.shuffle(attrs)
    text = "<" + tag
    for key, value in attrs:
        quote = rng.choice("\"'")
        text += rng.choice([" ", "  ", "\n    "]) + key + "=" + quote + value + quote
    return text + ("/>" if body is None else ">" + body + "</" + tag + ">")


def type_element(rng, used, big, family):
    attrs = [("name", type_name(rng)), ("namespace", namespace(rng))]
    if rng.random() < 0.5:
        attrs.append(("isPOD", rng.choice(["true", "false", " true", "true and more"])))
    if big or rng.random() < 0.35:
        attrs.append(("include", include(rng, used, big and rng.random() < 0.9, family)))
    if rng.random() < 0.1:
        attrs.append(("note", word(rng, 0, 8)))
    r = rng.random()
    body = None if r < 0.7 else "" if r < 0.8 else (
        "\n  " + word(rng) + " " + element(rng, "Type", [
            ("name", "Inner"), ("namespace", "inner"), ("include", "inner/Only.h")], None) + "\n")
    return element(rng, "Type", attrs, body)


def filler(rng):
    return rng.choice([
        lambda: "<!-- " + word(rng, 0, 20, IDENT + " ./") + " -->",
        lambda: "<!-- <Type name=\"Ghost\" namespace=\"g\" include=\"ghost.h\"/> -->",
        lambda: element(rng, rng.choice(["Other", "Types", "type"]), [("a", word(rng))], None),
        lambda: element(rng, "Group", [("name", word(rng))], "\n  " + element(rng, "Type", [
            ("name", word(rng)), ("namespace", namespace(rng)),
            ("include", "nested/" + word(rng) + ".h")], None) + "\n")])()


def type_map(rng):
    big = rng.random() < 0.1
    used, out = [], []
    family = collision_family(rng) if rng.random() < 0.5 else None
    if rng.random() < 0.5:
        out.append('<?xml version="1.0" %s?>' % rng.choice(["", 'encoding="UTF-8" ']))
    for _ in range(rng.randint(100, 400) if big else rng.randint(0, 60)):
        if rng.random() < 0.15:
            out.append(filler(rng))
        out.append(type_element(rng, used, big, family))
    if rng.random() < 0.3 or not out:
        out.append(filler(rng))  # a document without any node is a load failure
    return ("\n".join(out) + rng.choice(["", "\n"])).encode("ascii")


def banner(rng):
    r = rng.random()
    if r < 0.2:
        return None
    if r < 0.3:
        return b""
    text = b"".join(b"-- " + word(rng, 0, 30, IDENT + " .,()").encode() + b"\n"
                    for _ in range(rng.randint(1, 5)))
    if rng.random() < 0.3:
        text = text[:-1]
    if rng.random() < 0.2:
        at = rng.randint(0, len(text))
        text = text[:at] + b"\0" + text[at:] + b"after the nul\n"
    return text


def short_diff(label, expected, actual):
    if expected is None or actual is None:
        return "%s: expected %r, got %r\n" % (label, expected and expected[:200], actual and actual[:200])
    lines = list(difflib.unified_diff(
        expected.decode("latin-1").splitlines(True), actual.decode("latin-1").splitlines(True),
        "expected/" + label, "actual/" + label, n=2))
    return "".join(lines[:40]) + ("...\n" if len(lines) > 40 else "")


def run_case(tool, root, out, rng):
    xml, text = type_map(rng), banner(rng)
    where = os.path.join(root, "data", MAP_NAME) if rng.random() < 0.3 else os.path.join(root, MAP_NAME)
    os.makedirs(os.path.dirname(where), exist_ok=True)
    with open(where, "wb") as f:
        f.write(xml)
    if text is not None:
        os.makedirs(os.path.join(root, "tools", "Generator"), exist_ok=True)
        with open(os.path.join(root, BANNER_NAME), "wb") as f:
            f.write(text)
    pkg, tdf = os.path.join(out, "containers.pkg"), os.path.join(out, "typedefs.h")
    proc = subprocess.run([tool, pkg, tdf], capture_output=True, timeout=120)
    got = [str(proc.returncode).encode(), proc.stdout, proc.stderr]
    for path in (pkg, tdf):
        got.append(open(path, "rb").read() if os.path.exists(path) else None)
    want = [b"0", ("Updated lua container declarations in file %s\n"
                   "Updated lua container typedefs in file %s\n" % (pkg, tdf)).encode(),
            b"", ref.package_file(xml, text), ref.typedef_header(xml, text)]
    labels = ["exit status", "stdout", "stderr", "package file", "typedef header"]
    report = "".join(short_diff(l, w, g) for l, w, g in zip(labels, want, got) if w != g)
    return report, xml, text


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("--tool", required=True)
    ap.add_argument("--root", required=True)
    ap.add_argument("--cases", type=int, default=100)
    ap.add_argument("--seed", type=int, default=1)
    ap.add_argument("--only", type=int, help="run this case number alone")
    args = ap.parse_args()
    ref.self_test()
    tool, root = os.path.abspath(args.tool), os.path.abspath(args.root)
    inputs = [os.path.join(root, MAP_NAME), os.path.join(root, "data", MAP_NAME),
              os.path.join(root, BANNER_NAME), os.path.join(root, "data", BANNER_NAME)]
    saved = {p: open(p, "rb").read() for p in inputs if os.path.isfile(p)}
    cases = [args.only] if args.only is not None else range(args.cases)
    try:
        with tempfile.TemporaryDirectory() as out:
            for case in cases:
                for p in inputs + [os.path.join(out, "containers.pkg"), os.path.join(out, "typedefs.h")]:
                    if os.path.isdir(p) and not os.path.islink(p):
                        shutil.rmtree(p)
                    elif os.path.lexists(p):
                        os.remove(p)
                report, xml, text = run_case(tool, root, out, random.Random("%d/%d" % (args.seed, case)))
                if report:
                    keep = tempfile.mkdtemp(prefix="failed-case-")
                    with open(os.path.join(keep, MAP_NAME), "wb") as f:
                        f.write(xml)
                    if text is not None:
                        with open(os.path.join(keep, "zym_copyright.txt"), "wb") as f:
                            f.write(text)
                    print("MISMATCH: seed %d, case %d (inputs kept in %s)\n%s"
                          % (args.seed, case, keep, report))
                    return 1
    finally:
        for p in inputs:
            if os.path.isfile(p):
                os.remove(p)
        for p, data in saved.items():
            with open(p, "wb") as f:
                f.write(data)
    print("%d passed, 0 failed" % len(cases))
    return 0


if __name__ == "__main__":
    sys.exit(main())
