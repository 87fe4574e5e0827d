#ifndef ZYM_STAND_IN_VEC2_H
#define ZYM_STAND_IN_VEC2_H

namespace zym
{

// Stand-in for the library's 2D vector: a value type of the right shape, nothing more.
struct Vec2
{
    float x = 0.0f;
    float y = 0.0f;
};

} // namespace zym

#endif // ZYM_STAND_IN_VEC2_H
