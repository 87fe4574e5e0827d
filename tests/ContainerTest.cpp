// The growable array and the hash set: the allocator calls, capacities and slots that the library
// fixes (the set's slot order is the order of the package file's include rows), and what each is
// left holding when a copy or an allocation throws.

#include <zym/HashSet.h>
#include <zym/Vector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{

// The calls of the allocator, in units of an element or a slot: "+4" takes a block of 4 aligned
// to 16, "-4" hands it back, "-0 null" hands back none. Once `blocksLeft` runs out it throws.
std::vector<std::string> calls;
int blocksLeft = -1;

struct RecordingAllocator
{
    void* allocateBytes(std::size_t bytes, std::size_t alignment)
    {
        if (blocksLeft-- == 0)
            throw std::bad_alloc();
        calls.push_back("+" + std::to_string(bytes / unit) + (alignment == 16 ? "" : " unaligned"));
        return zym::ByteAllocator().allocateBytes(bytes, alignment);
    }
    void deallocateBytes(void* block, std::size_t bytes)
    {
        calls.push_back("-" + std::to_string(bytes / unit) + (block != nullptr ? "" : " null"));
        zym::ByteAllocator().deallocateBytes(block, bytes);
    }
    std::size_t unit;
};

// An element or key that logs its copies and destructions, counts those alive, and throws from a
// copy once `copiesLeft` runs out.
std::vector<std::string> events;
int copiesLeft = -1, alive = 0;

struct Tracked : String
{
    Tracked(const char* text = "") noexcept : String(text) { ++alive; }
    Tracked(const Tracked& other) : String(other) { copied(), ++alive; }
    Tracked& operator=(const Tracked& other) { return copied(), String::operator=(other), *this; }
    ~Tracked() { events.push_back("destroy " + *this), --alive; }
    void copied() const
    {
        if (copiesLeft-- == 0)
            throw std::runtime_error("copy refused");
        events.push_back("copy " + *this);
    }
};

using List = zym::Vector<Tracked, RecordingAllocator>;
using Set = zym::HashSet<Tracked, zym::HashFn<String>, RecordingAllocator>;
const RecordingAllocator elements{sizeof(Tracked)}, slots{sizeof(Set::Slot)};

// The capacity, then each key with its slot in walk order: "7: 3 zym/HashSet.h, 6 zym/Vector.h";
// or, sorted, only the keys.
std::string layout(const Set& set, bool keysOnly = false)
{
    std::vector<std::string> keys;
    for (auto it = set.begin(); it != set.end(); ++it)
        keys.push_back((keysOnly ? "" : std::to_string(it.slotIndex()) + " ") + *it);
    if (keysOnly)
        std::sort(keys.begin(), keys.end());
    std::string text = std::to_string(set.capacity()) + ":";
    for (const std::string& key : keys)
        text += (text.back() == ':' ? " " : ", ") + key;
    return keysOnly ? text.substr(text.find(':')) : text;
}

} // namespace

TEST(Vector, GrowsToFourThenDoublesCopyingAllElementsBeforeDestroyingAnyAndHandsBackEveryBlock)
{
    calls.clear();
    {
        List empty(elements), list(elements);
        for (const char* value : {"a", "b", "a", "c"})
            list.push_back(value);
        events.clear();
        list.push_back(list[3]); // its own element, copied before the block it lies in goes
        EXPECT_EQ((std::vector<std::string>{"copy c", "copy a", "copy b", "copy a", "copy c", "destroy a", "destroy b",
                                            "destroy a", "destroy c"}),
                  events);
        for (int value = 6; value <= 17; ++value)
            list.push_back(Tracked("x"));
        list.reserve(32);
        list.resize(2);
        EXPECT_EQ("a b b", list.front() + " " + list.at(1) + " " + std::as_const(list).back());
    }
    EXPECT_EQ((std::vector<std::string>{"+4", "-0 null", "+8", "-4", "+16", "-8", "+32", "-16", "-32", "-0 null"}),
              calls);
}

TEST(Vector, IsLeftAsItWasWhenACopyThrowsAndStopsAccessOutsideItsElements)
{
    List list(elements);
    const int aliveBefore = alive;
    for (const char* value : {"a", "b", "c", "d"})
        list.push_back(value);
    calls.clear();
    for (int allowed : {0, 2, 3})
    {
        copiesLeft = allowed;
        EXPECT_THROW(list.push_back(Tracked("e")), std::runtime_error) << allowed;
        copiesLeft = allowed;
        EXPECT_THROW(list.reserve(9), std::runtime_error) << allowed;
        EXPECT_EQ("4 4 a d", std::to_string(list.size()) + " " + std::to_string(list.capacity()) + " " + list.front() +
                                 " " + list.back());
    }
    copiesLeft = -1;
    EXPECT_EQ(aliveBefore + 4, alive); // what was made in a block handed back was destroyed
    EXPECT_EQ((std::vector<std::string>{"+8", "-8", "+9", "-9", "+8", "-8", "+9", "-9", "+8", "-8", "+9", "-9"}),
              calls);
    EXPECT_THROW(list.reserve(1ull << 60), std::length_error);
    EXPECT_EXIT(List(elements).front(), testing::ExitedWithCode(1),
                "Vector::front: index 0 is out of range \\(size 0\\)");
    EXPECT_EXIT(std::as_const(list).at(4), testing::ExitedWithCode(1), "Vector::at: index 4 is out of range");
}

