#ifndef ZYM_STAND_IN_AFFINEMATRIX4X4_H
#define ZYM_STAND_IN_AFFINEMATRIX4X4_H

namespace zym
{

// Stand-in for the library's affine 4x4 matrix: the three rows above the constant 0 0 0 1.
struct AffineMatrix4x4
{
    float m[12] = {1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f};
};

} // namespace zym

#endif // ZYM_STAND_IN_AFFINEMATRIX4X4_H
