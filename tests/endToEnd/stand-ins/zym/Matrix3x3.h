#ifndef ZYM_STAND_IN_MATRIX3X3_H
#define ZYM_STAND_IN_MATRIX3X3_H

namespace zym
{

// Stand-in for the library's 3x3 matrix, row by row.
struct Matrix3x3
{
    float m[9] = {1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f};
};

} // namespace zym

#endif // ZYM_STAND_IN_MATRIX3X3_H
