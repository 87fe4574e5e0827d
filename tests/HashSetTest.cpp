#include "RecordingAllocator.h"

#include <zym/HashSet.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{

using RecordingSet = zym::HashSet<String, zym::HashFn<String>, RecordingAllocator>;
using Slots = std::vector<std::pair<std::uint64_t, std::string>>;

template <typename Set>
Slots slotsOf(const Set& set)
{
    Slots slots;
    for (auto it = set.begin(); it != set.end(); ++it)
        slots.emplace_back(it.slotIndex(), *it);
    return slots;
}

// Keys made of the blocks "az" and "bU", which hash alike: all keys of one length share one hash.
std::vector<String> keysOfOneHash(std::size_t count)
{
    std::vector<String> keys;
    for (std::size_t bits = 0; keys.size() < count; ++bits)
    {
        String key;
        for (int block = 0; block < 4; ++block)
            key += (bits >> block) & 1 ? "bU" : "az";
        keys.push_back(key);
    }
    return keys;
}

const std::vector<String> defaultIncludes = {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h",
                                             "zymData/Value.h"};

} // namespace

TEST(HashFn, SumsSignedBytesTimesThirtySevenModuloTwoToThe32)
{
    const zym::HashFn<String> hash;
    EXPECT_EQ(0u, hash(""));
    EXPECT_EQ(136518u, hash("abc"));
    EXPECT_EQ(4294967295u, hash("\xff"));
    EXPECT_EQ(60u, hash("\xff" "a"));
    EXPECT_EQ(3281867700u, hash("zym/Vector.h"));
    EXPECT_EQ(3574566621u, hash("zym/HashSet.h"));
    EXPECT_EQ(4065463898u, hash("zymData/Array.h"));
    EXPECT_EQ(3119438729u, hash("zymData/Buffer.h"));
    EXPECT_EQ(922037084u, hash("zymData/Value.h"));
    EXPECT_EQ(hash("azaz"), hash("bUbU"));
}

TEST(HashSet, PlacesTheDefaultIncludesSlotBySlotAndReordersThemOnTheNextGrowth)
{
    std::vector<std::string> calls;
    RecordingSet set{RecordingAllocator(&calls)};
    const std::size_t slotSize = sizeof(RecordingSet::Slot);

    EXPECT_FALSE(set.insert(defaultIncludes[0]).alreadyPresent);
    EXPECT_EQ(2u, set.capacity());
    EXPECT_EQ((Slots{{0, "zym/Vector.h"}}), slotsOf(set));
    EXPECT_EQ((std::vector<std::string>{"allocate " + std::to_string(2 * slotSize) + " 16", "deallocate null 0"}), calls);

    set.insert(defaultIncludes[1]);
    EXPECT_EQ(7u, set.capacity());
    EXPECT_EQ((Slots{{3, "zym/HashSet.h"}, {6, "zym/Vector.h"}}), slotsOf(set));

    for (std::size_t i = 2; i < defaultIncludes.size(); ++i)
        set.insert(defaultIncludes[i]);
    EXPECT_EQ(7u, set.capacity());
    EXPECT_EQ((Slots{{0, "zymData/Array.h"}, {1, "zymData/Buffer.h"}, {3, "zym/HashSet.h"}, {4, "zymData/Value.h"},
                     {6, "zym/Vector.h"}}),
              slotsOf(set));

    // At its threshold the set grows before it searches, even for a key that it holds.
    const auto repeat = set.insert("zym/Vector.h");
    EXPECT_TRUE(repeat.alreadyPresent);
    EXPECT_EQ(4u, repeat.position.slotIndex());
    EXPECT_EQ(5u, set.size());
    EXPECT_EQ(17u, set.capacity());
    EXPECT_EQ((Slots{{3, "zymData/Array.h"}, {4, "zym/Vector.h"}, {9, "zymData/Value.h"}, {13, "zym/HashSet.h"},
                     {14, "zymData/Buffer.h"}}),
              slotsOf(set));
    EXPECT_EQ("allocate " + std::to_string(17 * slotSize) + " 16", calls[calls.size() - 2]);
    EXPECT_EQ("deallocate block " + std::to_string(7 * slotSize), calls.back());
}

TEST(HashSet, GrowsThroughPrimesAndKeepsEveryKeyOnce)
{
    HashSet<String> set;
    std::vector<std::uint64_t> capacities = {set.capacity()};
    for (int i = 0; i < 600; ++i)
    {
        set.insert(String::format("include/%d.h", i));
        if (capacities.back() != set.capacity())
            capacities.push_back(set.capacity());
    }
    EXPECT_EQ((std::vector<std::uint64_t>{0, 2, 7, 17, 37, 79, 163, 331, 673, 1361}), capacities);
    EXPECT_FALSE(set.insert("").alreadyPresent);
    EXPECT_TRUE(set.insert("").alreadyPresent);
    EXPECT_EQ(601u, set.size());
    std::size_t walked = 0;
    for (const String& key : set)
        walked += key.empty() || key.rfind("include/", 0) == 0;
    EXPECT_EQ(601u, walked);
}

