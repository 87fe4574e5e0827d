#ifndef ZYM_STAND_IN_INDEX_H
#define ZYM_STAND_IN_INDEX_H

#include <cstdint>

namespace zym
{

// Stand-ins for the library's element index and 32-bit index range.
typedef std::uint32_t Index;

// The indices from `begin` up to, not including, `end`.
struct IndexRange32
{
    IndexRange32() = default;
    IndexRange32(Index first, Index last) : begin(first), end(last) {}

    Index begin = 0;
    Index end = 0;
};

} // namespace zym

#endif // ZYM_STAND_IN_INDEX_H
