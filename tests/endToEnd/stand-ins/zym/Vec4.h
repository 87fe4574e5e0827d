#ifndef ZYM_STAND_IN_VEC4_H
#define ZYM_STAND_IN_VEC4_H

namespace zym
{

// Stand-in for the library's 4D vector.
struct Vec4
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;
};

} // namespace zym

#endif // ZYM_STAND_IN_VEC4_H
