#ifndef ZYM_VECTOR_H
#define ZYM_VECTOR_H

#include <zym/ByteAllocator.h>

#include <cstdint>
#include <new>

namespace zym
{

// A growable array whose block comes from its own allocator. Growth copies the elements into
// the new block before it destroys the old ones.
template <typename T, typename Allocator>
class Vector
{
public:
    explicit Vector(const Allocator& allocator = Allocator()) : allocator_(allocator) {}

    Vector(const Vector&) = delete;
    Vector& operator=(const Vector&) = delete;

    ~Vector()
    {
        for (std::uint64_t i = 0; i < size_; ++i)
            data_[i].~T();
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
        data_ = nullptr;
        capacity_ = 0;
        size_ = 0;
    }

    void push_back(const T& value)
    {
        if (size_ == capacity_)
            grow();
        new (data_ + size_) T(value);
        ++size_;
    }

    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }

    T& operator[](std::uint64_t index) { return data_[index]; }
    const T& operator[](std::uint64_t index) const { return data_[index]; }

    const T* begin() const { return data_; }
    const T* end() const { return data_ + size_; }

private:
    void grow()
    {
        // Doubling in single precision, as the library has always grown its arrays.
        const float doubled = static_cast<float>(size_) * 2.0f;
        std::uint64_t newCapacity = static_cast<std::uint64_t>(doubled);
        if (newCapacity < 4)
            newCapacity = 4;

        T* block = static_cast<T*>(allocator_.allocateBytes(newCapacity * sizeof(T), 16));
        for (std::uint64_t i = 0; i < size_; ++i)
            new (block + i) T(data_[i]);
        for (std::uint64_t i = 0; i < size_; ++i)
            data_[i].~T();
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
        data_ = block;
        capacity_ = newCapacity;
    }

    std::uint64_t size_ = 0;
    std::uint64_t capacity_ = 0;
    T* data_ = nullptr;
    Allocator allocator_;
};

} // namespace zym

template <typename T>
using Vector = zym::Vector<T, zym::ByteAllocator>;

#endif // ZYM_VECTOR_H
