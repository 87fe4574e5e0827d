// The library compiles the typedef header over the container templates and its own types.
#include <zym/Vector.h>
#include <zymData/Array.h>
#include <zymData/Buffer.h>
#include <zymData/Value.h>

#include "Particle.h"

#include <zymLua/generated_container_typedefs.h>

consumer::physics::SpringVector springs;
