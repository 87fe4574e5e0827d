#ifndef ZYM_STAND_IN_NAME_H
#define ZYM_STAND_IN_NAME_H

#include <zym/String.h>

#include <utility>

namespace zym
{

// Stand-in for the library's name: a plain string here, with the operations that the
// bindings and zym/Math.tolua use. Not trivially copyable: its containers are the Vector ones.
class Name
{
public:
    Name() = default;
    Name(const char* text) : text_(text) {}
    explicit Name(String text) : text_(std::move(text)) {}

    const char* c_str() const { return text_.c_str(); }
    const String& str() const { return text_; }

    bool operator==(const Name& other) const { return text_ == other.text_; }
    bool operator!=(const Name& other) const { return !(*this == other); }

private:
    String text_;
};

} // namespace zym

#endif // ZYM_STAND_IN_NAME_H
