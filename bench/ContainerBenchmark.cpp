// The include set and the name list of the generator against the standard containers, on the same
// keys: inserts per second, and the memory each one holds once all keys are in.
//
// Keys are the include paths of a large type map (as bench/make_type_map.py writes them) or random
// text. Memory counts the containers' own blocks (through a counting allocator for the zym
// containers) and every heap block of the keys they copy (through the global operator new).

#include <zym/HashSet.h>
#include <zym/Vector.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

namespace
{

// What the counted part of a run has allocated: bytes held now, the most ever held, and the calls.
struct HeapCount
{
    bool counting = false;
    std::int64_t live = 0;
    std::int64_t peak = 0;
    std::int64_t calls = 0;

    void add(std::int64_t bytes)
    {
        live += bytes;
        ++calls;
        if (live > peak)
            peak = live;
    }
    void remove(std::int64_t bytes) { live -= bytes; }
};

HeapCount heap;

// A zym allocator that counts its blocks as the global operator new below does, by their usable
// size, and otherwise is the containers' own.
class CountingByteAllocator
{
public:
    void* allocateBytes(std::size_t byteCount, std::size_t alignment)
    {
        void* block = zym::ByteAllocator().allocateBytes(byteCount, alignment);
        heap.add(static_cast<std::int64_t>(malloc_usable_size(block)));
        return block;
    }
    void deallocateBytes(void* block, std::size_t byteCount)
    {
        heap.remove(static_cast<std::int64_t>(malloc_usable_size(block)));
        zym::ByteAllocator().deallocateBytes(block, byteCount);
    }
};

using CountedHashSet = zym::HashSet<String, zym::HashFn<String>, CountingByteAllocator>;
using CountedVector = zym::Vector<String, CountingByteAllocator>;

// Include paths in the form of the benchmark's type maps: "<namespace path>/<Name><index>.h".
std::vector<String> includePaths(std::size_t count)
{
    static const char* const roots[] = {"zym", "zymData", "zymLua", "app", "engine"};
    static const char* const parts[] = {"geo", "render", "physics", "audio", "ui", "net", "anim", "math", "io"};
    static const char* const stems[] = {"Vec", "Matrix", "Quat", "Transform", "Color", "Ray", "Plane", "Light",
                                        "Camera", "Material", "Texture", "Joint", "Pose", "Vertex", "Contact"};
    std::mt19937 random(2026);
    std::vector<String> keys;
    keys.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        String key = roots[random() % 5];
        for (auto depth = random() % 3; depth > 0; --depth)
            key += String("/") + parts[random() % 9];
        key += String("/") + stems[random() % 15] + std::to_string(i) + ".h";
        keys.push_back(key);
    }
    return keys;
}

// Distinct random keys of 6 to 40 letters, digits and slashes.
std::vector<String> randomKeys(std::size_t count)
{
    static const char alphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/";
    std::mt19937 random(7);
    std::unordered_set<std::string> seen;
    std::vector<String> keys;
    keys.reserve(count);
    while (keys.size() < count)
    {
        String key(6 + random() % 35, ' ');
        for (char& character : key)
            character = alphabet[random() % (sizeof alphabet - 1)];
        if (seen.insert(key).second)
            keys.push_back(key);
    }
    return keys;
}

const std::vector<String>& keysFor(const benchmark::State& state)
{
    static std::vector<String> includes, random;
    std::vector<String>& keys = state.range(1) == 0 ? includes : random;
    const std::size_t count = static_cast<std::size_t>(state.range(0));
    if (keys.size() != count)
        keys = state.range(1) == 0 ? includePaths(count) : randomKeys(count);
    return keys;
}

// Runs `fill` once more with the heap counted and puts what it held at its peak into the counters.
template <typename Fill>
void countMemory(benchmark::State& state, std::size_t keyCount, Fill fill)
{
    heap = HeapCount{};
    heap.counting = true;
    fill();
    heap.counting = false;
    state.counters["peak_bytes"] = static_cast<double>(heap.peak);
    state.counters["bytes_per_key"] = static_cast<double>(heap.peak) / static_cast<double>(keyCount);
    state.counters["allocs_per_key"] = static_cast<double>(heap.calls) / static_cast<double>(keyCount);
}

void setLabel(benchmark::State& state)
{
    state.SetLabel(state.range(1) == 0 ? "include paths" : "random keys");
}

void HashSetInsert(benchmark::State& state)
{
    const std::vector<String>& keys = keysFor(state);
    for (auto _ : state)
    {
        HashSet<String> set;
        for (const String& key : keys)
            set.insert(key);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
    countMemory(state, keys.size(), [&] {
        CountedHashSet set;
        for (const String& key : keys)
            set.insert(key);
    });
    setLabel(state);
}

void UnorderedSetInsert(benchmark::State& state)
{
    const std::vector<String>& keys = keysFor(state);
    for (auto _ : state)
    {
        std::unordered_set<std::string> set;
        for (const String& key : keys)
            set.insert(key);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
    countMemory(state, keys.size(), [&] {
        std::unordered_set<std::string> set;
        for (const String& key : keys)
            set.insert(key);
    });
    setLabel(state);
}

void VectorPushBack(benchmark::State& state)
{
    const std::vector<String>& keys = keysFor(state);
    for (auto _ : state)
    {
        Vector<String> vector;
        for (const String& key : keys)
            vector.push_back(key);
        benchmark::DoNotOptimize(vector.size());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
    countMemory(state, keys.size(), [&] {
        CountedVector vector;
        for (const String& key : keys)
            vector.push_back(key);
    });
    setLabel(state);
}

void StdVectorPushBack(benchmark::State& state)
{
    const std::vector<String>& keys = keysFor(state);
    for (auto _ : state)
    {
        std::vector<String> vector;
        for (const String& key : keys)
            vector.push_back(key);
        benchmark::DoNotOptimize(vector.size());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
    countMemory(state, keys.size(), [&] {
        std::vector<String> vector;
        for (const String& key : keys)
            vector.push_back(key);
    });
    setLabel(state);
}

// Key counts: a small map's includes, the includes of maps of 100,000 and 300,000 types.
void keyCounts(benchmark::internal::Benchmark* benchmark)
{
    for (std::int64_t kind : {0, 1})
        for (std::int64_t count : {1000, 33000, 100000})
            benchmark->Args({count, kind});
}

} // namespace

BENCHMARK(HashSetInsert)->Apply(keyCounts)->Unit(benchmark::kMillisecond);
BENCHMARK(UnorderedSetInsert)->Apply(keyCounts)->Unit(benchmark::kMillisecond);
BENCHMARK(VectorPushBack)->Apply(keyCounts)->Unit(benchmark::kMillisecond);
BENCHMARK(StdVectorPushBack)->Apply(keyCounts)->Unit(benchmark::kMillisecond);

// Every heap block of the process passes here; only the counted part of a run is added up.
// operator new takes its blocks from malloc, so operator delete hands them to free.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size)
{
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    if (heap.counting)
        heap.add(static_cast<std::int64_t>(malloc_usable_size(block)));
    return block;
}

void operator delete(void* block) noexcept
{
    if (block != nullptr && heap.counting)
        heap.remove(static_cast<std::int64_t>(malloc_usable_size(block)));
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

BENCHMARK_MAIN();
