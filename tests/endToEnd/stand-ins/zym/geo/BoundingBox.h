#ifndef ZYM_STAND_IN_GEO_BOUNDINGBOX_H
#define ZYM_STAND_IN_GEO_BOUNDINGBOX_H

#include <zym/Vec3.h>

namespace zym
{
namespace geo
{

// Stand-in for the library's axis-aligned bounding box: its two extreme corners.
struct BoundingBox
{
    Vec3 min;
    Vec3 max;
};

} // namespace geo
} // namespace zym

#endif // ZYM_STAND_IN_GEO_BOUNDINGBOX_H
