#ifndef CONSUMER_PARTICLE_H
#define CONSUMER_PARTICLE_H

#include <zym/Name.h>
#include <zym/Vec3.h>

namespace consumer
{

struct Particle
{
    zym::Vec3 position;
    zym::Vec3 velocity;
    float mass = 1.0f;
};

// Not in the type map at first: the build check adds it.
struct Anchor
{
    zym::Vec3 position;
};

namespace physics
{

struct Spring
{
    zym::Name name;
    float stiffness = 0.0f;
};

} // namespace physics
} // namespace consumer

#endif // CONSUMER_PARTICLE_H
