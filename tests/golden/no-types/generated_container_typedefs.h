/* no types */

#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H

#include <zym/Vec2.h>
#include <zym/Vec3.h>
#include <zym/Vec4.h>
#include <zym/Matrix3x3.h>
#include <zym/AffineMatrix4x4.h>
#include <zym/Quat.h>
#include <zym/Uuid.h>


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
