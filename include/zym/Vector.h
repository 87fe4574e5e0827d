#ifndef ZYM_VECTOR_H
#define ZYM_VECTOR_H

#include <zym/ByteAllocator.h>
#include <zym/Core.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace zym
{

namespace vector_detail
{

// The stop of at(), front() and back() outside the elements: a message, then zym::abort().
[[noreturn]] inline void indexOutOfRange(const char* operation, std::uint64_t index, std::uint64_t size)
{
    std::fprintf(stderr, "Vector::%s: index %llu is out of range (size %llu)\n", operation,
                 static_cast<unsigned long long>(index), static_cast<unsigned long long>(size));
    zym::abort();
}

} // namespace vector_detail

// A growable array whose block comes from its own allocator. Growth moves the elements into the
// new block before it destroys the old ones. A size beyond what memory can address throws
// std::length_error, as the standard vector does.
template <typename T, typename Allocator = ByteAllocator>
class Vector
{
public:
    explicit Vector(const Allocator& allocator = Allocator()) : allocator_(allocator) {}

    // `size` default-constructed elements in a block of exactly that many. Where an element's
    // constructor throws, those made are destroyed and the block handed back.
    explicit Vector(std::uint64_t size, const Allocator& allocator = Allocator()) : allocator_(allocator)
    {
        try
        {
            resize(size);
        }
        catch (...)
        {
            destroyAndDeallocate();
            throw;
        }
    }

    Vector(const Vector&) = delete;
    Vector& operator=(const Vector&) = delete;

    ~Vector() { destroyAndDeallocate(); }

    void push_back(const T& value) { append(value); }
    void push_back(T&& value) { append(std::move(value)); }

    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }

    T& operator[](std::uint64_t index) { return data_[index]; }
    const T& operator[](std::uint64_t index) const { return data_[index]; }

    const T* begin() const { return data_; }
    const T* end() const { return data_ + size_; }

    bool empty() const { return size_ == 0; }

    // Checked access: an index outside the elements stops the process with a message.
    T& at(std::uint64_t index)
    {
        checkIndex("at", index);
        return data_[index];
    }
    const T& at(std::uint64_t index) const
    {
        checkIndex("at", index);
        return data_[index];
    }

    T& front()
    {
        checkIndex("front", 0);
        return data_[0];
    }
    const T& front() const
    {
        checkIndex("front", 0);
        return data_[0];
    }

    T& back()
    {
        checkIndex("back", size_ == 0 ? 0 : size_ - 1);
        return data_[size_ - 1];
    }
    const T& back() const
    {
        checkIndex("back", size_ == 0 ? 0 : size_ - 1);
        return data_[size_ - 1];
    }

    // A block of exactly `capacity` elements, if the current one holds fewer; never shrinks.
    void reserve(std::uint64_t capacity)
    {
        if (capacity > capacity_)
            relocate(capacity);
    }

    // Destroys the elements behind `size`, in index order, or default-constructs the missing
    // ones; a block that is too small is first replaced by one of exactly `size` elements.
    void resize(std::uint64_t size)
    {
        if (size < size_)
        {
            for (std::uint64_t i = size; i < size_; ++i)
                data_[i].~T();
            size_ = size;
            return;
        }
        reserve(size);
        for (; size_ < size; ++size_)
            new (data_ + size_) T();
    }

    // Destroys all elements in index order and keeps the block.
    void clear() { resize(0); }

private:
    void destroyAndDeallocate()
    {
        destroy(data_, size_);
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
    }

    template <typename Value>
    void append(Value&& value)
    {
        if (size_ == capacity_)
            relocate<Value&&>(grownCapacity(), &value);
        else
        {
            new (data_ + size_) T(std::forward<Value>(value));
            ++size_;
        }
    }

    void checkIndex(const char* operation, std::uint64_t index) const
    {
        if (index >= size_)
            vector_detail::indexOutOfRange(operation, index, size_);
    }

    // Moves the elements into a new block of `newCapacity` elements, all of them before destroying
    // any, and hands the old block back with its size; elements whose moves may throw are copied.
    // `appended`, if given, is copied behind them first, while the old elements still stand, since
    // it may be one of them, copied or moved as it was given. A copy that throws leaves the vector
    // as it was.
    template <typename Value = const T&>
    void relocate(std::uint64_t newCapacity, std::remove_reference_t<Value>* appended = nullptr)
    {
        if (newCapacity > maxSize())
            throw std::length_error("Vector: cannot hold " + std::to_string(newCapacity) + " elements");
        T* const block = static_cast<T*>(allocator_.allocateBytes(newCapacity * sizeof(T), 16));
        std::uint64_t copied = 0;
        bool appendedCopied = false;
        try
        {
            if (appended != nullptr)
            {
                new (block + size_) T(std::forward<Value>(*appended));
                appendedCopied = true;
            }
            for (; copied < size_; ++copied)
                new (block + copied) T(std::move_if_noexcept(data_[copied]));
        }
        catch (...)
        {
            destroy(block, copied);
            if (appendedCopied)
                block[size_].~T();
            allocator_.deallocateBytes(block, newCapacity * sizeof(T));
            throw;
        }

        destroy(data_, size_);
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
        data_ = block;
        capacity_ = newCapacity;
        if (appendedCopied)
            ++size_;
    }

    static void destroy(T* elements, std::uint64_t count)
    {
        for (std::uint64_t i = 0; i < count; ++i)
            elements[i].~T();
    }

    static constexpr std::uint64_t maxSize() { return std::numeric_limits<std::size_t>::max() / sizeof(T); }

    // Doubling in single precision, as the library has always grown its arrays.
    std::uint64_t grownCapacity() const
    {
        const float doubled = static_cast<float>(size_) * 2.0f;
        const std::uint64_t newCapacity = static_cast<std::uint64_t>(doubled);
        return newCapacity < 4 ? 4 : newCapacity;
    }

    std::uint64_t size_ = 0;
    std::uint64_t capacity_ = 0;
    T* data_ = nullptr;
    Allocator allocator_;
};

// The Vector of element types that are plain data, as the typedef header names it for them.
template <typename T, typename Allocator = ByteAllocator>
class VectorPOD : public Vector<T, Allocator>
{
    static_assert(std::is_trivially_copyable<T>::value && std::is_trivially_destructible<T>::value,
                  "VectorPOD holds trivially copyable, trivially destructible elements; use Vector");

public:
    using Vector<T, Allocator>::Vector;
};

} // namespace zym

template <typename T>
using Vector = zym::Vector<T, zym::ByteAllocator>;

#endif // ZYM_VECTOR_H