TEST(HashSet, GrowsWhenElevenProbesFindNoPlaceBelowTheThreshold)
{
    // At capacity 7 the probes of one hash reach only four slots: a fifth key of that hash fails
    // its search with four keys in the set and takes the set to the next prime.
    HashSet<String> set;
    const std::vector<String> keys = keysOfOneHash(5);
    for (std::size_t i = 0; i < 4; ++i)
        set.insert(keys[i]);
    EXPECT_EQ(7u, set.capacity());
    set.insert(keys[4]);
    EXPECT_EQ(17u, set.capacity());
    EXPECT_EQ(5u, set.size());
}

// Keys that the set can never place are refused before the table passes 64 slots per key,
// with the key, its hash and the table it could not be placed in; the set keeps all its keys.
TEST(HashSet, TakesElevenKeysOfOneHashAndRefusesUnplaceableKeys)
{
    const std::vector<String> keys = keysOfOneHash(12);
    const std::vector<String> squaresApart = {"azAA", "azAB", "azAE", "azAJ", "azAQ", "azAZ",
                                              "azAe", "azBM", "azB\\", "azCH", "azC[", "bUAA"};
    struct Case
    {
        const std::vector<String>& keys;
        std::string refusal;
    };
    for (const Case& c : {Case{keys, "HashSet: cannot insert 'bUbUazbU' (hash 2133336812): other keys hold all eleven of its "
                                     "probe positions even in a table of 673 slots for 11 keys"},
                          Case{squaresApart, "HashSet: cannot insert 'bUAA' (hash 5082829): other keys hold all eleven "
                                             "of its probe positions even in a table of 673 slots for 11 keys"}})
    {
        HashSet<String> set;
        for (std::size_t i = 0; i < 11; ++i)
            EXPECT_FALSE(set.insert(c.keys[i]).alreadyPresent);
        for (std::size_t i = 0; i < 11; ++i)
            EXPECT_TRUE(set.insert(c.keys[i]).alreadyPresent);
        try
        {
            set.insert(c.keys[11]);
            ADD_FAILURE() << "the twelfth key was placed";
        }
        catch (const std::length_error& error)
        {
            EXPECT_EQ(c.refusal, error.what());
        }
        std::vector<String> held;
        for (const String& key : set)
            held.push_back(key);
        std::sort(held.begin(), held.end());
        std::vector<String> inserted(c.keys.begin(), c.keys.begin() + 11);
        std::sort(inserted.begin(), inserted.end());
        EXPECT_EQ(inserted, held);
    }
}

TEST(HashSet, NeverComesNearItsBoundWithRandomKeysOrIncludePaths)
{
    std::mt19937 random(2026);
    for (int kind = 0; kind < 2; ++kind)
    {
        HashSet<String> set;
        double mostSlotsPerKey = 0;
        for (int i = 0; i < 100000; ++i)
        {
            String key = kind == 0 ? String(6 + random() % 35, ' ') : String::format("zym/geo/Vec%d.h", i);
            if (kind == 0)
                for (char& character : key)
                    character = static_cast<char>('0' + random() % 75);
            set.insert(key);
            if (set.size() > 11)
                mostSlotsPerKey = std::max(mostSlotsPerKey, double(set.capacity()) / double(set.size()));
        }
        EXPECT_LT(mostSlotsPerKey, 16.0) << kind;
    }
}

// A key type whose copy assignment throws once `assignmentsLeft` reaches zero, and that counts
// the keys alive.
int assignmentsLeft = -1;
int liveKeys = 0;

struct FragileKey
{
    FragileKey() noexcept { ++liveKeys; }
    FragileKey(const char* value) : text(value) { ++liveKeys; }
    FragileKey(const FragileKey& other) : text(other.text) { ++liveKeys; }
    ~FragileKey() { --liveKeys; }
    FragileKey& operator=(const FragileKey& other)
    {
        if (assignmentsLeft-- == 0)
            throw std::runtime_error("assignment refused");
        text = other.text;
        return *this;
    }
    bool operator==(const FragileKey& other) const { return text == other.text; }

    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const FragileKey& key)
{
    return stream << key.text;
}

struct FragileHash
{
    std::uint32_t operator()(const FragileKey& key) const { return zym::HashFn<String>()(key.text); }
};

TEST(HashSet, IsLeftAsItWasWhenAKeyCannotBeCopiedIntoANewTable)
{
    {
        std::vector<std::string> calls;
        zym::HashSet<FragileKey, FragileHash, RecordingAllocator> set{RecordingAllocator(&calls)};
        for (const char* key : {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"})
            set.insert(key);
        std::vector<std::string> before;
        for (const FragileKey& key : set)
            before.push_back(key.text);
        calls.clear();

        for (int allowed : {0, 3})
        {
            assignmentsLeft = allowed;
            EXPECT_THROW(set.insert("zym/Vector.h"), std::runtime_error);
            std::vector<std::string> after;
            for (const FragileKey& key : set)
                after.push_back(key.text);
            EXPECT_EQ(before, after);
            EXPECT_EQ(7u, set.capacity());
        }
        EXPECT_EQ(4u, calls.size());
        EXPECT_EQ("deallocate block " + std::to_string(17 * sizeof(zym::HashSet<FragileKey, FragileHash, RecordingAllocator>::Slot)), calls[1]);
        assignmentsLeft = -1;
    }
    EXPECT_EQ(0, liveKeys);
}
