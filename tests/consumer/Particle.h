// clang-format off
#pragma once

#include <zym/Name.h>
#include <zym/Vec3.h>

namespace consumer
{
struct Particle { zym::Vec3 position; float mass = 1; };
struct Anchor { zym::Vec3 position; };  // not in the type map until the build check adds it
namespace physics { struct Spring { zym::Name name; float stiffness = 0; }; }
} // namespace consumer
