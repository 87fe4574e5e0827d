#ifndef ZYM_REPORTEDERROR_H
#define ZYM_REPORTEDERROR_H

#include <iostream>
#include <stdexcept>

namespace zym
{

// A failure whose report stands on std::cerr already: what ends the run has nothing to add.
class ReportedError : public std::runtime_error
{
public:
    explicit ReportedError(const std::runtime_error& report) : std::runtime_error(report) {}
};

// Writes the report and a line end to std::cerr, then raises it, as `describe`, if given, hands it
// on (the core library's log of the error comes between the two).
template <typename Describe>
[[noreturn]] void raiseReported(const std::runtime_error& report, Describe describe)
{
    std::cerr << report.what() << std::endl;
    throw ReportedError(describe(report));
}

[[noreturn]] inline void raiseReported(const std::runtime_error& report)
{
    raiseReported(report, [](const std::runtime_error& error) -> const std::runtime_error& { return error; });
}

} // namespace zym

#endif // ZYM_REPORTEDERROR_H
