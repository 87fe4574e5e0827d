#ifndef ZYM_STAND_IN_VEC3_H
#define ZYM_STAND_IN_VEC3_H

namespace zym
{

// Stand-in for the library's 3D vector, with the constructors that zym/Math.tolua binds.
struct Vec3
{
    Vec3() = default;
    Vec3(float xValue, float yValue, float zValue) : x(xValue), y(yValue), z(zValue) {}

    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
};

} // namespace zym

#endif // ZYM_STAND_IN_VEC3_H
