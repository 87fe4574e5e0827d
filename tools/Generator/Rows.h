#ifndef ZYM_GENERATOR_ROWS_H
#define ZYM_GENERATOR_ROWS_H

#include <zym/Indentation.h>

#include <cstdint>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <string_view>

// The rows of generated text: writeRow(stream, indentation, pieces...) writes one, and the class
// writers read as the rows they write. A piece is a literal, a text, or one of the two names below.

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

// The text of one row, gathered on the stack so that it reaches the stream's buffer in one piece,
// or in a few for a row longer than the room.
class RowText
{
public:
    explicit RowText(std::streambuf& target) : buffer(target) {}

    // Two blanks per level. At the start of a row, where the room is empty, all the blanks are
    // copied and as many kept as the level needs: a copy of a known length is a few moves.
    void append(zym::Indentation indentation)
    {
        const std::uint64_t count = 2 * indentation.level;
        if (size == 0 && count <= blanks.size())
        {
            std::memcpy(room, blanks.data(), blanks.size());
            size = static_cast<std::size_t>(count);
        }
        else
            appendBlanks(count);
    }

    void append(std::string_view text)
    {
        if (text.size() > sizeof room - size)
        {
            spill();
            if (text.size() > sizeof room)
            {
                put(text.data(), text.size());
                return;
            }
        }
        std::memcpy(room + size, text.data(), text.size());
        size += text.size();
    }

    // A literal's length is known here, so that its copy is a few moves.
    template <std::size_t length>
    void append(const char (&text)[length])
    {
        append(std::string_view(text, length - 1));
    }

    void append(const QualifiedName& name)
    {
        append(name.typeNamespace);
        append("::");
        append(name.typeName);
    }

    void append(const ClassName& name)
    {
        append(name.typeName);
        append(name.container);
    }

    // Ends the row with its newline and hands the rest to the buffer: false when it took less than all.
    bool finish()
    {
        append("\n");
        spill();
        return whole;
    }

private:
    static constexpr std::string_view blanks = "                                                                ";

    void appendBlanks(std::uint64_t count)
    {
        for (; count > blanks.size(); count -= blanks.size())
            append(blanks);
        append(blanks.substr(0, static_cast<std::size_t>(count)));
    }

    void spill()
    {
        put(room, size);
        size = 0;
    }

    void put(const char* text, std::size_t count)
    {
        const auto length = static_cast<std::streamsize>(count);
        whole = buffer.sputn(text, length) == length && whole;
    }

    std::streambuf& buffer;
    bool whole = true;
    std::size_t size = 0;
    char room[256];
};

// What std::ostream::sentry does before an output, without its out-of-line call, which costs as
// much as the row itself: flush the tied stream, and refuse a stream that is not good.
inline bool readyForOutput(std::ostream& stream)
{
    if (stream.tie() != nullptr && stream.good())
        stream.tie()->flush();
    if (stream.good())
        return true;
    stream.setstate(std::ios::failbit);
    return false;
}

// One row of generated text: its indentation, its pieces and a newline, gathered and handed to
// the stream's buffer as one output operation, then a flush, as std::endl does: the buffer's own
// sync, without the stream's sentry, which costs more than the row. A buffer that takes less than
// the whole row, or fails to sync, leaves the stream bad, as the stream's own operations would.
template <typename... Pieces>
void writeRow(std::ostream& stream, zym::Indentation indentation, const Pieces&... pieces)
{
    if (readyForOutput(stream))
    {
        RowText text(*stream.rdbuf());
        text.append(indentation);
        (text.append(pieces), ...);
        if (!text.finish() || stream.rdbuf()->pubsync() == -1)
            stream.setstate(std::ios::badbit);
    }
}

} // namespace Generator
} // namespace zym

#endif // ZYM_GENERATOR_ROWS_H
