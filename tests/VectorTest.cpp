#include "RecordingAllocator.h"

#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

// An element that writes its constructions, copies and destructions into a shared log; a
// default-constructed one writes into the log that `defaultLog` points at.
std::vector<std::string>* defaultLog = nullptr;

struct Tracked
{
    Tracked() : value(0), log(defaultLog) { log->push_back("default"); }
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
        EXPECT_EQ((std::vector<std::string>{"copy 5", "copy 1", "copy 2", "copy 1", "copy 3", "destroy 1",
                                            "destroy 2", "destroy 1", "destroy 3", "destroy 5"}),
                  log);
        log.clear();
    }
    EXPECT_EQ((std::vector<std::string>{"destroy 1", "destroy 2", "destroy 1", "destroy 3", "destroy 5"}), log);
}

// The operations that the Lua bindings call.

TEST(VectorOperations, SizedConstructorMakesThatManyDefaultElementsInABlockOfExactlyThatSize)
{
    std::vector<std::string> calls;
    {
        zym::Vector<std::string, RecordingAllocator> vector(3, RecordingAllocator(&calls));
        EXPECT_EQ(3u, vector.size());
        EXPECT_EQ(3u, vector.capacity());
        for (std::uint64_t i = 0; i < 3; ++i)
            EXPECT_EQ("", vector.at(i));
        EXPECT_EQ((std::vector<std::string>{"allocate 96 16", "deallocate null 0"}), calls);
        calls.clear();
    }
    EXPECT_EQ((std::vector<std::string>{"deallocate block 96"}), calls);
}

TEST(VectorOperations, ReserveTakesABlockOfExactlyTheRequestAndCopiesAllBeforeDestroyingAny)
{
    std::vector<std::string> calls;
    std::vector<std::string> log;
    zym::Vector<Tracked, RecordingAllocator> vector{RecordingAllocator(&calls)};
    vector.push_back(Tracked(1, &log));
    vector.push_back(Tracked(2, &log));
    calls.clear();
    log.clear();

    vector.reserve(7);
    EXPECT_EQ(7u, vector.capacity());
    EXPECT_EQ(2u, vector.size());
    EXPECT_EQ((std::vector<std::string>{"allocate " + std::to_string(7 * sizeof(Tracked)) + " 16",
                                        "deallocate block " + std::to_string(4 * sizeof(Tracked))}),
              calls);
    EXPECT_EQ((std::vector<std::string>{"copy 1", "copy 2", "destroy 1", "destroy 2"}), log);
    EXPECT_EQ(1, vector.at(0).value);
    EXPECT_EQ(2, vector.at(1).value);

    calls.clear();
    log.clear();
    vector.reserve(7);
    vector.reserve(3);
    EXPECT_EQ(7u, vector.capacity());
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(log.empty());
}

TEST(VectorOperations, ResizeDestroysTheTailInIndexOrderOrDefaultConstructsTheMissingElements)
{
    std::vector<std::string> calls;
    std::vector<std::string> log;
    defaultLog = &log;
    zym::Vector<Tracked, RecordingAllocator> vector{RecordingAllocator(&calls)};
    for (int value : {1, 2, 3, 4})
        vector.push_back(Tracked(value, &log));
    calls.clear();
    log.clear();

    vector.resize(2);
    EXPECT_EQ(2u, vector.size());
    EXPECT_EQ(4u, vector.capacity());
    EXPECT_EQ((std::vector<std::string>{"destroy 3", "destroy 4"}), log);
    EXPECT_TRUE(calls.empty());

    log.clear();
    vector.resize(4);
    EXPECT_EQ((std::vector<std::string>{"default", "default"}), log);
    EXPECT_TRUE(calls.empty());

    log.clear();
    vector.resize(6);
    EXPECT_EQ(6u, vector.size());
    EXPECT_EQ(6u, vector.capacity());
    EXPECT_EQ((std::vector<std::string>{"copy 1", "copy 2", "copy 0", "copy 0", "destroy 1", "destroy 2",
                                        "destroy 0", "destroy 0", "default", "default"}),
              log);
    EXPECT_EQ((std::vector<std::string>{"allocate " + std::to_string(6 * sizeof(Tracked)) + " 16",
                                        "deallocate block " + std::to_string(4 * sizeof(Tracked))}),
              calls);
    EXPECT_EQ(1, vector.front().value);
    EXPECT_EQ(0, vector.back().value);
    defaultLog = nullptr;
}

TEST(VectorOperationsDeathTest, AccessOutsideTheElementsStopsWithAMessage)
{
    zym::Vector<int> vector;
    EXPECT_EXIT(vector.front(), testing::ExitedWithCode(1), "Vector::front: index 0 is out of range \\(size 0\\)");
    EXPECT_EXIT(vector.back(), testing::ExitedWithCode(1), "Vector::back: index 0 is out of range \\(size 0\\)");
    vector.push_back(1);
    vector.push_back(2);
    EXPECT_EXIT(vector.at(2), testing::ExitedWithCode(1), "Vector::at: index 2 is out of range \\(size 2\\)");
}
