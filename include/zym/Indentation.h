#ifndef ZYM_INDENTATION_H
#define ZYM_INDENTATION_H

#include <cstdint>
#include <ostream>

namespace zym
{

// The indentation of a row of generated text: two blanks per level.
struct Indentation
{
    std::uint64_t level = 0;
};

inline Indentation operator+(Indentation indentation, std::uint64_t steps)
{
    return Indentation{indentation.level + steps};
}

inline std::ostream& operator<<(std::ostream& stream, const Indentation& indentation)
{
    static const char blanks[] = "                                                                ";
    constexpr std::uint64_t chunk = sizeof blanks - 1;
    for (std::uint64_t remaining = 2 * indentation.level; remaining > 0;)
    {
        const std::uint64_t count = remaining < chunk ? remaining : chunk;
        stream.write(blanks, static_cast<std::streamsize>(count));
        remaining -= count;
    }
    return stream;
}

} // namespace zym

#endif // ZYM_INDENTATION_H
