// namespaces, and a banner without a newline
#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H

#include <zym/Vec2.h>
#include <zym/Vec3.h>
#include <zym/Vec4.h>
#include <zym/Matrix3x3.h>
#include <zym/AffineMatrix4x4.h>
#include <zym/Quat.h>
#include <zym/Uuid.h>

namespace 
{
  typedef zym::VectorPOD< ::Global > GlobalVector;
  typedef zymData::Array< ::Global > GlobalArray;
  typedef zymData::BufferT< ::Global > GlobalBuffer;
  typedef zymData::ValueT< ::Global > GlobalValue;
}

namespace 
{
  namespace a
  {
    typedef zym::VectorPOD< ::a::Leading > LeadingVector;
    typedef zymData::Array< ::a::Leading > LeadingArray;
    typedef zymData::BufferT< ::a::Leading > LeadingBuffer;
    typedef zymData::ValueT< ::a::Leading > LeadingValue;
  }
}

namespace a
{
  namespace 
  {
    typedef zym::VectorPOD< a::::Trailing > TrailingVector;
    typedef zymData::Array< a::::Trailing > TrailingArray;
    typedef zymData::BufferT< a::::Trailing > TrailingBuffer;
    typedef zymData::ValueT< a::::Trailing > TrailingValue;
  }
}

namespace a
{
  namespace 
  {
    namespace b
    {
      typedef zym::VectorPOD< a::::b::Repeated > RepeatedVector;
      typedef zymData::Array< a::::b::Repeated > RepeatedArray;
      typedef zymData::BufferT< a::::b::Repeated > RepeatedBuffer;
      typedef zymData::ValueT< a::::b::Repeated > RepeatedValue;
    }
  }
}

namespace P
{
  typedef zym::VectorPOD< P::Q::R > Q::RVector;
  typedef zymData::Array< P::Q::R > Q::RArray;
  typedef zymData::BufferT< P::Q::R > Q::RBuffer;
  typedef zymData::ValueT< P::Q::R > Q::RValue;
}

namespace unnamed
{
  typedef zym::VectorPOD< unnamed:: > Vector;
  typedef zymData::Array< unnamed:: > Array;
  typedef zymData::BufferT< unnamed:: > Buffer;
  typedef zymData::ValueT< unnamed:: > Value;
}

namespace geo
{
  namespace shape
  {
    namespace solid
    {
      typedef zym::VectorPOD< geo::shape::solid::Deep > DeepVector;
      typedef zymData::Array< geo::shape::solid::Deep > DeepArray;
      typedef zymData::BufferT< geo::shape::solid::Deep > DeepBuffer;
      typedef zymData::ValueT< geo::shape::solid::Deep > DeepValue;
    }
  }
}

namespace zym
{
  typedef zym::VectorPOD< zym::String > StringVector;
  typedef zymData::Array< zym::String > StringArray;
  typedef zymData::BufferT< zym::String > StringBuffer;
  typedef zymData::ValueT< zym::String > StringValue;
}

namespace 
{
  typedef zym::VectorPOD< ::String > StringVector;
  typedef zymData::Array< ::String > StringArray;
  typedef zymData::BufferT< ::String > StringBuffer;
  typedef zymData::ValueT< ::String > StringValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::string > stringVector;
  typedef zymData::Array< zym::string > stringArray;
  typedef zymData::BufferT< zym::string > stringBuffer;
  typedef zymData::ValueT< zym::string > stringValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::STRING > STRINGVector;
  typedef zymData::Array< zym::STRING > STRINGArray;
  typedef zymData::BufferT< zym::STRING > STRINGBuffer;
  typedef zymData::ValueT< zym::STRING > STRINGValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Strings > StringsVector;
  typedef zymData::Array< zym::Strings > StringsArray;
  typedef zymData::BufferT< zym::Strings > StringsBuffer;
  typedef zymData::ValueT< zym::Strings > StringsValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::MyString > MyStringVector;
  typedef zymData::Array< zym::MyString > MyStringArray;
  typedef zymData::BufferT< zym::MyString > MyStringBuffer;
  typedef zymData::ValueT< zym::MyString > MyStringValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::String  > String Vector;
  typedef zymData::Array< zym::String  > String Array;
  typedef zymData::BufferT< zym::String  > String Buffer;
  typedef zymData::ValueT< zym::String  > String Value;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Twice > TwiceVector;
  typedef zymData::Array< zym::Twice > TwiceArray;
  typedef zymData::BufferT< zym::Twice > TwiceBuffer;
  typedef zymData::ValueT< zym::Twice > TwiceValue;
}

namespace zym
{
  typedef zym::VectorPOD< zym::Twice > TwiceVector;
  typedef zymData::Array< zym::Twice > TwiceArray;
  typedef zymData::BufferT< zym::Twice > TwiceBuffer;
  typedef zymData::ValueT< zym::Twice > TwiceValue;
}


#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H
