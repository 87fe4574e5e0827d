#include "RecordingAllocator.h"

#include <zym/HashSet.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

// Memory from the free store runs out once `newsLeft`, if not negative, reaches zero.
int newsLeft = -1;

void* operator new(std::size_t bytes)
{
    if (newsLeft >= 0 && newsLeft-- == 0)
        throw std::bad_alloc();
    if (void* block = std::malloc(bytes == 0 ? 1 : bytes))
        return block;
    throw std::bad_alloc();
}
// Out of line, so that no caller sees a block from operator new going to free.
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace
{

// A key whose copy assignment throws once `assignmentsLeft` reaches zero.
int assignmentsLeft = -1;

struct Key : String
{
    using String::String;
    Key() = default;
    Key(const Key&) = default;
    Key& operator=(const Key& other)
    {
        if (assignmentsLeft-- == 0)
            throw std::runtime_error("assignment refused");
        String::operator=(other);
        return *this;
    }
};

struct KeyHash
{
    std::uint32_t operator()(const Key& key) const { return zym::HashFn<String>()(key); }
};

using Set = zym::HashSet<Key, KeyHash, RecordingAllocator>;

// The capacity, then each key with its slot, in walk order: "7: 3 zym/HashSet.h, 6 zym/Vector.h".
template <typename Set>
std::string layout(const Set& set)
{
    std::string text = std::to_string(set.capacity()) + ":";
    for (auto it = set.begin(); it != set.end(); ++it)
        text += (text.back() == ':' ? " " : ", ") + std::to_string(it.slotIndex()) + " " + *it;
    return text;
}

template <typename Set>
std::vector<std::string> sortedKeys(const Set& set)
{
    std::vector<std::string> keys(set.begin(), set.end());
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Keys of the blocks "az" and "bU", which hash alike, so that all keys of one length share one hash.
std::vector<Key> keysOfOneHash(int count)
{
    std::vector<Key> keys;
    for (int bits = 0; bits < count; ++bits)
        keys.push_back(Key(bits & 1 ? "bU" : "az") + (bits & 2 ? "bU" : "az") + (bits & 4 ? "bU" : "az") + (bits & 8 ? "bU" : "az"));
    return keys;
}

std::string bytes(std::uint64_t slots)
{
    return std::to_string(slots * sizeof(Set::Slot));
}

} // namespace

TEST(HashSet, PlacesTheDefaultIncludesSlotBySlotAndReordersThemOnTheNextGrowth)
{
    std::vector<std::string> calls;
    Set set{RecordingAllocator{&calls}};
    EXPECT_FALSE(set.insert("zym/Vector.h").alreadyPresent);
    EXPECT_EQ("2: 0 zym/Vector.h", layout(set));
    set.insert("zym/HashSet.h");
    EXPECT_EQ("7: 3 zym/HashSet.h, 6 zym/Vector.h", layout(set));
    for (const char* key : {"zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"})
        set.insert(key);
    EXPECT_EQ("7: 0 zymData/Array.h, 1 zymData/Buffer.h, 3 zym/HashSet.h, 4 zymData/Value.h, 6 zym/Vector.h", layout(set));

    // At its threshold the set grows before it searches, even for a key that it holds.
    const auto repeat = set.insert("zym/Vector.h");
    EXPECT_TRUE(repeat.alreadyPresent && repeat.position.slotIndex() == 4 && set.size() == 5);
    EXPECT_EQ("17: 3 zymData/Array.h, 4 zym/Vector.h, 9 zymData/Value.h, 13 zym/HashSet.h, 14 zymData/Buffer.h", layout(set));
    EXPECT_EQ((std::vector<std::string>{"allocate " + bytes(2) + " 16", "deallocate null 0", "allocate " + bytes(7) + " 16",
                                        "deallocate block " + bytes(2), "allocate " + bytes(17) + " 16",
                                        "deallocate block " + bytes(7)}),
              calls);

}

TEST(HashSet, GrowsThroughPrimesOnLoadAndOnProbesThatFindNoPlace)
{
    Set set;
    std::vector<std::uint64_t> capacities = {0};
    for (int i = 0; i < 600; ++i)
        if (set.insert(Key("include/") + std::to_string(i) + ".h"), capacities.back() != set.capacity())
            capacities.push_back(set.capacity());
    EXPECT_EQ((std::vector<std::uint64_t>{0, 2, 7, 17, 37, 79, 163, 331, 673, 1361}), capacities);
    EXPECT_FALSE(set.insert("").alreadyPresent);
    EXPECT_TRUE(set.insert("").alreadyPresent);
    EXPECT_EQ(601, std::distance(set.begin(), set.end()));
    const zym::HashFn<String> hash;  // h * 37 + c over signed bytes, modulo 2^32
    EXPECT_EQ((std::vector<std::uint32_t>{0, 136518, 4294967295, 60}), (std::vector<std::uint32_t>{hash(""), hash("abc"), hash("\xff"), hash("\xff" "a")}));

    // At capacity 7 the probes of one hash reach only four slots: a fifth key of that hash fails
    // its search with four keys in the set, below the threshold, and takes it to the next prime.
    Set crowded;
    for (const Key& key : keysOfOneHash(5))
        crowded.insert(key);
    EXPECT_EQ("17: 4 bUazazaz, 11 azazbUaz, 12 bUbUazaz, 13 azbUazaz, 16 azazazaz", layout(crowded));
}

// Include values in families of one hash grow the set twice because probes find no place, once
// inside another growth. Wherever a table cannot be had there, the set is as it was: keys that may
// throw as they move are copied (Key), others are moved and put back (String). Wherever a key cannot
// be copied, or the free store runs out, it holds the keys it held; it may have grown before the
// new key's copy failed.
int blocksLeft = -1;

template <typename Set, typename Key>
void failEverywhereWhileGrowing(int& budget)
{
    std::vector<Key> keys = {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"};
    for (const char* stem : {"T29", "ddazbUaz", "eeebUazaz", "ddbUbUaz", "T78", "ddazazbU", "ddazbUbU", "T6", "T64", "T17",
                             "ddbUazaz", "eeeazazbU", "eeeazbUaz", "T62", "ddbUbUbU", "ddbUazbU"})
        keys.push_back(Key(stem[0] == 'T' ? "zym/" : "c/") + stem + ".h");
    for (int allowed = 0, failures = 1; failures > 0; ++allowed)
    {
        Set set{RecordingAllocator{nullptr, &blocksLeft}};
        budget = allowed;
        failures = 0;
        for (std::size_t i = 0; i < keys.size() && failures == 0; ++i)
        {
            const int left = std::exchange(budget, -1);
            const std::string before = layout(set);
            const std::vector<std::string> keysBefore = sortedKeys(set);
            budget = left;
            try
            {
                set.insert(keys[i]);
            }
            catch (const std::exception&)
            {
                EXPECT_EQ(keysBefore, sortedKeys(set)) << allowed;
                EXPECT_EQ(keysBefore.size(), set.size()) << allowed;
                EXPECT_TRUE(&budget != &blocksLeft || before == layout(set)) << before << " / " << layout(set);
                ++failures;
            }
        }
        budget = -1;
    }
}

TEST(HashSet, IsLeftAsItWasWhenATableOrMemoryCannotBeHadOrAKeyCopiedInTheMiddleOfAGrowth)
{
    failEverywhereWhileGrowing<zym::HashSet<String, zym::HashFn<String>, RecordingAllocator>, String>(blocksLeft);
    failEverywhereWhileGrowing<zym::HashSet<String, zym::HashFn<String>, RecordingAllocator>, String>(newsLeft);
    failEverywhereWhileGrowing<Set, Key>(blocksLeft);
    failEverywhereWhileGrowing<Set, Key>(assignmentsLeft);
    failEverywhereWhileGrowing<Set, Key>(newsLeft);
}
