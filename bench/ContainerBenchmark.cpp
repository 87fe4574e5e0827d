// The include set and the name list against the standard containers on the same keys: the best
// of five runs in keys per microsecond, and the bytes of the containers' own blocks per key once
// all keys are in (the keys' own blocks are the same for both).
//
//   ContainerBenchmark [key count]

#include <zym/HashSet.h>
#include <zym/Vector.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <unordered_set>
#include <vector>

namespace
{

std::size_t heldBytes = 0; // by the blocks of the zym containers

struct CountingAllocator
{
    void* allocateBytes(std::size_t bytes, std::size_t alignment)
    {
        heldBytes += bytes;
        return zym::ByteAllocator().allocateBytes(bytes, alignment);
    }
    void deallocateBytes(void* block, std::size_t bytes)
    {
        heldBytes -= bytes;
        zym::ByteAllocator().deallocateBytes(block, bytes);
    }
};

// Include paths in the form of the benchmark's type maps, "<namespace path>/<Name><index>.h".
std::vector<String> includePaths(std::size_t count)
{
    static const char* const parts[] = {"zym", "zymData", "geo", "render", "physics", "audio", "ui", "math"};
    std::mt19937 random(2026);
    std::vector<String> keys;
    for (std::size_t i = 0; i < count; ++i)
        keys.push_back(String(parts[random() % 2]) + "/" + parts[2 + random() % 6] + "/Type" + std::to_string(i) +
                       ".h");
    return keys;
}

// Fills a new container of each kind with all keys, five times; the best time in keys per microsecond.
template <typename Container, typename Add>
double keysPerMicrosecond(const std::vector<String>& keys, Add add)
{
    double best = 1e300;
    for (int run = 0; run < 5; ++run)
    {
        const auto start = std::chrono::steady_clock::now();
        Container container;
        for (const String& key : keys)
            add(container, key);
        best =
            std::min(best, std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    return static_cast<double>(keys.size()) / best;
}

} // namespace

int main(int argc, char** argv)
{
    const std::size_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 100000;
    const std::vector<String> keys = includePaths(count);
    using Set = zym::HashSet<String, zym::HashFn<String>, CountingAllocator>;
    using List = zym::Vector<String, CountingAllocator>;
    const auto insert = [](auto& set, const String& key) { set.insert(key); };
    const auto pushBack = [](auto& list, const String& key) { list.push_back(key); };

    std::printf("| container | keys | zym keys/us | std keys/us | zym block bytes/key |\n|---|---|---|---|---|\n");
    std::printf("| HashSet, std::unordered_set | %zu | %.1f | %.1f |", count, keysPerMicrosecond<Set>(keys, insert),
                keysPerMicrosecond<std::unordered_set<std::string>>(keys, insert));
    {
        Set set;
        for (const String& key : keys)
            set.insert(key);
        std::printf(" %.1f |\n", static_cast<double>(heldBytes) / static_cast<double>(count));
    }
    std::printf("| Vector, std::vector | %zu | %.1f | %.1f |", count, keysPerMicrosecond<List>(keys, pushBack),
                keysPerMicrosecond<std::vector<std::string>>(keys, pushBack));
    List list;
    for (const String& key : keys)
        list.push_back(key);
    std::printf(" %.1f |\n", static_cast<double>(heldBytes) / static_cast<double>(count));
    return 0;
}
