#ifndef ZYM_HASHSET_H
#define ZYM_HASHSET_H

#include <zym/ByteAllocator.h>
#include <zym/Core.h>
#include <zym/String.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <sstream>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace zym
{

template <typename T>
struct HashFn;

// h = h * 37 + c over the bytes of the key, each byte read as a signed char. Four bytes at a
// time the same sum is h * 37^4 + c0 * 37^3 + c1 * 37^2 + c2 * 37 + c3, whose products do not
// wait for one another.
template <>
struct HashFn<String>
{
    std::uint32_t operator()(const String& key) const
    {
        const char* byte = key.data();
        const char* const end = byte + key.size();
        std::uint32_t hash = 0;
        for (; end - byte >= 4; byte += 4)
            hash = hash * 1874161u + value(byte[0]) * 50653u + value(byte[1]) * 1369u + value(byte[2]) * 37u + value(byte[3]);
        for (; byte != end; ++byte)
            hash = hash * 37u + value(*byte);
        return hash;
    }

private:
    static std::uint32_t value(char byte)
    {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(byte)));
    }
};

namespace hash_set_detail
{

// Growth and capacity arithmetic passes through single precision, as the library always has:
// the capacities, and so the order of the keys in a walk, depend on it.
inline std::uint64_t threshold(std::uint64_t capacity)
{
    return static_cast<std::uint64_t>(static_cast<double>(static_cast<float>(capacity)) * 0.8);
}

inline std::uint64_t doubledRequest(std::uint64_t capacity)
{
    return static_cast<std::uint64_t>(static_cast<double>(static_cast<float>(capacity)) * 2.0);
}

constexpr std::uint64_t probeCount = 11;

// The most slots per key that a search that finds no place may grow the table to. Random keys
// and include paths take at most 9 (200,000 keys, 20 seeds of each).
constexpr std::uint64_t slotsPerKey = 64;

// value % capacity, in 32 bits when both fit, where the division is much cheaper.
inline std::uint64_t remainder(std::uint64_t value, std::uint64_t capacity)
{
    if (((value | capacity) >> 32) == 0)
        return static_cast<std::uint32_t>(value) % static_cast<std::uint32_t>(capacity);
    return value % capacity;
}

} // namespace hash_set_detail

// Open addressing over a prime number of slots with eleven quadratic probes. A walk visits
// the slots in index order, so the order of the keys follows from their whole history.
template <typename Key, typename Hash, typename Allocator>
class HashSetImplementation
{
public:
    struct Slot
    {
        Key key;
        std::uint8_t state;
    };
    static_assert(std::is_nothrow_default_constructible<Key>::value, "a new table is made of default keys");

    static constexpr std::uint8_t EMPTY = 0;
    static constexpr std::uint8_t OCCUPIED = 2;

    class iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Key;
        using difference_type = std::ptrdiff_t;
        using pointer = const Key*;
        using reference = const Key&;

        iterator(const HashSetImplementation* owner, std::uint64_t slot) : set(owner), index(slot) {}

        const Key& operator*() const { return set->table[index].key; }
        iterator& operator++()
        {
            index = set->nextOccupied(index + 1);
            return *this;
        }
        bool operator==(const iterator& other) const { return set == other.set && index == other.index; }
        bool operator!=(const iterator& other) const { return !(*this == other); }

        std::uint64_t slotIndex() const { return index; }

    private:
        const HashSetImplementation* set;
        std::uint64_t index;
    };

    struct InsertResult
    {
        iterator position;
        bool alreadyPresent;
    };

    HashSetImplementation(const HashSetImplementation&) = delete;
    HashSetImplementation& operator=(const HashSetImplementation&) = delete;

    InsertResult insert(const Key& key) { return insertKey(key); }

    // Moves the keys to a new table where their moves cannot throw, and copies them where they
    // can. Either way, a key that cannot be copied or placed leaves the set as it was: the old
    // table stands until every key has its place, and moved keys go back to their old slots.
    void rebuild(std::uint64_t requested)
    {
        const std::uint64_t oldCapacity = capacity_;
        const std::uint64_t oldSize = size_;
        const std::uint16_t oldLongestProbe = longestProbe;
        Slot* const oldTable = table;

        // Where each old slot's key stands in the newest table. A nested rebuild replaces `table`
        // and, once it is done, carries these places over to the table it made.
        Relocation relocation{std::vector<std::uint32_t>(movesKeys ? oldCapacity : 0, unmoved), relocating};

        const int argument = requested == 0 ? 1 : static_cast<int>(static_cast<std::uint32_t>(requested));
        const std::uint64_t newCapacity = static_cast<std::uint64_t>(static_cast<std::int64_t>(zym::nextPrime(argument)));
        table = static_cast<Slot*>(allocator.allocateBytes(newCapacity * sizeof(Slot), 16));
        for (std::uint64_t i = 0; i < newCapacity; ++i)
            new (table + i) Slot{Key(), EMPTY};
        capacity_ = newCapacity;
        size_ = 0;
        longestProbe = 0;
        relocating = &relocation;
        try
        {
            for (std::uint64_t i = 0; i < oldCapacity; ++i)
                if (oldTable[i].state == OCCUPIED)
                {
                    if constexpr (movesKeys)
                        relocation.places[i] = static_cast<std::uint32_t>(insertKey(std::move(oldTable[i].key)).position.slotIndex());
                    else
                        insertKey(oldTable[i].key);
                }
        }
        catch (...)
        {
            for (std::uint64_t i = 0; i < relocation.places.size(); ++i)
                if (relocation.places[i] != unmoved)
                    oldTable[i].key = std::move(table[relocation.places[i]].key);
            relocating = relocation.outer;
            destroy(table, capacity_);
            table = oldTable;
            capacity_ = oldCapacity;
            size_ = oldSize;
            longestProbe = oldLongestProbe;
            throw;
        }
        relocating = relocation.outer;
        if (relocating != nullptr)
            for (std::uint32_t& place : relocating->places)
                if (place != unmoved)
                    place = relocation.places[place];
        destroy(oldTable, oldCapacity);
    }

    iterator begin() const { return iterator(this, nextOccupied(0)); }
    iterator end() const { return iterator(this, capacity_); }

    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }

