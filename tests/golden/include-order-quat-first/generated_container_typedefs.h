
#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H

#include <zym/Vec2.h>
#include <zym/Vec3.h>
#include <zym/Vec4.h>
#include <zym/Matrix3x3.h>
#include <zym/AffineMatrix4x4.h>
#include <zym/Quat.h>
#include <zym/Uuid.h>

namespace zym
{
  typedef zym::VectorPOD< zym::Quat > QuatVector;
  typedef zymData::Array< zym::Quat > QuatArray;
  typedef zymData::BufferT< zym::Quat > QuatBuffer;
  typedef zymData::ValueT< zym::Quat > QuatValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Vec3 > Vec3Vector;
  typedef zymData::Array< zym::Vec3 > Vec3Array;
  typedef zymData::BufferT< zym::Vec3 > Vec3Buffer;
  typedef zymData::ValueT< zym::Vec3 > Vec3Value;
}


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
