"""Writes a type map of N Type elements for the benchmarks.

    python3 make_type_map.py N OUTPUT [--seed S]

The mix follows a library's real map: one to three namespace components, about a
third of the types with a header of their own, about a fifth with isPOD="false",
and now and then a type named "String".  The same N and seed give the same bytes.
"""
import argparse
import random

NAMESPACE_ROOTS = ["zym", "zymData", "zymLua", "app", "engine"]
NAMESPACE_PARTS = ["geo", "render", "physics", "audio", "ui", "net", "anim", "math", "io", "scene",
                   "terrain", "particles", "script", "shader", "mesh", "input", "nav", "tools"]
NAME_STEMS = ["Vec", "Matrix", "Quat", "Transform", "Color", "Ray", "Plane", "Sphere", "Box", "Frustum",
              "Light", "Camera", "Material", "Texture", "Sample", "Channel", "Joint", "Pose", "Curve", "Key",
              "Event", "Handle", "Range", "Index", "Vertex", "Edge", "Face", "Contact", "Body", "Shape"]
NAME_TAILS = ["", "2", "3", "4", "f", "d", "i", "Info", "Desc", "State", "Data", "Ref", "Set", "Params"]


def namespace(rng):
    count = rng.choices((1, 2, 3), weights=(4, 4, 2))[0]
    parts = [rng.choice(NAMESPACE_ROOTS)] + rng.sample(NAMESPACE_PARTS, count - 1)
    return "::".join(parts)


def type_element(rng, index):
    ns = namespace(rng)
    if rng.random() < 0.02:
        name = "String"
    else:
        name = "%s%s%d" % (rng.choice(NAME_STEMS), rng.choice(NAME_TAILS), index)
    attributes = ['name="%s"' % name, 'namespace="%s"' % ns]
    if rng.random() < 0.2:
        attributes.append('isPOD="false"')
    if rng.random() < 1.0 / 3.0:
        attributes.append('include="%s/%s.h"' % (ns.replace("::", "/"), name))
    return "<Type %s />" % " ".join(attributes)


def type_map(count, seed=2026):
    rng = random.Random(seed)
    rows = ['<?xml version="1.0" encoding="UTF-8"?>']
    rows.extend(type_element(rng, index) for index in range(count))
    return ("\n".join(rows) + "\n").encode("ascii")


def write_type_map(path, count, seed=2026):
    data = type_map(count, seed)
    with open(path, "wb") as handle:
        handle.write(data)
    return len(data)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("count", type=int)
    parser.add_argument("output")
    parser.add_argument("--seed", type=int, default=2026)
    arguments = parser.parse_args()
    write_type_map(arguments.output, arguments.count, arguments.seed)


if __name__ == "__main__":
    main()
