#ifndef ZYMDATA_STAND_IN_ARRAY_H
#define ZYMDATA_STAND_IN_ARRAY_H

#include <zym/Core.h>

#include <cstdint>
#include <cstdio>

namespace zymData
{

// Stand-in for the library's read-only array: a view of elements that someone else owns.
// Made from Lua it views nothing.
template <typename T>
class Array
{
public:
    Array() = default;
    Array(const T* elements, std::uint64_t count) : elements_(elements), size_(count) {}

    const T& at(std::uint64_t index) const
    {
        if (index >= size_)
        {
            std::fprintf(stderr, "Array::at: index %llu is out of range (size %llu)\n",
                         static_cast<unsigned long long>(index), static_cast<unsigned long long>(size_));
            zym::abort();
        }
        return elements_[index];
    }
    const T& front() const { return at(0); }
    const T& back() const { return at(size_ == 0 ? 0 : size_ - 1); }

    std::uint64_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

private:
    const T* elements_ = nullptr;
    std::uint64_t size_ = 0;
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_ARRAY_H
