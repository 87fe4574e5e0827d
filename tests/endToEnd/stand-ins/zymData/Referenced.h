#ifndef ZYMDATA_STAND_IN_REFERENCED_H
#define ZYMDATA_STAND_IN_REFERENCED_H

#include <cstdint>

namespace zymData
{

// The reference count of the library's data objects, as the bindings see it: an object is
// created holding one reference, for its creator, and deletes itself when release() gives
// back the last one. Its destructor is not public, so nothing else deletes it. The bindings
// mark such classes TOLUA_REFERENCED_CLASS.
class Referenced
{
public:
    Referenced(const Referenced&) = delete;
    Referenced& operator=(const Referenced&) = delete;

    void addRef() { ++references_; }

    void release()
    {
        if (--references_ == 0)
            delete this;
    }

    std::uint32_t referenceCount() const { return references_; }

    // Objects of all referenced classes now alive, for tests that look for leaks.
    static std::int64_t liveCount() { return live_; }

protected:
    Referenced() { ++live_; }
    virtual ~Referenced() { --live_; }

private:
    std::uint32_t references_ = 1;
    static inline std::int64_t live_ = 0;
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_REFERENCED_H
