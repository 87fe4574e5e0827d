"""package_file() and typedef_header(): the exact bytes of the generator's two
outputs for a type map and a banner given as bytes.  Texts are handled as
latin-1 strings so that every byte goes through unchanged."""
import re
import struct

DEFAULT_INCLUDES = ["zym/Vector.h", "zym/HashSet.h", "zymData/Array.h",
                    "zymData/Buffer.h", "zymData/Value.h"]
GUARD = "ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H"

# ---------------------------------------------------------------- type map
# Enough XML for the maps the random driver writes: declaration, comments,
# elements with double- or single-quoted attributes, and text.
_TOKEN = re.compile(r"""<\?.*?\?>|<!--.*?-->|[^<]+
    |<(/?)([A-Za-z_][\w.-]*)((?:\s+[\w.:-]+\s*=\s*(?:"[^"]*"|'[^']*'))*)\s*(/?)>""",
                    re.S | re.X)
_ATTR = re.compile(r"""([\w.:-]+)\s*=\s*(?:"([^"]*)"|'([^']*)')""")


def parse_types(xml):
    """Attribute dicts of the document's direct Type children, in order."""
    text, pos, depth, types = xml.decode("latin-1"), 0, 0, []
    while pos < len(text):
        m = _TOKEN.match(text, pos)
        if not m:
            raise ValueError("unreadable type map at offset %d" % pos)
        pos = m.end()
        closing, name, attrs, empty = m.group(1, 2, 3, 4)
        if name is None:
            continue                      # declaration, comment or text
        if closing:
            depth -= 1
            continue
        if depth == 0 and name == "Type":
            types.append({a.group(1): a.group(2) if a.group(2) is not None
                          else a.group(3) for a in _ATTR.finditer(attrs)})
        if not empty:
            depth += 1
    return types


def parse_bool(text):
    """Stream extraction with boolalpha: leading white space skipped,
    anything behind a complete word ignored."""
    word = text.lstrip(" \t\n\v\f\r")
    if word.startswith("true"):
        return True
    if word.startswith("false"):
        return False
    raise ValueError("Unable to parse attribute isPOD")


# ---------------------------------------------------------------- hash set
def f32(x):
    """Round a number to single precision and back."""
    return struct.unpack("f", struct.pack("f", x))[0]


def string_hash(key):
    """h = h * 37 + c over the bytes, c sign-extended, modulo 2^32."""
    data = key.encode("latin-1") if isinstance(key, str) else key
    h = 0
    for c in data:
        h = (h * 37 + (c - 256 if c >= 128 else c)) & 0xFFFFFFFF
    return h


def threshold(capacity):
    return int(f32(capacity) * 0.8)


def next_prime(n):
    """Smallest prime not below n."""
    n = max(n, 2)
    while any(n % d == 0 for d in range(2, int(n ** 0.5) + 1)):
        n += 1
    return n


class HashSet:
    """Open addressing over a prime number of slots, quadratic probes k*k."""

    def __init__(self):
        self.size, self.slots = 0, []          # a slot is None or its key

    def insert(self, key):
        h = string_hash(key)
        if self.size >= threshold(len(self.slots)):
            self.rebuild(int(f32(len(self.slots) + 1) * 2.0))
        capacity = len(self.slots)
        for k in range(11):
            s = (k * k + h) % capacity
            if self.slots[s] is None:
                self.slots[s] = key
                self.size += 1
                return False
            if self.slots[s] == key:
                return True
        self.rebuild(int(f32(capacity) * 2.0))
        return self.insert(key)

    def rebuild(self, requested):
        n = requested & 0xFFFFFFFF
        n = n - (1 << 32) if n >= 1 << 31 else n
        old = self.slots
        self.slots, self.size = [None] * next_prime(n if requested else 1), 0
        for key in old:                        # old slot order; may nest
            if key is not None:
                self.insert(key)

    def __iter__(self):
        return (key for key in self.slots if key is not None)


