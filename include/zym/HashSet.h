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

namespace zym
{

template <typename T>
struct HashFn;

// h = h * 37 + c over the bytes of the key, modulo 2^32, each byte read as a signed char: the
// bytes from 0x80 up count as negative numbers.
template <>
struct HashFn<String>
{
    std::uint32_t operator()(const String& key) const
    {
        std::uint32_t hash = 0;
        for (const char byte : key)
            hash = hash * 37u + static_cast<std::uint32_t>(static_cast<signed char>(byte));
        return hash;
    }
};

namespace hash_set_detail
{

// Growth passes through single precision: the capacities, and so the order of the keys in a walk,
// depend on it.
inline std::uint64_t threshold(std::uint64_t capacity)
{
    return static_cast<std::uint64_t>(static_cast<double>(static_cast<float>(capacity)) * 0.8);
}

// The capacity asked for when the set is at its threshold.
inline std::uint64_t loadRequest(std::uint64_t capacity)
{
    return static_cast<std::uint64_t>(static_cast<double>(static_cast<float>(capacity + 1)) * 2.0);
}

// The capacity asked for when all probes of a key meet other keys.
inline std::uint64_t probeRequest(std::uint64_t capacity)
{
    return static_cast<std::uint64_t>(static_cast<double>(static_cast<float>(capacity)) * 2.0);
}

constexpr std::uint64_t probeCount = 11;

// The most slots per key that a growth for a key without a place may reach. Random keys and
// include paths take at most 9 (200,000 keys, 20 seeds of each).
constexpr std::uint64_t slotsPerKey = 64;

} // namespace hash_set_detail

// Open addressing over a prime number of slots, with eleven quadratic probes. A walk visits the
// slots in index order, so the order of the keys follows from their whole history.
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

    // `alreadyPresent` is true when the key was in the set before the call.
    struct InsertResult
    {
        iterator position;
        bool alreadyPresent;
    };

    HashSetImplementation(const HashSetImplementation&) = delete;
    HashSetImplementation& operator=(const HashSetImplementation&) = delete;

    InsertResult insert(const Key& key)
    {
        const std::uint64_t hash = Hash()(key);
        for (;;)
        {
            // At the threshold the set grows before it searches, also for a key that it holds.
            if (size_ >= hash_set_detail::threshold(capacity_))
                rebuild(hash_set_detail::loadRequest(capacity_));

            for (std::uint64_t k = 0; k < hash_set_detail::probeCount; ++k)
            {
                const std::uint64_t index = (k * k + hash) % capacity_;
                Slot& slot = table[index];
                if (slot.state == EMPTY || (slot.state == OCCUPIED && slot.key == key))
                    return place(slot, index, k, key);
            }

            // Every probe met another key: a larger table, and the search again.
            const std::uint64_t request = hash_set_detail::probeRequest(capacity_);
            if (request > hash_set_detail::slotsPerKey * (mostKeys + 1))
                refuse(key, hash);
            rebuild(request);
        }
    }

    // Moves the keys to a new table of the next prime not below `requested` slots. The old slots
    // are taken in index order and each key is inserted anew with the whole of insert, so that a
    // rebuild may run inside a rebuild: the keys left then go into the newest table. The old table
    // stands until every key has its place, so that a key that cannot be copied or placed leaves
    // the set as it was.
    void rebuild(std::uint64_t requested)
    {
        Slot* const oldTable = table;
        const std::uint64_t oldCapacity = capacity_;
        const std::uint64_t oldSize = size_;
        const std::uint16_t oldLongestProbe = longestProbe;

        const int argument = requested == 0 ? 1 : static_cast<int>(static_cast<std::uint32_t>(requested));
        const auto newCapacity = static_cast<std::uint64_t>(static_cast<std::int64_t>(zym::nextPrime(argument)));
        table = static_cast<Slot*>(allocator.allocateBytes(newCapacity * sizeof(Slot), 16));
        for (std::uint64_t i = 0; i < newCapacity; ++i)
            new (table + i) Slot{Key(), EMPTY};
        capacity_ = newCapacity;
        size_ = 0;
        longestProbe = 0;

        try
        {
            for (std::uint64_t i = 0; i < oldCapacity; ++i)
                if (oldTable[i].state == OCCUPIED)
                    insert(oldTable[i].key);
        }
        catch (...)
        {
            destroy(table, capacity_);
            table = oldTable;
            capacity_ = oldCapacity;
            size_ = oldSize;
            longestProbe = oldLongestProbe;
            throw;
        }
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
    std::uint64_t mostKeys = 0; // the largest size the set has had: a rebuild counts from 0 again

private:
    InsertResult place(Slot& slot, std::uint64_t index, std::uint64_t probe, const Key& key)
    {
        if (probe > longestProbe)
            longestProbe = static_cast<std::uint16_t>(probe);
        slot.key = key;
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
    // table until memory ran out. A growth for a key without a place may not take the table past
    // slotsPerKey slots for each key that the set has held and the one it inserts.
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
        this->capacity_ = 0;
        this->size_ = 0;
    }
};

} // namespace zym

template <typename T>
using HashSet = zym::HashSet<T, zym::HashFn<T>, zym::ByteAllocator>;

#endif // ZYM_HASHSET_H
