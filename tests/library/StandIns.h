// The library around the generated files, as small as their bindings allow: the element types
// of its type map, the name, index and format types, and the container templates behind the
// typedefs. The test writes a header at each include path that the generated files and
// zym/Math.tolua name, and each of them includes this one.
// clang-format off
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

namespace zym
{
typedef std::string String;
template <typename T> using Vector = std::vector<T>;
template <typename T> struct VectorPOD : std::vector<T>
{ static_assert(std::is_trivially_copyable_v<T>); using std::vector<T>::vector; };
struct Vec3 { Vec3(float a = 0, float b = 0, float c = 0) : x(a), y(b), z(c) {} float x, y, z; };
namespace render { struct Color { float r = 0, g = 0, b = 0, a = 1; }; }
namespace geo { struct Ray { Vec3 origin, direction; }; }
struct Anchor { Vec3 position; }; // not in the type map until the test adds it
// Not trivially copyable: its containers are the Vector ones.
struct Name
{ Name(const char* name = "") : text(name) {} const char* c_str() const { return text.c_str(); } String text; };
typedef std::uint32_t Index;
struct IndexRange32 { IndexRange32(Index first, Index last) : begin(first), end(last) {} Index begin, end; };
} // namespace zym

namespace zymData
{
struct IndexArray { void push_back(zym::Index index) { indices.push_back(index); } std::vector<zym::Index> indices; };
struct Format { template <typename T> static Format* of() { static Format format; return &format; } };

// Made with one reference; deletes itself when release() gives back the last.
struct Referenced
{
    void release() { if (--references == 0) delete this; }
    static inline std::int64_t live = 0;
    std::uint32_t references = 1;

protected:
    Referenced() { ++live; }
    virtual ~Referenced() { --live; }
};

struct Buffer : Referenced
{
    explicit Buffer(zym::Name bufferName = {}) : name(bufferName) {}
    void commit() {}
    void commit(zym::Index) {}
    void commit(IndexArray) {}
    void commit(zym::IndexRange32) {}
    void print() const { std::printf("%s\n", name.c_str()); }
    zym::Name name;
};

template <typename T>
struct BufferT : Buffer, zym::Vector<T>
{
    using Buffer::Buffer;
    Format* getFormat() { return Format::of<T>(); }
};

template <typename T> struct Array : zym::Vector<T> {};  // made from Lua it views nothing

struct Value : Referenced {};

template <typename T>
struct ValueT : Value
{
    ValueT() = default;
    explicit ValueT(zym::Name) {}
    explicit ValueT(const T& initial) requires(!std::is_same_v<T, zym::Name>) : value(initial) {}
    ValueT(zym::Name, const T& initial) : value(initial) {}
    void set(const T& next) { value = next; }
    const T& get() const { return value; }
    Format* getFormat() { return Format::of<T>(); }
    T value{};
};
} // namespace zymData
