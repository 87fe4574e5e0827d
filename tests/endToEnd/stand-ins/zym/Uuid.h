#ifndef ZYM_STAND_IN_UUID_H
#define ZYM_STAND_IN_UUID_H

#include <cstdint>

namespace zym
{

// Stand-in for the library's UUID: sixteen bytes, all zero by default.
struct Uuid
{
    std::uint8_t bytes[16] = {};
};

} // namespace zym

#endif // ZYM_STAND_IN_UUID_H
