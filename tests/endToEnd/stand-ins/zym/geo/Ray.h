#ifndef ZYM_STAND_IN_GEO_RAY_H
#define ZYM_STAND_IN_GEO_RAY_H

#include <zym/Vec3.h>

namespace zym
{
namespace geo
{

// Stand-in for the library's ray: an origin and a direction.
struct Ray
{
    Vec3 origin;
    Vec3 direction;
};

} // namespace geo
} // namespace zym

#endif // ZYM_STAND_IN_GEO_RAY_H
