#include "RecordingAllocator.h"

#include <zym/String.h>
#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace
{

// An element that writes its default constructions, copies and destructions into `log`, counts
// the live ones, and throws from a copy once `copiesLeft` reaches zero.
std::vector<std::string> log;
int live = 0;
int copiesLeft = -1;

struct Tracked
{
    Tracked() : value(0)
    {
        log.push_back("default");
        ++live;
    }
    explicit Tracked(int number) : value(number) { ++live; }
    Tracked(const Tracked& other) : value(other.value)
    {
        if (copiesLeft == 0)
            throw std::runtime_error("copy refused");
        --copiesLeft;
        log.push_back("copy " + std::to_string(value));
        ++live;
    }
    ~Tracked()
    {
        log.push_back("destroy " + std::to_string(value));
        --live;
    }
    Tracked& operator=(const Tracked&) = delete;

    int value;
};

using TrackedVector = zym::Vector<Tracked, RecordingAllocator>;

std::vector<int> values(const TrackedVector& vector)
{
    std::vector<int> result;
    for (const Tracked& element : vector)
        result.push_back(element.value);
    return result;
}

std::string bytes(std::uint64_t elements)
{
    return std::to_string(elements * sizeof(Tracked));
}

class VectorOf : public testing::Test
{
protected:
    void SetUp() override
    {
        log.clear();
        copiesLeft = -1;
    }
    void TearDown() override { EXPECT_EQ(0, live) << "elements leaked or destroyed twice"; }

    std::vector<std::string> calls;
};

} // namespace

TEST_F(VectorOf, IntegersGrowsToFourThenDoublesAndHandsEveryBlockBackWithItsSize)
{
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
        for (std::uint64_t i = 0; i < 33; ++i)
            EXPECT_EQ(i * 3, vector[i]);
    }
    EXPECT_EQ((std::vector<std::string>{"allocate 32 16", "deallocate null 0", "allocate 64 16", "deallocate block 32",
                                        "allocate 128 16", "deallocate block 64", "allocate 256 16",
                                        "deallocate block 128", "allocate 512 16", "deallocate block 256",
                                        "deallocate block 512"}),
              calls);

    calls.clear();
    zym::Vector<std::uint64_t, RecordingAllocator>{RecordingAllocator(&calls)};
    EXPECT_EQ(std::vector<std::string>{"deallocate null 0"}, calls);
}

TEST_F(VectorOf, ElementsCopiesAllBeforeDestroyingAnyAndKeepsOrderAndRepeats)
{
    {
        TrackedVector vector;
        for (int value : {1, 2, 1, 3})
            vector.push_back(Tracked(value));
        log.clear();
        vector.push_back(Tracked(5));
        EXPECT_EQ((std::vector<std::string>{"copy 5", "copy 1", "copy 2", "copy 1", "copy 3", "destroy 1",
                                            "destroy 2", "destroy 1", "destroy 3", "destroy 5"}),
                  log);
        log.clear();
    }
    EXPECT_EQ((std::vector<std::string>{"destroy 1", "destroy 2", "destroy 1", "destroy 3", "destroy 5"}), log);
}

TEST_F(VectorOf, StringsTakesItsOwnElementWhileItGrows)
{
    zym::Vector<String, RecordingAllocator> vector;
    for (const char* text : {"a string too long to be kept inside the string object", "b", "c", "d"})
        vector.push_back(text);
    vector.push_back(vector[0]);
    EXPECT_EQ(vector[0], vector[4]);
}

TEST_F(VectorOf, ElementsIsLeftAsItWasWhenACopyThrows)
{
    TrackedVector vector{RecordingAllocator(&calls)};
    for (int value : {1, 2, 3, 4})
        vector.push_back(Tracked(value));
    calls.clear();
    for (int allowed : {0, 2, 3})
    {
        copiesLeft = allowed;
        EXPECT_THROW(vector.push_back(Tracked(5)), std::runtime_error) << allowed;
        EXPECT_THROW(vector.reserve(9), std::runtime_error) << allowed;
        EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), values(vector));
        EXPECT_EQ(4u, vector.capacity());
    }
    EXPECT_EQ(12u, calls.size());
    EXPECT_EQ("deallocate block " + bytes(8), calls[1]);
}

TEST_F(VectorOf, StringsRefusesSizesBeyondMemoryBeforeItAllocates)
{
    zym::Vector<String, RecordingAllocator> vector{RecordingAllocator(&calls)};
    EXPECT_THROW(vector.reserve(1ull << 59), std::length_error);
    EXPECT_THROW(vector.resize(~0ull), std::length_error);
    EXPECT_TRUE(calls.empty());
}

// The operations that the Lua bindings call.
TEST_F(VectorOf, ElementsSizedReservedAndResizedInBlocksOfExactlyTheRequest)
{
    {
        TrackedVector vector(3, RecordingAllocator(&calls));
        EXPECT_EQ((std::vector<std::string>{"default", "default", "default"}), log);
        EXPECT_EQ((std::vector<std::string>{"allocate " + bytes(3) + " 16", "deallocate null 0"}), calls);
        log.clear();
        calls.clear();

        vector.reserve(7);
        vector.reserve(5);
        EXPECT_EQ(7u, vector.capacity());
        EXPECT_EQ((std::vector<std::string>{"copy 0", "copy 0", "copy 0", "destroy 0", "destroy 0", "destroy 0"}), log);
        EXPECT_EQ((std::vector<std::string>{"allocate " + bytes(7) + " 16", "deallocate block " + bytes(3)}), calls);
        log.clear();
        calls.clear();

        vector.resize(1);
        vector.resize(2);
        vector.resize(9);
        EXPECT_EQ(9u, vector.size());
        EXPECT_EQ(9u, vector.capacity());
        EXPECT_EQ(14u, log.size());  // two destroyed, one made, two copied and destroyed, seven made
        EXPECT_EQ((std::vector<std::string>{"allocate " + bytes(9) + " 16", "deallocate block " + bytes(7)}), calls);
        calls.clear();
        vector.clear();
        EXPECT_TRUE(vector.empty());
        EXPECT_TRUE(calls.empty());
    }
    EXPECT_EQ((std::vector<std::string>{"deallocate block " + bytes(9)}), calls);
}

TEST(VectorDeathTest, AccessOutsideTheElementsStopsWithAMessage)
{
    zym::Vector<int> vector;
    EXPECT_EXIT(vector.front(), testing::ExitedWithCode(1), "Vector::front: index 0 is out of range \\(size 0\\)");
    EXPECT_EXIT(vector.back(), testing::ExitedWithCode(1), "Vector::back: index 0 is out of range \\(size 0\\)");
    vector.push_back(1);
    vector.push_back(2);
    EXPECT_EXIT(vector.at(2), testing::ExitedWithCode(1), "Vector::at: index 2 is out of range \\(size 2\\)");
    EXPECT_EQ(2, vector.at(1));
    EXPECT_EQ(1, vector.front());
    EXPECT_EQ(2, vector.back());
}
