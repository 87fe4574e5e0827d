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

// A growable array whose block comes from its own allocator. Growth builds the elements in the
// new block before it destroys the old ones; a copy that throws leaves the vector as it was. A
// size beyond what memory can address throws std::length_error, as the standard vector does.
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
            destroy(data_, size_);
            allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
            throw;
        }
    }

    Vector(const Vector&) = delete;
    Vector& operator=(const Vector&) = delete;

    ~Vector()
    {
        destroy(data_, size_);
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
        data_ = nullptr;
        capacity_ = 0;
        size_ = 0;
    }

    void push_back(const T& value) { emplaceBack(value); }
    void push_back(T&& value) { emplaceBack(std::move(value)); }

    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }
    bool empty() const { return size_ == 0; }

    T& operator[](std::uint64_t index) { return data_[index]; }
    const T& operator[](std::uint64_t index) const { return data_[index]; }

    const T* begin() const { return data_; }
    const T* end() const { return data_ + size_; }

    // Checked access: an index outside the elements stops the process with a message.
    T& at(std::uint64_t index) { return data_[checked("at", index)]; }
    const T& at(std::uint64_t index) const { return data_[checked("at", index)]; }
    T& front() { return data_[checked("front", 0)]; }
    const T& front() const { return data_[checked("front", 0)]; }
    T& back() { return data_[checked("back", size_ == 0 ? 0 : size_ - 1)]; }
    const T& back() const { return data_[checked("back", size_ == 0 ? 0 : size_ - 1)]; }

    // A block of exactly `capacity` elements, if the current one holds fewer; never shrinks.
    void reserve(std::uint64_t capacity)
    {
        if (capacity <= capacity_)
            return;
        T* const block = allocateBlock(capacity);
        moveElementsInto(block, capacity, 0);
        replaceBlock(block, capacity);
    }

    // Destroys the elements behind `size`, in index order, or default-constructs the missing
    // ones; a block that is too small is first replaced by one of exactly `size` elements.
    void resize(std::uint64_t size)
    {
        if (size < size_)
        {
            destroy(data_ + size, size_ - size);
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
    template <typename Value>
    void emplaceBack(Value&& value)
    {
        if (size_ == capacity_)
            return growAndEmplaceBack(std::forward<Value>(value));
        new (data_ + size_) T(std::forward<Value>(value));
        ++size_;
    }

    // The value goes into the new block first, while the old elements still stand: it may be one
    // of them. Then the old elements follow it over, and only then does the old block go.
    template <typename Value>
    void growAndEmplaceBack(Value&& value)
    {
        const std::uint64_t newCapacity = grownCapacity();
        T* const block = allocateBlock(newCapacity);
        try
        {
            new (block + size_) T(std::forward<Value>(value));
        }
        catch (...)
        {
            allocator_.deallocateBytes(block, newCapacity * sizeof(T));
            throw;
        }
        moveElementsInto(block, newCapacity, 1);
        replaceBlock(block, newCapacity);
        ++size_;
    }

    // Doubling in single precision, and at least 4.
    std::uint64_t grownCapacity() const
    {
        const auto doubled = static_cast<std::uint64_t>(static_cast<float>(size_) * 2.0f);
        return doubled < 4 ? 4 : doubled;
    }

    T* allocateBlock(std::uint64_t capacity)
    {
        if (capacity > std::numeric_limits<std::size_t>::max() / sizeof(T))
            throw std::length_error("Vector: cannot hold " + std::to_string(capacity) + " elements");
        return static_cast<T*>(allocator_.allocateBytes(capacity * sizeof(T), 16));
    }

    // Moves the elements into `block`, index 0 upward, or copies them where a move could throw. A
    // copy that throws destroys what was made in the block, with the `extra` elements behind, and
    // hands the block back.
    void moveElementsInto(T* block, std::uint64_t blockCapacity, std::uint64_t extra)
    {
        std::uint64_t made = 0;
        try
        {
            for (; made < size_; ++made)
                new (block + made) T(std::move_if_noexcept(data_[made]));
        }
        catch (...)
        {
            destroy(block, made);
            destroy(block + size_, extra);
            allocator_.deallocateBytes(block, blockCapacity * sizeof(T));
            throw;
        }
    }

    // Destroys the old elements, hands their block back with its size and takes `block` instead.
    void replaceBlock(T* block, std::uint64_t blockCapacity)
    {
        destroy(data_, size_);
        allocator_.deallocateBytes(data_, capacity_ * sizeof(T));
        data_ = block;
        capacity_ = blockCapacity;
    }

    static void destroy(T* elements, std::uint64_t count)
    {
        for (std::uint64_t i = 0; i < count; ++i)
            elements[i].~T();
    }

    std::uint64_t checked(const char* operation, std::uint64_t index) const
    {
        if (index >= size_)
        {
            std::fprintf(stderr, "Vector::%s: index %llu is out of range (size %llu)\n", operation,
                         static_cast<unsigned long long>(index), static_cast<unsigned long long>(size_));
            zym::abort();
        }
        return index;
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
