#ifndef ZYM_TESTS_RECORDINGALLOCATOR_H
#define ZYM_TESTS_RECORDINGALLOCATOR_H

#include <zym/ByteAllocator.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

// An allocator that writes each call into a shared log ("allocate 64 16", "deallocate block 64",
// "deallocate null 0"), so that tests can hold a container's calls against the expected ones. It
// overwrites each block it takes back, so that a container that reads a block it has handed back
// reads garbage.
class RecordingAllocator
{
public:
    explicit RecordingAllocator(std::vector<std::string>* calls = nullptr) : log(calls) {}

    void* allocateBytes(std::size_t byteCount, std::size_t alignment)
    {
        record("allocate " + std::to_string(byteCount) + " " + std::to_string(alignment));
        return zym::ByteAllocator().allocateBytes(byteCount, alignment);
    }

    void deallocateBytes(void* block, std::size_t byteCount)
    {
        record(std::string("deallocate ") + (block ? "block " : "null ") + std::to_string(byteCount));
        if (block != nullptr)
            std::memset(block, 0xdd, byteCount);
        zym::ByteAllocator().deallocateBytes(block, byteCount);
    }

private:
    void record(const std::string& call)
    {
        if (log)
            log->push_back(call);
    }

    std::vector<std::string>* log;
};

#endif // ZYM_TESTS_RECORDINGALLOCATOR_H
