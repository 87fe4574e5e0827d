#ifndef ZYMDATA_STAND_IN_FORMAT_H
#define ZYMDATA_STAND_IN_FORMAT_H

#include <cstddef>

namespace zymData
{

// The element layout of a buffer or value. There is one Format per element type, so two
// containers of one element type hand out the same Format.
class Format
{
public:
    template <typename T>
    static Format* of()
    {
        static Format format(sizeof(T));
        return &format;
    }

    Format(const Format&) = delete;
    Format& operator=(const Format&) = delete;

    std::size_t elementSize() const { return elementSize_; }

private:
    explicit Format(std::size_t elementSize) : elementSize_(elementSize) {}

    std::size_t elementSize_;
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_FORMAT_H
