#include <zym/Vector.h>
#include <zymData/Array.h>
#include <zymData/Buffer.h>
#include <zymData/Value.h>

#include "Particle.h"

#include <zymLua/generated_container_typedefs.h>

#include <type_traits>

static_assert(std::is_same_v<consumer::ParticleVector, zym::VectorPOD<consumer::Particle>>);
static_assert(std::is_same_v<consumer::physics::SpringVector, zym::Vector<consumer::physics::Spring>>);
static_assert(std::is_same_v<consumer::ParticleBuffer, zymData::BufferT<consumer::Particle>>);
