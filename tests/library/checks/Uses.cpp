#include <zymData/Buffer.h>

#include <zymLua/generated_container_typedefs.h>

zym::geo::RayVector rays;
