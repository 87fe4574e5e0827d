#ifndef ZYM_HASHSET_H
#define ZYM_HASHSET_H

#include <zym/ByteAllocator.h>
#include <zym/Core.h>
#include <zym/String.h>

#include <cstdint>
#include <iostream>
#include <new>

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

    static constexpr std::uint8_t EMPTY = 0;
    static constexpr std::uint8_t OCCUPIED = 2;

    class iterator
    {
    public:
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

    InsertResult insert(const Key& key)
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
                    return place(slot, index, k, key);
            }

            stopIfNeverPlaceable(key, hash);
            rebuild(hash_set_detail::doubledRequest(capacity_));
        }
    }

    void rebuild(std::uint64_t requested)
    {
        const std::uint64_t oldCapacity = capacity_;
        Slot* const oldTable = table;

        const int argument = requested == 0 ? 1 : static_cast<int>(static_cast<std::uint32_t>(requested));
        const std::uint64_t newCapacity = static_cast<std::uint64_t>(static_cast<std::int64_t>(zym::nextPrime(argument)));
        table = static_cast<Slot*>(allocator.allocateBytes(newCapacity * sizeof(Slot), 16));
        for (std::uint64_t i = 0; i < newCapacity; ++i)
            new (table + i) Slot{Key(), EMPTY};
        capacity_ = newCapacity;
        size_ = 0;
        longestProbe = 0;

        // A nested rebuild may replace `table` again; the old keys stay valid until the end.
        for (std::uint64_t i = 0; i < oldCapacity; ++i)
            if (oldTable[i].state == OCCUPIED)
                insert(oldTable[i].key);

        for (std::uint64_t i = 0; i < oldCapacity; ++i)
            oldTable[i].~Slot();
        allocator.deallocateBytes(oldTable, oldCapacity * sizeof(Slot));
    }

    iterator begin() const { return iterator(this, nextOccupied(0)); }
    iterator end() const { return iterator(this, capacity_); }

    std::uint64_t size() const { return size_; }
    std::uint64_t capacity() const { return capacity_; }

protected:
    explicit HashSetImplementation(const Allocator& slotAllocator) : allocator(slotAllocator) {}
    ~HashSetImplementation() = default;

    std::uint64_t size_ = 0;
    std::uint64_t capacity_ = 0;
    Slot* table = nullptr;
    std::uint16_t longestProbe = 0;
    Allocator allocator;

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
        }
        return InsertResult{iterator(this, index), alreadyPresent};
    }

    std::uint64_t nextOccupied(std::uint64_t index) const
    {
        while (index < capacity_ && table[index].state != OCCUPIED)
            ++index;
        return index;
    }

    // All keys of one hash share the same eleven probe positions at every capacity. When eleven
    // other keys of this hash hold all of them, no table can ever take this key: growing would
    // go on forever, so the process stops here instead.
    void stopIfNeverPlaceable(const Key& key, std::uint64_t hash) const
    {
        for (std::uint64_t k = 0; k < hash_set_detail::probeCount; ++k)
        {
            const std::uint64_t index = (k * k + hash) % capacity_;
            for (std::uint64_t j = 0; j < k; ++j)
                if ((j * j + hash) % capacity_ == index)
                    return;
            if (Hash()(table[index].key) != hash)
                return;
        }
        std::cerr << "HashSet: cannot insert '" << key << "' (hash " << hash
                  << "): eleven other keys of that hash fill all of its probe positions" << std::endl;
        zym::abort();
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
        for (std::uint64_t i = 0; i < this->capacity_; ++i)
            this->table[i].~Slot();
        this->allocator.deallocateBytes(this->table, this->capacity_ * sizeof(typename Base::Slot));
        this->table = nullptr;
        this->size_ = 0;
        this->capacity_ = 0;
    }
};

} // namespace zym

template <typename T>
using HashSet = zym::HashSet<T, zym::HashFn<T>, zym::ByteAllocator>;

#endif // ZYM_HASHSET_H
