/* attribute quirks */

#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H

#include <zym/Vec2.h>
#include <zym/Vec3.h>
#include <zym/Vec4.h>
#include <zym/Matrix3x3.h>
#include <zym/AffineMatrix4x4.h>
#include <zym/Quat.h>
#include <zym/Uuid.h>

namespace pod
{
  typedef zym::VectorPOD< pod::Absent > AbsentVector;
  typedef zymData::Array< pod::Absent > AbsentArray;
  typedef zymData::BufferT< pod::Absent > AbsentBuffer;
  typedef zymData::ValueT< pod::Absent > AbsentValue;
}

namespace pod
{
  typedef zym::VectorPOD< pod::True > TrueVector;
  typedef zymData::Array< pod::True > TrueArray;
  typedef zymData::BufferT< pod::True > TrueBuffer;
  typedef zymData::ValueT< pod::True > TrueValue;
}

namespace pod
{
  typedef zym::VectorPOD< pod::Spaced > SpacedVector;
  typedef zymData::Array< pod::Spaced > SpacedArray;
  typedef zymData::BufferT< pod::Spaced > SpacedBuffer;
  typedef zymData::ValueT< pod::Spaced > SpacedValue;
}

namespace pod
{
  typedef zym::VectorPOD< pod::Trailing > TrailingVector;
  typedef zymData::Array< pod::Trailing > TrailingArray;
  typedef zymData::BufferT< pod::Trailing > TrailingBuffer;
  typedef zymData::ValueT< pod::Trailing > TrailingValue;
}

namespace pod
{
  typedef zym::Vector< pod::False > FalseVector;
  typedef zymData::Array< pod::False > FalseArray;
  typedef zymData::BufferT< pod::False > FalseBuffer;
  typedef zymData::ValueT< pod::False > FalseValue;
}

namespace pod
{
  typedef zym::Vector< pod::Falsetto > FalsettoVector;
  typedef zymData::Array< pod::Falsetto > FalsettoArray;
  typedef zymData::BufferT< pod::Falsetto > FalsettoBuffer;
  typedef zymData::ValueT< pod::Falsetto > FalsettoValue;
}

namespace q
{
  typedef zym::VectorPOD< q::Quoted > QuotedVector;
  typedef zymData::Array< q::Quoted > QuotedArray;
  typedef zymData::BufferT< q::Quoted > QuotedBuffer;
  typedef zymData::ValueT< q::Quoted > QuotedValue;
}

namespace order
{
  typedef zym::VectorPOD< order::Reordered > ReorderedVector;
  typedef zymData::Array< order::Reordered > ReorderedArray;
  typedef zymData::BufferT< order::Reordered > ReorderedBuffer;
  typedef zymData::ValueT< order::Reordered > ReorderedValue;
}

namespace ent<ity
{
  typedef zym::VectorPOD< ent<ity::A&BAB > A&BABVector;
  typedef zymData::Array< ent<ity::A&BAB > A&BABArray;
  typedef zymData::BufferT< ent<ity::A&BAB > A&BABBuffer;
  typedef zymData::ValueT< ent<ity::A&BAB > A&BABValue;
}

namespace  n 
{
  typedef zym::VectorPOD<  n ::  spaced   >   spaced  Vector;
  typedef zymData::Array<  n ::  spaced   >   spaced  Array;
  typedef zymData::BufferT<  n ::  spaced   >   spaced  Buffer;
  typedef zymData::ValueT<  n ::  spaced   >   spaced  Value;
}

namespace kids
{
  typedef zym::VectorPOD< kids::Parent > ParentVector;
  typedef zymData::Array< kids::Parent > ParentArray;
  typedef zymData::BufferT< kids::Parent > ParentBuffer;
  typedef zymData::ValueT< kids::Parent > ParentValue;
}

namespace inc
{
  typedef zym::VectorPOD< inc::DefaultAgain > DefaultAgainVector;
  typedef zymData::Array< inc::DefaultAgain > DefaultAgainArray;
  typedef zymData::BufferT< inc::DefaultAgain > DefaultAgainBuffer;
  typedef zymData::ValueT< inc::DefaultAgain > DefaultAgainValue;
}

namespace inc
{
  typedef zym::VectorPOD< inc::Shared1 > Shared1Vector;
  typedef zymData::Array< inc::Shared1 > Shared1Array;
  typedef zymData::BufferT< inc::Shared1 > Shared1Buffer;
  typedef zymData::ValueT< inc::Shared1 > Shared1Value;
}

namespace inc
{
  typedef zym::VectorPOD< inc::Shared2 > Shared2Vector;
  typedef zymData::Array< inc::Shared2 > Shared2Array;
  typedef zymData::BufferT< inc::Shared2 > Shared2Buffer;
  typedef zymData::ValueT< inc::Shared2 > Shared2Value;
}

namespace inc
{
  typedef zym::VectorPOD< inc::EmptyInclude > EmptyIncludeVector;
  typedef zymData::Array< inc::EmptyInclude > EmptyIncludeArray;
  typedef zymData::BufferT< inc::EmptyInclude > EmptyIncludeBuffer;
  typedef zymData::ValueT< inc::EmptyInclude > EmptyIncludeValue;
}


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