protected:
    explicit HashSetImplementation(const Allocator& slotAllocator) : allocator(slotAllocator) {}
    ~HashSetImplementation() = default;

    // Destroys all slots, index 0 upward, and hands the block back with its size.
    void destroy(Slot* slots, std::uint64_t count)
    {
        for (std::uint64_t i = 0; i < count; ++i)
            slots[i].~Slot();
        allocator.deallocateBytes(slots, count * sizeof(Slot));
    }

    std::uint64_t size_ = 0;
    std::uint64_t capacity_ = 0;
    Slot* table = nullptr;
    std::uint16_t longestProbe = 0;
    Allocator allocator;
    std::uint64_t mostKeys = 0;  // the largest size the set has had: a rebuild starts again from 0

private:
    static constexpr bool movesKeys = std::is_nothrow_move_assignable<Key>::value;
    static constexpr std::uint32_t unmoved = ~std::uint32_t(0);

    struct Relocation
    {
        std::vector<std::uint32_t> places;
        Relocation* outer;
    };
    Relocation* relocating = nullptr;  // the innermost rebuild under way

    template <typename K>
    InsertResult insertKey(K&& key)
    {
        const std::uint64_t hash = Hash()(key);
        for (;;)
        {
            if (size_ >= hash_set_detail::threshold(capacity_))
                rebuild(hash_set_detail::doubledRequest(capacity_ + 1));

            for (std::uint64_t k = 0; k < hash_set_detail::probeCount; ++k)
            {
                const std::uint64_t index = hash_set_detail::remainder(k * k + hash, capacity_);
                Slot& slot = table[index];
                if (slot.state == EMPTY || (slot.state == OCCUPIED && slot.key == key))
                    return place(slot, index, k, std::forward<K>(key));
            }

            const std::uint64_t request = hash_set_detail::doubledRequest(capacity_);
            if (request > hash_set_detail::slotsPerKey * (mostKeys + 1))
                refuse(key, hash);
            rebuild(request);
        }
    }

    template <typename K>
    InsertResult place(Slot& slot, std::uint64_t index, std::uint64_t probe, K&& key)
    {
        if (probe > longestProbe)
            longestProbe = static_cast<std::uint16_t>(probe);
        slot.key = std::forward<K>(key);
        const bool alreadyPresent = slot.state == OCCUPIED;
        if (!alreadyPresent)
        {
            ++size_;
            slot.state = OCCUPIED;
            if (size_ > mostKeys)
                mostKeys = size_;
        }
        return InsertResult{iterator(this, index), alreadyPresent};
    }

    std::uint64_t nextOccupied(std::uint64_t index) const
    {
        while (index < capacity_ && table[index].state != OCCUPIED)
            ++index;
        return index;
    }

    // Keys whose eleven probe positions other keys hold at every capacity, as twelve keys of one
    // hash do, or keys whose hashes crowd into a narrow range, as short keys do, would grow the
    // table until memory ran out. A search that finds no place may not grow the table past
    // slotsPerKey slots for each key the set ever held.
    [[noreturn]] void refuse(const Key& key, std::uint64_t hash) const
    {
        std::ostringstream message;
        message << "HashSet: cannot insert '" << key << "' (hash " << hash
                << "): other keys hold all eleven of its probe positions even in a table of " << capacity_
                << " slots for " << size_ << " keys";
        throw std::length_error(message.str());
    }
};

template <typename Key, typename Hash, typename Allocator>
class HashSet : public HashSetImplementation<Key, Hash, Allocator>
{
    using Base = HashSetImplementation<Key, Hash, Allocator>;

public:
    explicit HashSet(const Allocator& slotAllocator = Allocator()) : Base(slotAllocator) {}

    ~HashSet()
    {
        this->destroy(this->table, this->capacity_);
        this->table = nullptr;
        this->size_ = 0;
        this->capacity_ = 0;
    }
};

} // namespace zym

template <typename T>
using HashSet = zym::HashSet<T, zym::HashFn<T>, zym::ByteAllocator>;

#endif // ZYM_HASHSET_H
