#ifndef ZYM_STRING_H
#define ZYM_STRING_H

#include <zym/Core.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace zym
{

// The core string: the standard string it is built on, plus printf-style formatting.
template <typename Base>
class ZyMString : public Base
{
public:
    using Base::Base;

    ZyMString() = default;
    ZyMString(const Base& text) : Base(text) {}
    ZyMString(Base&& text) : Base(std::move(text)) {}

    // A text of any length; a failure to allocate it ends the process with a message.
    static ZyMString format(const char* format, ...) __attribute__((format(printf, 1, 2)));
};

template <typename Base>
ZyMString<Base> ZyMString<Base>::format(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    char* buffer = nullptr;
    const int ret = ::vasprintf(&buffer, format, arguments);
    va_end(arguments);
    if (!(ret >= 0))
    {
        const std::string error = zym::buildErrorString("[%s:%u] zymVerify failed: `%s', ",
                                                        "Could not allocate memory for formatted string: '%s'",
                                                        __FILE__, static_cast<unsigned>(__LINE__), "ret >= 0", format);
        std::fprintf(stderr, "%s\n", error.c_str());
        zym::abort();
    }
    ZyMString text(buffer, static_cast<std::size_t>(ret));
    std::free(buffer);
    return text;
}

} // namespace zym

typedef zym::ZyMString<std::string> String;

#endif // ZYM_STRING_H