TEST(HashSet, PlacesTheDefaultIncludesSlotBySlotAndReordersThemOnTheNextGrowth)
{
    calls.clear();
    {
        Set empty(slots), set(slots);
        EXPECT_FALSE(set.insert("zym/Vector.h").alreadyPresent);
        EXPECT_EQ("2: 0 zym/Vector.h", layout(set));
        set.insert("zym/HashSet.h");
        EXPECT_EQ("7: 3 zym/HashSet.h, 6 zym/Vector.h", layout(set));
        for (const char* key : {"zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"})
            set.insert(key);
        EXPECT_EQ("7: 0 zymData/Array.h, 1 zymData/Buffer.h, 3 zym/HashSet.h, 4 zymData/Value.h, 6 zym/Vector.h",
                  layout(set));
        // At its threshold the set grows before it searches, even for a key that it holds.
        const auto repeat = set.insert("zym/Vector.h");
        EXPECT_TRUE(repeat.alreadyPresent && repeat.position.slotIndex() == 4 && set.size() == 5);
        EXPECT_EQ("17: 3 zymData/Array.h, 4 zym/Vector.h, 9 zymData/Value.h, 13 zym/HashSet.h, 14 zymData/Buffer.h",
                  layout(set));
    }
    EXPECT_EQ((std::vector<std::string>{"+2", "-0 null", "+7", "-2", "+17", "-7", "-17", "-0 null"}), calls);
}

TEST(HashSet, HashesSignedBytesGrowsThroughPrimesAndProbesInSixtyFourBits)
{
    const zym::HashFn<String> hash;
    // Bytes of 0x80 and above count as negative: "\377" hashes to 2^32 - 1.
    for (const auto& [key, expected] : std::vector<std::pair<String, std::uint32_t>>{
             {"", 0}, {"abc", 136518}, {"\377", 4294967295}, {"\377a", 60}, {"ab\351cd", 186729887}})
        EXPECT_EQ(expected, hash(key)) << key;

    Set set(slots), wrapping(slots);
    std::vector<std::uint64_t> capacities = {0};
    for (int i = 0; i < 600; ++i)
        if (set.insert(("include/" + std::to_string(i) + ".h").c_str()), capacities.back() != set.capacity())
            capacities.push_back(set.capacity());
    EXPECT_EQ((std::vector<std::uint64_t>{0, 2, 7, 17, 37, 79, 163, 331, 673, 1361}), capacities);
    EXPECT_FALSE(set.insert("").alreadyPresent);
    EXPECT_TRUE(set.insert("").alreadyPresent);
    EXPECT_EQ(601, std::distance(set.begin(), set.end()));

    // Three keys of hash 2^32 - 1: the second probe of one lies at 2^32, not at 0.
    for (const char* key : {"\xff", "\xff$", "\xff$$"})
        wrapping.insert(key);
    EXPECT_EQ("7: 0 \xff$$, 3 \xff, 4 \xff$", layout(wrapping));
}

// Keys made of the blocks "az" and "bU", which hash alike, all have one hash. At capacity 7 their
// probes reach only four slots: a fifth key fails its search below the threshold and takes the set
// to the next prime of its probe request. A twelfth finds no place in any table; with nine other
// keys the set stops at 673 slots, where one more growth would pass 64 slots for each of 21 keys.
TEST(HashSet, RefusesATwelfthKeyOfOneHashAndKeepsItsKeys)
{
    Set crowded(slots), set(slots);
    std::vector<Tracked> keys;
    for (int bits = 0; bits < 12; ++bits)
    {
        std::string key;
        for (int block = 1; block < 16; block *= 2)
            key += bits & block ? "bU" : "az";
        keys.push_back(key.c_str());
        if (bits < 9)
            set.insert(("other" + std::to_string(bits)).c_str());
    }
    for (std::size_t i = 0; i < 11; ++i)
        EXPECT_TRUE((crowded.insert(keys[i]), set.insert(keys[i]), i != 4) ||
                    layout(crowded) == "17: 4 bUazazaz, 11 azazbUaz, 12 bUbUazaz, 13 azbUazaz, 16 azazazaz");
    const std::string twenty = layout(set, true);
    std::string refusal;
    try
    {
        set.insert(keys[11]);
    }
    catch (const std::length_error& error)
    {
        refusal = error.what();
    }
    EXPECT_EQ("HashSet: cannot insert 'bUbUazbU' (hash 2133336812): other keys hold all eleven of its probe positions "
              "even in a table of 673 slots for 20 keys",
              refusal);
    EXPECT_EQ(twenty, layout(set, true));
}

// Families of one hash make the set grow twice because probes find no place, once inside another
// growth. Wherever a table cannot be had or a key cannot be copied there, the set holds the keys
// that it held; it may have grown before.
TEST(HashSet, KeepsItsKeysWhenATableOrAKeyCannotBeHadInTheMiddleOfAGrowth)
{
    std::vector<Tracked> keys = {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h",
                                 "zymData/Value.h"};
    for (const char* stem : {"T29", "ddazbUaz", "eeebUazaz", "ddbUbUaz", "T78", "ddazazbU", "ddazbUbU", "T6", "T64",
                             "T17", "ddbUazaz", "eeeazazbU", "eeeazbUaz", "T62", "ddbUbUbU", "ddbUazbU"})
        keys.push_back(((stem[0] == 'T' ? "zym/" : "c/") + std::string(stem) + ".h").c_str());
    for (int* budget : {&copiesLeft, &blocksLeft})
        for (int allowed = 0, failures = 1; failures > 0; ++allowed)
        {
            Set set(slots);
            *budget = allowed;
            failures = 0;
            for (std::size_t i = 0; i < keys.size() && failures == 0; ++i)
            {
                const std::string before = layout(set, true);
                try
                {
                    set.insert(keys[i]);
                }
                catch (const std::exception&)
                {
                    ++failures;
                    EXPECT_EQ(before, layout(set, true)) << allowed;
                }
            }
            *budget = -1;
        }
}