# ---------------------------------------------------------------- rows
def rows(level, table):
    """Each (step, text) is one row: 2 * (level + step) blanks, text, newline."""
    return "".join("  " * (level + step) + text + "\n" for step, text in table)


def vector_class(level, name, q):
    c = name + "Vector"
    return rows(level, [
        (0, "class " + c),
        (0, "{"),
        (1, c + "();"),
        (1, c + "(unsigned int size);"),
        (1, ""),
        (1, q + " at( unsigned int ) const;"),
        (1, "void push_back( " + q + " value );"),
        (1, q + " front() const;"),
        (1, q + " back() const;"),
        (1, "void resize( unsigned int size );"),
        (1, "void reserve( unsigned int size );"),
        (1, "void clear();"),
        (1, "unsigned int size() const;"),
        (1, "bool empty() const;"),
        (0, "};"),
        (0, "")])


def array_class(level, name, q):
    c = name + "Array"
    return rows(level, [
        (0, "class " + c),
        (0, "{"),
        (1, c + "();"),
        (1, ""),
        (1, q + " at( unsigned int ) const;"),
        (1, q + " front() const;"),
        (1, q + " back() const;"),
        (1, "unsigned int size() const;"),
        (1, "bool empty() const;"),
        (0, "};"),
        (0, "")])


def buffer_class(level, name, q):
    c = name + "Buffer"
    return rows(level, [
        (0, "class " + c + " : public zymData::Buffer"),
        (0, "{"),
        (0, "public:"),
        (1, "TOLUA_REFERENCED_CLASS"),
        (1, "TOLUA_PROTECTED_DESTRUCTOR"),
        (1, ""),
        (1, c + "();"),
        (1, c + "(zym::Name name);"),
        (1, ""),
        (1, q + " at( unsigned int ) const;"),
        (1, "void push_back( " + q + " value );"),
        (1, q + " front() const;"),
        (1, q + " back() const;"),
        (1, "void resize( unsigned int size );"),
        (1, "void reserve( unsigned int size );"),
        (1, "void clear();"),
        (1, "unsigned int size() const;"),
        (1, "bool empty() const;"),
        (1, "void commit();"),
        (1, "void commit(zym::Index index);"),
        (1, "void commit(zymData::IndexArray indices);"),
        (1, "void commit(zym::IndexRange32 range);"),
        (1, "void print() const;"),
        (1, "zymData::Format *getFormat();"),
        (0, "};"),
        (0, "")])


def value_class(level, name, q):
    if name == "String":
        return ""
    c = name + "Value"
    return rows(level, [
        (0, "class " + c + " : public zymData::Value"),
        (0, "{"),
        (0, "public:"),
        (1, "TOLUA_REFERENCED_CLASS"),
        (1, "TOLUA_PROTECTED_DESTRUCTOR"),
        (1, ""),
        (1, c + "();"),
        (1, c + "(zym::Name name);"),
        (1, c + "(" + q + " value);"),
        (1, c + "(zym::Name name, " + q + " value);"),
        (1, ""),
        (1, "void set(" + q + " value);"),
        (1, q + " get() const;"),
        (1, "zymData::Format *getFormat();"),
        (0, "};"),
        (0, "")])


def type_scope(qualified):
    """Everything the package file holds for one qualified name, level 0."""
    pos = qualified.rfind("::")
    if pos < 0:
        return ""
    namespace, name = qualified[:pos], qualified[pos + 2:]
    parts = namespace.split("::")
    depth = len(parts)
    out = [rows(i, [(0, "namespace " + p), (0, "{")]) for i, p in enumerate(parts)]
    out += [write(depth, name, namespace + "::" + name)
            for write in (vector_class, array_class, buffer_class, value_class)]
    out += [rows(i, [(0, "}")]) for i in reversed(range(depth))]
    out.append(rows(0, [(0, "")]))
    return "".join(out)


# ---------------------------------------------------------------- outputs
def _banner(banner):
    return "" if banner is None else banner.split(b"\0", 1)[0].decode("latin-1")


