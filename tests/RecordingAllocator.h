#pragma once

#include <zym/ByteAllocator.h>

#include <cstring>
#include <new>
#include <string>
#include <vector>

// Writes each call into a log, if given ("allocate 64 16", "deallocate block 64", "deallocate null 0"),
// overwrites each block it takes back, so that reading a block handed back reads garbage, and
// runs out of memory once `blocksLeft`, if given, reaches zero. Without a log it takes nothing
// from the free store itself.
struct RecordingAllocator
{
    void* allocateBytes(std::size_t bytes, std::size_t alignment)
    {
        if (blocksLeft && (*blocksLeft)-- == 0)
            throw std::bad_alloc();
        if (log)
            log->push_back("allocate " + std::to_string(bytes) + " " + std::to_string(alignment));
        return zym::ByteAllocator().allocateBytes(bytes, alignment);
    }
    void deallocateBytes(void* block, std::size_t bytes)
    {
        if (log)
            log->push_back(std::string(block ? "deallocate block " : "deallocate null ") + std::to_string(bytes));
        zym::ByteAllocator().deallocateBytes(block ? std::memset(block, 0xdd, bytes) : block, bytes);
    }
    std::vector<std::string>* log = nullptr;
    int* blocksLeft = nullptr;
};
