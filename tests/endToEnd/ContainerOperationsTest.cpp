// The operations of zym::Vector that the Lua bindings call: the sized
// constructor, reserve, resize, clear, at, front, back and empty, with their allocator calls
// and the order of copies and destructions.

#include "../RecordingAllocator.h"

#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace
{

// An element that writes its constructions, copies and destructions into a shared log. The
// log of a default-constructed one is the one that `defaultLog` points at.
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

static_assert(std::is_same<zym::Vector<int>, zym::Vector<int, zym::ByteAllocator>>::value,
              "the allocator of a Vector is the byte allocator unless given");
static_assert(std::is_same<zym::VectorPOD<int>, zym::VectorPOD<int, zym::ByteAllocator>>::value,
              "the allocator of a VectorPOD is the byte allocator unless given");

} // namespace

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

TEST(VectorOperations, ClearDestroysAllElementsAndKeepsTheBlockForTheNextOnes)
{
    std::vector<std::string> calls;
    std::vector<std::string> log;
    zym::Vector<Tracked, RecordingAllocator> vector{RecordingAllocator(&calls)};
    for (int value : {5, 6, 7})
        vector.push_back(Tracked(value, &log));
    calls.clear();
    log.clear();

    vector.clear();
    EXPECT_TRUE(vector.empty());
    EXPECT_EQ(0u, vector.size());
    EXPECT_EQ(4u, vector.capacity());
    EXPECT_EQ((std::vector<std::string>{"destroy 5", "destroy 6", "destroy 7"}), log);

    log.clear();
    vector.push_back(Tracked(8, &log));
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(8, vector.front().value);
    EXPECT_EQ(8, vector.back().value);
}

TEST(VectorOperations, AtFrontAndBackReachTheElements)
{
    zym::Vector<int> vector;
    EXPECT_TRUE(vector.empty());
    for (int value : {10, 20, 30})
        vector.push_back(value);
    EXPECT_FALSE(vector.empty());
    EXPECT_EQ(10, vector.front());
    EXPECT_EQ(20, vector.at(1));
    EXPECT_EQ(30, vector.back());

    vector.at(1) = 21;
    vector.front() = 11;
    vector.back() = 31;
    const zym::Vector<int>& constant = vector;
    EXPECT_EQ(11, constant.front());
    EXPECT_EQ(21, constant.at(1));
    EXPECT_EQ(31, constant.back());
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