def package_file(type_map, banner):
    includes, qualified = HashSet(), []
    for path in DEFAULT_INCLUDES:
        includes.insert(path)
    for t in parse_types(type_map):
        qualified.append(t["namespace"] + "::" + t["name"])
        if "include" in t:
            includes.insert(t["include"])
    out = [_banner(banner)]
    out += ["$#include <%s>\n" % key for key in includes]
    out += ["$#include <zymLua/generated_container_typedefs.h>\n",
            '$ifile "zym/Math.tolua"\n', "\n"]
    out += [type_scope(q) for q in qualified]
    return "".join(out).encode("latin-1")


def typedef_header(type_map, banner):
    # The banner is the text of the header's first row: the row's newline follows its last byte.
    out = [_banner(banner) + "\n", rows(0, [
        (0, "#ifndef " + GUARD),
        (0, "#define " + GUARD),
        (0, ""),
        (0, "#include <zym/Vec2.h>"),
        (0, "#include <zym/Vec3.h>"),
        (0, "#include <zym/Vec4.h>"),
        (0, "#include <zym/Matrix3x3.h>"),
        (0, "#include <zym/AffineMatrix4x4.h>"),
        (0, "#include <zym/Quat.h>"),
        (0, "#include <zym/Uuid.h>"),
        (0, "")])]
    for t in parse_types(type_map):
        name, namespace = t["name"], t["namespace"]
        pod = "POD" if "isPOD" not in t or parse_bool(t["isPOD"]) else ""
        q = namespace + "::" + name
        parts = namespace.split("::")
        depth = len(parts)
        out += [rows(k, [(0, "namespace " + p), (0, "{")]) for k, p in enumerate(parts)]
        out.append(rows(depth, [
            (0, "typedef zym::Vector" + pod + "< " + q + " > " + name + "Vector;"),
            (0, "typedef zymData::Array< " + q + " > " + name + "Array;"),
            (0, "typedef zymData::BufferT< " + q + " > " + name + "Buffer;"),
            (0, "typedef zymData::ValueT< " + q + " > " + name + "Value;")]))
        out += [rows(k, [(0, "}")]) for k in reversed(range(depth))]
        out.append(rows(0, [(0, "")]))
    out.append(rows(0, [(0, ""), (0, "#endif //" + GUARD)]))
    return "".join(out).encode("latin-1")


# ---------------------------------------------------------------- self-test
def self_test():
    assert string_hash("abc") == 136518
    assert string_hash(b"\xff") == 4294967295
    assert string_hash(b"\xffa") == 60
    assert string_hash("zym/Vector.h") == 3281867700
    assert (threshold(0), threshold(2), threshold(7), threshold(17)) == (0, 1, 5, 13)
    caps = [0]
    while len(caps) < 9:
        caps.append(next_prime(int(f32(caps[-1] + 1) * 2.0)))
    assert caps == [0, 2, 7, 17, 37, 79, 163, 331, 673]
    s = HashSet()
    for path in DEFAULT_INCLUDES:
        s.insert(path)
    assert list(s) == ["zymData/Array.h", "zymData/Buffer.h", "zym/HashSet.h",
                       "zymData/Value.h", "zym/Vector.h"]
    assert s.insert("zym/Vector.h") is True and len(s.slots) == 17
    assert list(s) == ["zymData/Array.h", "zym/Vector.h", "zymData/Value.h",
                       "zym/HashSet.h", "zymData/Buffer.h"]
    for first, second in (("zym/Vec3.h", "zym/Quat.h"), ("zym/Quat.h", "zym/Vec3.h")):
        s = HashSet()
        for path in DEFAULT_INCLUDES + [first, second]:
            s.insert(path)
        assert s.slots[11] == first and s.slots[12] == second
    empty = package_file(b"", None).decode()
    assert empty.startswith("$#include <zymData/Array.h>\n$#include <zymData/Buffer.h>\n")
    assert typedef_header(b"", b"x\0y").endswith(b"\n\n#endif //" + GUARD.encode() + b"\n")


if __name__ == "__main__":
    self_test()
    print("reference self-test passed")
