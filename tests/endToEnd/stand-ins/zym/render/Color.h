#ifndef ZYM_STAND_IN_RENDER_COLOR_H
#define ZYM_STAND_IN_RENDER_COLOR_H

namespace zym
{
namespace render
{

// Stand-in for the library's linear RGBA colour; opaque black by default.
struct Color
{
    float r = 0.0f;
    float g = 0.0f;
    float b = 0.0f;
    float a = 1.0f;
};

} // namespace render
} // namespace zym

#endif // ZYM_STAND_IN_RENDER_COLOR_H
