#ifndef ZYMDATA_STAND_IN_INDEXARRAY_H
#define ZYMDATA_STAND_IN_INDEXARRAY_H

#include <zym/Index.h>

#include <cstdint>
#include <vector>

namespace zymData
{

// Stand-in for the library's list of element indices; the bindings pass it by value.
class IndexArray
{
public:
    void push_back(zym::Index index) { indices_.push_back(index); }
    std::uint64_t size() const { return indices_.size(); }

    std::vector<zym::Index>::const_iterator begin() const { return indices_.begin(); }
    std::vector<zym::Index>::const_iterator end() const { return indices_.end(); }

private:
    std::vector<zym::Index> indices_;
};

} // namespace zymData

#endif // ZYMDATA_STAND_IN_INDEXARRAY_H
