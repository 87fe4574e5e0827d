#ifndef ZYM_TESTS_RECORDINGALLOCATOR_H
#define ZYM_TESTS_RECORDINGALLOCATOR_H

#include <zym/ByteAllocator.h>

#include <cstddef>
#include <string>
#include <vector>

// An allocator that writes each call into a shared log ("allocate 64 16", "deallocate 0 0"),
// with the byte count, so that tests can hold a container's calls against the expected ones.
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
