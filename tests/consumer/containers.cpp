// The consumer's library: the generated container typedefs, over the stand-ins of the
// container templates and math types.

#include <zym/Vector.h>
#include <zymData/Array.h>
#include <zymData/Buffer.h>
#include <zymData/Value.h>

#include "Particle.h"

#include <zymLua/generated_container_typedefs.h>

#include <cstdint>
#include <type_traits>

static_assert(std::is_same<consumer::ParticleVector, zym::VectorPOD<consumer::Particle>>::value,
              "a Particle is trivially copied");
static_assert(std::is_same<consumer::physics::SpringVector, zym::Vector<consumer::physics::Spring>>::value,
              "a Spring is constructed and destroyed");
static_assert(std::is_same<consumer::ParticleBuffer, zymData::BufferT<consumer::Particle>>::value,
              "the Buffer typedef names the buffer template");

std::uint64_t consumerParticleCount()
{
    consumer::ParticleVector particles;
    particles.push_back(consumer::Particle());
    consumer::physics::SpringVector springs(2);
    return particles.size() + springs.size();
}
