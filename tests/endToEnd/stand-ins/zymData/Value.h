#ifndef ZYMDATA_STAND_IN_VALUE_H
#define ZYMDATA_STAND_IN_VALUE_H

#include <zym/Name.h>
#include <zymData/Format.h>
#include <zymData/Referenced.h>

#include <type_traits>
#include <utility>

namespace zymData
{

// Stand-in for the library's named, reference-counted single value.
class Value : public Referenced
{
public:
    const zym::Name& name() const { return name_; }

    virtual Format* getFormat() = 0;

protected:
    Value() = default;
    explicit Value(zym::Name name) : name_(std::move(name)) {}
    ~Value() override = default;

private:
    zym::Name name_;
};

// The value of one element type.
template <typename T>
class ValueT : public Value
{
public:
    ValueT() = default;
    explicit ValueT(zym::Name name) : Value(std::move(name)) {}

    // A value of names made from one name takes it as its own name, as the constructor above
    // does; only the two-argument constructor gives it a value.
    template <typename U = T, typename = std::enable_if_t<!std::is_same<U, zym::Name>::value>>
    explicit ValueT(const T& value) : value_(value)
    {
    }

    ValueT(zym::Name name, const T& value) : Value(std::move(name)), value_(value) {}

    void set(const T& value) { value_ = value; }
    const T& get() const { return value_; }

    Format* getFormat() override { return Format::of<T>(); }

protected:
    ~ValueT() override = default;

private:
    T value_{};
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_VALUE_H
