#ifndef ZYM_BYTEALLOCATOR_H
#define ZYM_BYTEALLOCATOR_H

#include <cstddef>

namespace zym
{

// Raw memory for the containers. Running out of memory is an orderly stop with a message,
// never a null result, so callers build their elements in the block without a test.
class ByteAllocator
{
public:
    ByteAllocator() = default;
    ByteAllocator(const ByteAllocator& other);

    void* allocateBytes(std::size_t byteCount, std::size_t alignment);
    void deallocateBytes(void* block, std::size_t byteCount);
};

} // namespace zym

#endif // ZYM_BYTEALLOCATOR_H
