#ifndef ZYM_GENERATOR_ROWS_H
#define ZYM_GENERATOR_ROWS_H

#include <zym/Indentation.h>

#include <cstdint>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace zym
{
namespace Generator
{

// A type's name in its namespace, as "zym::geo::Ray".
struct QualifiedName
{
    std::string_view typeNamespace;
    std::string_view typeName;
};

// A container class's name, as "RayVector".
struct ClassName
{
    std::string_view typeName;
    std::string_view container;
};

// The rows of one piece of generated text, which each writer reads as: rows(indentation, pieces...)
// writes one row, its indentation (two blanks per level), its pieces (literals, texts or the two
// names above) and a newline. The rows are gathered in a room of their own and reach the stream's
// buffer a room at a time, and when the writer is done; then the buffer is synced, as std::endl
// would. A buffer that takes less than all, or fails to sync, leaves the stream bad, as the
// stream's own operations would, and a stream that is not good takes nothing.
class Rows
{
public:
    explicit Rows(std::ostream& target) : stream(target)
    {
        if (stream.tie() != nullptr && stream.good())
            stream.tie()->flush();
        if (!stream.good())
            stream.setstate(std::ios::failbit);
    }

    ~Rows()
    {
        spill();
        if (stream.good() && stream.rdbuf()->pubsync() == -1)
            stream.setstate(std::ios::badbit);
    }

    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    template <typename... Pieces>
    [[gnu::always_inline]] void operator()(zym::Indentation indentation, const Pieces&... pieces)
    {
        for (std::uint64_t blanksLeft = 2 * indentation.level; blanksLeft > 0;)
        {
            const std::size_t count = blanksLeft < blanks.size() ? static_cast<std::size_t>(blanksLeft) : blanks.size();
            append(blanks.substr(0, count));
            blanksLeft -= count;
        }
        (append(pieces), ...);
        append("\n");
    }

private:
    static constexpr std::string_view blanks = "                                                                ";

    // Inlined into each row, where a literal's length is known, so that its copy is a few moves.
    [[gnu::always_inline]] void append(std::string_view text)
    {
        if (text.size() > sizeof room - size)
            return appendBeyondRoom(text);
        std::memcpy(room + size, text.data(), text.size());
        size += text.size();
    }

    void appendBeyondRoom(std::string_view text)
    {
        spill();
        if (text.size() > sizeof room)
            return put(text.data(), text.size());
        std::memcpy(room, text.data(), text.size());
        size = text.size();
    }

    template <std::size_t length>
    [[gnu::always_inline]] void append(const char (&text)[length])
    {
        append(std::string_view(text, length - 1));
    }

    [[gnu::always_inline]] void append(const QualifiedName& name)
    {
        append(name.typeNamespace);
        append("::");
        append(name.typeName);
    }

    [[gnu::always_inline]] void append(const ClassName& name)
    {
        append(name.typeName);
        append(name.container);
    }

    void spill()
    {
        put(room, size);
        size = 0;
    }

    void put(const char* text, std::size_t count)
    {
        const auto length = static_cast<std::streamsize>(count);
        if (stream.good() && stream.rdbuf()->sputn(text, length) != length)
            stream.setstate(std::ios::badbit);
    }

    std::ostream& stream;
    std::size_t size = 0;
    char room[8192];
};

} // namespace Generator
} // namespace zym

#endif // ZYM_GENERATOR_ROWS_H
