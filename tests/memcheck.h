
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
  typedef zym::VectorPOD< zym::Vec2 > Vec2Vector;
  typedef zymData::Array< zym::Vec2 > Vec2Array;
  typedef zymData::BufferT< zym::Vec2 > Vec2Buffer;
  typedef zymData::ValueT< zym::Vec2 > Vec2Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Vec3 > Vec3Vector;
  typedef zymData::Array< zym::Vec3 > Vec3Array;
  typedef zymData::BufferT< zym::Vec3 > Vec3Buffer;
  typedef zymData::ValueT< zym::Vec3 > Vec3Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Vec4 > Vec4Vector;
  typedef zymData::Array< zym::Vec4 > Vec4Array;
  typedef zymData::BufferT< zym::Vec4 > Vec4Buffer;
  typedef zymData::ValueT< zym::Vec4 > Vec4Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Quat > QuatVector;
  typedef zymData::Array< zym::Quat > QuatArray;
  typedef zymData::BufferT< zym::Quat > QuatBuffer;
  typedef zymData::ValueT< zym::Quat > QuatValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Matrix3x3 > Matrix3x3Vector;
  typedef zymData::Array< zym::Matrix3x3 > Matrix3x3Array;
  typedef zymData::BufferT< zym::Matrix3x3 > Matrix3x3Buffer;
  typedef zymData::ValueT< zym::Matrix3x3 > Matrix3x3Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::AffineMatrix4x4 > AffineMatrix4x4Vector;
  typedef zymData::Array< zym::AffineMatrix4x4 > AffineMatrix4x4Array;
  typedef zymData::BufferT< zym::AffineMatrix4x4 > AffineMatrix4x4Buffer;
  typedef zymData::ValueT< zym::AffineMatrix4x4 > AffineMatrix4x4Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Uuid > UuidVector;
  typedef zymData::Array< zym::Uuid > UuidArray;
  typedef zymData::BufferT< zym::Uuid > UuidBuffer;
  typedef zymData::ValueT< zym::Uuid > UuidValue;
}

namespace zym
{
  typedef zym::Vector< zym::String > StringVector;
  typedef zymData::Array< zym::String > StringArray;
  typedef zymData::BufferT< zym::String > StringBuffer;
  typedef zymData::ValueT< zym::String > StringValue;
}

namespace zym
{
  typedef zym::Vector< zym::Name > NameVector;
  typedef zymData::Array< zym::Name > NameArray;
  typedef zymData::BufferT< zym::Name > NameBuffer;
  typedef zymData::ValueT< zym::Name > NameValue;
}

namespace zym
{
  namespace render
  {
    typedef zym::VectorPOD< zym::render::Color > ColorVector;
    typedef zymData::Array< zym::render::Color > ColorArray;
    typedef zymData::BufferT< zym::render::Color > ColorBuffer;
    typedef zymData::ValueT< zym::render::Color > ColorValue;
  }
}

namespace zym
{
  namespace geo
  {
    typedef zym::VectorPOD< zym::geo::Ray > RayVector;
    typedef zymData::Array< zym::geo::Ray > RayArray;
    typedef zymData::BufferT< zym::geo::Ray > RayBuffer;
    typedef zymData::ValueT< zym::geo::Ray > RayValue;
  }
}

namespace zym
{
  namespace geo
  {
    typedef zym::VectorPOD< zym::geo::BoundingBox > BoundingBoxVector;
    typedef zymData::Array< zym::geo::BoundingBox > BoundingBoxArray;
    typedef zymData::BufferT< zym::geo::BoundingBox > BoundingBoxBuffer;
    typedef zymData::ValueT< zym::geo::BoundingBox > BoundingBoxValue;
  }
}


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
