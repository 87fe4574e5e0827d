#include <zym/ByteAllocator.h>
#include <zym/Core.h>

#include <cstdio>
#include <cstdlib>

namespace zym
{

ByteAllocator::ByteAllocator(const ByteAllocator&) = default;

void* ByteAllocator::allocateBytes(std::size_t byteCount, std::size_t alignment)
{
    void* block = nullptr;
    if (::posix_memalign(&block, alignment, byteCount == 0 ? alignment : byteCount) != 0)
    {
        std::fprintf(stderr, "zymCore: out of memory: could not allocate %zu bytes\n", byteCount);
        zym::abort();
    }
    return block;
}

void ByteAllocator::deallocateBytes(void* block, std::size_t) { std::free(block); }

} // namespace zym
