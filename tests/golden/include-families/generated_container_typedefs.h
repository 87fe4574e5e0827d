/* include families */

#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H

#include <zym/Vec2.h>
#include <zym/Vec3.h>
#include <zym/Vec4.h>
#include <zym/Matrix3x3.h>
#include <zym/AffineMatrix4x4.h>
#include <zym/Quat.h>
#include <zym/Uuid.h>

namespace fam
{
  typedef zym::VectorPOD< fam::T0 > T0Vector;
  typedef zymData::Array< fam::T0 > T0Array;
  typedef zymData::BufferT< fam::T0 > T0Buffer;
  typedef zymData::ValueT< fam::T0 > T0Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T1 > T1Vector;
  typedef zymData::Array< fam::T1 > T1Array;
  typedef zymData::BufferT< fam::T1 > T1Buffer;
  typedef zymData::ValueT< fam::T1 > T1Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T2 > T2Vector;
  typedef zymData::Array< fam::T2 > T2Array;
  typedef zymData::BufferT< fam::T2 > T2Buffer;
  typedef zymData::ValueT< fam::T2 > T2Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T3 > T3Vector;
  typedef zymData::Array< fam::T3 > T3Array;
  typedef zymData::BufferT< fam::T3 > T3Buffer;
  typedef zymData::ValueT< fam::T3 > T3Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T4 > T4Vector;
  typedef zymData::Array< fam::T4 > T4Array;
  typedef zymData::BufferT< fam::T4 > T4Buffer;
  typedef zymData::ValueT< fam::T4 > T4Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T5 > T5Vector;
  typedef zymData::Array< fam::T5 > T5Array;
  typedef zymData::BufferT< fam::T5 > T5Buffer;
  typedef zymData::ValueT< fam::T5 > T5Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T6 > T6Vector;
  typedef zymData::Array< fam::T6 > T6Array;
  typedef zymData::BufferT< fam::T6 > T6Buffer;
  typedef zymData::ValueT< fam::T6 > T6Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T7 > T7Vector;
  typedef zymData::Array< fam::T7 > T7Array;
  typedef zymData::BufferT< fam::T7 > T7Buffer;
  typedef zymData::ValueT< fam::T7 > T7Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T8 > T8Vector;
  typedef zymData::Array< fam::T8 > T8Array;
  typedef zymData::BufferT< fam::T8 > T8Buffer;
  typedef zymData::ValueT< fam::T8 > T8Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T9 > T9Vector;
  typedef zymData::Array< fam::T9 > T9Array;
  typedef zymData::BufferT< fam::T9 > T9Buffer;
  typedef zymData::ValueT< fam::T9 > T9Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T10 > T10Vector;
  typedef zymData::Array< fam::T10 > T10Array;
  typedef zymData::BufferT< fam::T10 > T10Buffer;
  typedef zymData::ValueT< fam::T10 > T10Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T11 > T11Vector;
  typedef zymData::Array< fam::T11 > T11Array;
  typedef zymData::BufferT< fam::T11 > T11Buffer;
  typedef zymData::ValueT< fam::T11 > T11Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T12 > T12Vector;
  typedef zymData::Array< fam::T12 > T12Array;
  typedef zymData::BufferT< fam::T12 > T12Buffer;
  typedef zymData::ValueT< fam::T12 > T12Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T13 > T13Vector;
  typedef zymData::Array< fam::T13 > T13Array;
  typedef zymData::BufferT< fam::T13 > T13Buffer;
  typedef zymData::ValueT< fam::T13 > T13Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T14 > T14Vector;
  typedef zymData::Array< fam::T14 > T14Array;
  typedef zymData::BufferT< fam::T14 > T14Buffer;
  typedef zymData::ValueT< fam::T14 > T14Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T15 > T15Vector;
  typedef zymData::Array< fam::T15 > T15Array;
  typedef zymData::BufferT< fam::T15 > T15Buffer;
  typedef zymData::ValueT< fam::T15 > T15Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T16 > T16Vector;
  typedef zymData::Array< fam::T16 > T16Array;
  typedef zymData::BufferT< fam::T16 > T16Buffer;
  typedef zymData::ValueT< fam::T16 > T16Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T17 > T17Vector;
  typedef zymData::Array< fam::T17 > T17Array;
  typedef zymData::BufferT< fam::T17 > T17Buffer;
  typedef zymData::ValueT< fam::T17 > T17Value;
}

namespace fam
{
  typedef zym::VectorPOD< fam::T18 > T18Vector;
  typedef zymData::Array< fam::T18 > T18Array;
  typedef zymData::BufferT< fam::T18 > T18Buffer;
  typedef zymData::ValueT< fam::T18 > T18Value;
}


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
