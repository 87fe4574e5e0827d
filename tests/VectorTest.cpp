#include "RecordingAllocator.h"

#include <zym/String.h>
#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

// An element that logs its constructions, copies and destructions, and throws from a copy once
// `copiesLeft` reaches zero, from a construction once `makesLeft` does.
std::vector<std::string> events;
int copiesLeft = -1;
int makesLeft = -1;

struct Tracked
{
    Tracked(int number = 0) : value(number)
    {
        if (makesLeft-- == 0)
            throw std::runtime_error("construction refused");
        events.push_back("make " + std::to_string(value));
    }
    Tracked(const Tracked& other) : value(other.value)
    {
        if (copiesLeft-- == 0)
            throw std::runtime_error("copy refused");
        events.push_back("copy " + std::to_string(value));
    }
    ~Tracked() { events.push_back("destroy " + std::to_string(value)); }
    int value;
};

using Tracker = zym::Vector<Tracked, RecordingAllocator>;

std::string block(const char* call, std::uint64_t elements)
{
    return call + std::to_string(elements * sizeof(Tracked)) + (call[0] == 'a' ? " 16" : "");
}

} // namespace

TEST(Vector, GrowsToFourThenDoublesCopyingAllElementsBeforeDestroyingAny)
{
    std::vector<std::string> calls;
    {
        Tracker vector{RecordingAllocator{&calls}};
        for (int value : {1, 2, 1, 3})
            vector.push_back(value);
        events.clear();
        vector.push_back(vector[3]);  // its own element, copied before the block it lies in goes
        EXPECT_EQ((std::vector<std::string>{"copy 3", "copy 1", "copy 2", "copy 1", "copy 3", "destroy 1", "destroy 2",
                                            "destroy 1", "destroy 3"}),
                  events);
        for (int value = 6; value <= 17; ++value)
            vector.push_back(value);
    }
    EXPECT_EQ((std::vector<std::string>{block("allocate ", 4), "deallocate null 0", block("allocate ", 8),
                                        block("deallocate block ", 4), block("allocate ", 16), block("deallocate block ", 8),
                                        block("allocate ", 32), block("deallocate block ", 16), block("deallocate block ", 32)}),
              calls);
}

TEST(Vector, IsLeftAsItWasWhenACopyThrowsReleasesAllWhenAnElementCannotBeMadeAndRefusesSizesBeyondMemory)
{
    std::vector<std::string> calls;
    Tracker vector{RecordingAllocator{&calls}};
    for (int value : {1, 2, 3, 4})
        vector.push_back(value);
    calls.clear();
    for (int allowed : {0, 2, 3})
    {
        copiesLeft = allowed;
        EXPECT_THROW(vector.push_back(5), std::runtime_error) << allowed;
        copiesLeft = allowed;
        EXPECT_THROW(vector.reserve(9), std::runtime_error) << allowed;
        EXPECT_TRUE(vector.size() == 4 && vector.capacity() == 4 && vector.front().value == 1 && vector.back().value == 4);
    }
    copiesLeft = -1;
    EXPECT_EQ(12u, calls.size());
    EXPECT_EQ(block("deallocate block ", 8) + ", " + block("deallocate block ", 9), calls[1] + ", " + calls[3]);

    zym::Vector<String, RecordingAllocator> strings{RecordingAllocator{&calls}};
    EXPECT_THROW(strings.reserve(1ull << 59), std::length_error);
    EXPECT_THROW(strings.resize(~0ull), std::length_error);
    EXPECT_EQ(12u, calls.size());

    calls.clear();
    events.clear();
    makesLeft = 2;
    EXPECT_THROW(Tracker(3, RecordingAllocator{&calls}), std::runtime_error);
    makesLeft = -1;
    EXPECT_EQ((std::vector<std::string>{"make 0", "make 0", "destroy 0", "destroy 0"}), events);
    EXPECT_EQ((std::vector<std::string>{block("allocate ", 3), "deallocate null 0", block("deallocate block ", 3)}), calls);
}

// The operations that the Lua bindings call take blocks of exactly the size they ask for.
TEST(Vector, SizedReservedAndResizedInBlocksOfExactlyTheRequest)
{
    std::vector<std::string> calls;
    {
        Tracker vector(2, RecordingAllocator{&calls});
        for (std::uint64_t capacity : {7u, 7u, 5u})
            vector.reserve(capacity);
        vector.resize(1);
        vector.resize(9);
        vector.clear();
        EXPECT_TRUE(vector.empty());
    }
    EXPECT_EQ((std::vector<std::string>{block("allocate ", 2), "deallocate null 0", block("allocate ", 7),
                                        block("deallocate block ", 2), block("allocate ", 9), block("deallocate block ", 7),
                                        block("deallocate block ", 9)}),
              calls);
}

TEST(VectorDeathTest, AccessOutsideTheElementsStopsWithAMessage)
{
    zym::Vector<int> vector;
    EXPECT_EXIT(vector.front(), testing::ExitedWithCode(1), "Vector::front: index 0 is out of range \\(size 0\\)");
    EXPECT_EXIT(vector.back(), testing::ExitedWithCode(1), "Vector::back: index 0 is out of range \\(size 0\\)");
    vector.push_back(1);
    vector.push_back(2);
    EXPECT_EXIT(vector.at(2), testing::ExitedWithCode(1), "Vector::at: index 2 is out of range \\(size 2\\)");
    EXPECT_EQ((std::vector<int>{2, 1, 2}), (std::vector<int>{vector.at(1), vector.front(), vector.back()}));
}
