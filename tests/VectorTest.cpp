#include "RecordingAllocator.h"

#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

// An element that writes its copies and destructions into a shared log.
struct Tracked
{
    Tracked(int number, std::vector<std::string>* calls) : value(number), log(calls) {}
    Tracked(const Tracked& other) : value(other.value), log(other.log) { log->push_back("copy " + std::to_string(value)); }
    ~Tracked() { log->push_back("destroy " + std::to_string(value)); }
    Tracked& operator=(const Tracked&) = delete;

    int value;
    std::vector<std::string>* log;
};

} // namespace

TEST(Vector, GrowsToFourThenDoublesAndHandsEveryBlockBackWithItsSize)
{
    std::vector<std::string> calls;
    {
        zym::Vector<std::uint64_t, RecordingAllocator> vector{RecordingAllocator(&calls)};
        std::vector<std::uint64_t> capacities;
        for (std::uint64_t i = 0; i < 33; ++i)
        {
            vector.push_back(i * 3);
            if (capacities.empty() || capacities.back() != vector.capacity())
                capacities.push_back(vector.capacity());
        }
        EXPECT_EQ((std::vector<std::uint64_t>{4, 8, 16, 32, 64}), capacities);
        ASSERT_EQ(33u, vector.size());
        for (std::uint64_t i = 0; i < 33; ++i)
            EXPECT_EQ(i * 3, vector[i]);
    }
    EXPECT_EQ((std::vector<std::string>{"allocate 32 16", "deallocate null 0", "allocate 64 16", "deallocate block 32",
                                        "allocate 128 16", "deallocate block 64", "allocate 256 16",
                                        "deallocate block 128", "allocate 512 16", "deallocate block 256",
                                        "deallocate block 512"}),
              calls);
}

TEST(Vector, ThatNeverGrewAllocatesNothingAndStillHandsBackANullBlock)
{
    std::vector<std::string> calls;
    {
        zym::Vector<std::string, RecordingAllocator> vector{RecordingAllocator(&calls)};
        EXPECT_EQ(0u, vector.size());
        EXPECT_EQ(vector.begin(), vector.end());
    }
    EXPECT_EQ(std::vector<std::string>{"deallocate null 0"}, calls);
}

TEST(Vector, CopiesAllElementsBeforeDestroyingAnyAndKeepsOrderAndRepeats)
{
    std::vector<std::string> log;
    {
        zym::Vector<Tracked, RecordingAllocator> vector;
        for (int value : {1, 2, 1, 3})
            vector.push_back(Tracked(value, &log));
        log.clear();
        vector.push_back(Tracked(5, &log));
        EXPECT_EQ((std::vector<std::string>{"copy 1", "copy 2", "copy 1", "copy 3", "destroy 1", "destroy 2",
                                            "destroy 1", "destroy 3", "copy 5", "destroy 5"}),
                  log);
        log.clear();
    }
    EXPECT_EQ((std::vector<std::string>{"destroy 1", "destroy 2", "destroy 1", "destroy 3", "destroy 5"}), log);
}
