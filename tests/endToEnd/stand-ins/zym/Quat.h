#ifndef ZYM_STAND_IN_QUAT_H
#define ZYM_STAND_IN_QUAT_H

namespace zym
{

// Stand-in for the library's quaternion; the default is the identity rotation.
struct Quat
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 1.0f;
};

} // namespace zym

#endif // ZYM_STAND_IN_QUAT_H
