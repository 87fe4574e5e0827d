#ifndef ZYMDATA_STAND_IN_BUFFER_H
#define ZYMDATA_STAND_IN_BUFFER_H

#include <zym/Core.h>
#include <zym/Index.h>
#include <zym/Name.h>
#include <zym/Vector.h>
#include <zymData/Format.h>
#include <zymData/IndexArray.h>
#include <zymData/Referenced.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace zymData
{

// Stand-in for the library's named, reference-counted element buffer.
class Buffer : public Referenced
{
public:
    const zym::Name& name() const { return name_; }

    virtual std::uint64_t size() const = 0;
    virtual Format* getFormat() = 0;

    // Hands changed elements on to the buffer's users. The stand-in has no users: it counts the
    // commits and stops the process on one that names an element the buffer does not have.
    void commit() { ++commits_; }
    void commit(zym::Index index)
    {
        requireElements(static_cast<std::uint64_t>(index) + 1);
        ++commits_;
    }
    void commit(const IndexArray& indices)
    {
        for (const zym::Index index : indices)
            requireElements(static_cast<std::uint64_t>(index) + 1);
        ++commits_;
    }
    void commit(zym::IndexRange32 range)
    {
        if (range.begin > range.end)
            stop("a range that ends before it begins");
        requireElements(range.end);
        ++commits_;
    }
    std::uint64_t commitCount() const { return commits_; }

    void print() const
    {
        std::printf("%s: %llu elements of %zu bytes\n", name_.c_str(), static_cast<unsigned long long>(size()),
                    elementSize());
    }

protected:
    Buffer() = default;
    explicit Buffer(zym::Name name) : name_(std::move(name)) {}
    ~Buffer() override = default;

    virtual std::size_t elementSize() const = 0;

private:
    void requireElements(std::uint64_t count) const
    {
        if (count > size())
            stop("an element behind the end");
    }

    [[noreturn]] void stop(const char* what) const
    {
        std::fprintf(stderr, "Buffer '%s' (%llu elements): commit of %s\n", name_.c_str(),
                     static_cast<unsigned long long>(size()), what);
        zym::abort();
    }

    zym::Name name_;
    std::uint64_t commits_ = 0;
};

// The buffer of one element type.
template <typename T>
class BufferT : public Buffer
{
public:
    BufferT() = default;
    explicit BufferT(zym::Name name) : Buffer(std::move(name)) {}

    const T& at(std::uint64_t index) const { return elements_.at(index); }
    void push_back(const T& value) { elements_.push_back(value); }
    const T& front() const { return elements_.front(); }
    const T& back() const { return elements_.back(); }
    void resize(std::uint64_t count) { elements_.resize(count); }
    void reserve(std::uint64_t count) { elements_.reserve(count); }
    void clear() { elements_.clear(); }
    std::uint64_t size() const override { return elements_.size(); }
    bool empty() const { return elements_.empty(); }

    Format* getFormat() override { return Format::of<T>(); }

protected:
    ~BufferT() override = default;

    std::size_t elementSize() const override { return sizeof(T); }

private:
    zym::Vector<T> elements_;
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_BUFFER_H
