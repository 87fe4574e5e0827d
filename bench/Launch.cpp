// Launch <stdout file> <program> [arguments...]: runs the program with its standard output in the
// file and prints "<wall ns> <user CPU ns> <system CPU ns> <peak RSS KiB> <wait status>" on its own.
//
// bench/run.py measures every process through this small one: a child's peak RSS starts from the
// resident size of the process that forked it, which for the Python driver would hide that of
// the smallest programs.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

namespace
{

long long nanoseconds(const timespec& time)
{
    return static_cast<long long>(time.tv_sec) * 1000000000LL + time.tv_nsec;
}

long long nanoseconds(const timeval& time)
{
    return static_cast<long long>(time.tv_sec) * 1000000000LL + static_cast<long long>(time.tv_usec) * 1000LL;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
    {
        std::fprintf(stderr, "usage: Launch <stdout file> <program> [arguments...]\n");
        return 2;
    }
    const int output = ::open(argv[1], O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (output < 0)
    {
        std::perror(argv[1]);
        return 2;
    }

    timespec start{}, end{};
    ::clock_gettime(CLOCK_MONOTONIC, &start);
    const pid_t child = ::fork();
    if (child == 0)
    {
        ::dup2(output, 1);
        ::close(output);
        ::execv(argv[2], argv + 2);
        std::perror(argv[2]);
        ::_exit(127);
    }
    if (child < 0)
    {
        std::perror("fork");
        return 2;
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    ::clock_gettime(CLOCK_MONOTONIC, &end);
    ::close(output);

    std::printf("%lld %lld %lld %ld %d\n", nanoseconds(end) - nanoseconds(start), nanoseconds(usage.ru_utime),
                nanoseconds(usage.ru_stime), usage.ru_maxrss, status);
    return 0;
}
