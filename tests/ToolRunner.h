#ifndef ZYM_TESTS_TOOLRUNNER_H
#define ZYM_TESTS_TOOLRUNNER_H

#include <string>
#include <vector>

// Where a run's standard output goes.
enum class Output
{
    File,        // a file, read back into ToolRun::out
    BrokenPipe,  // a pipe whose reader has gone
    Closed,      // no descriptor 1 at all
};

struct RunOptions
{
    std::string workingDirectory = ".";
    Output output = Output::File;
    unsigned long fileSizeLimit = 0;  // bytes a file may grow to; 0 for no limit
};

// What a run of a program leaves behind for its caller, as a build sees it.
struct ToolRun
{
    int exitStatus = -1;  // -1 when the process did not exit by itself
    int signal = 0;       // the signal that ended it, 0 when none did
    long peakMemoryKiB = 0;
    std::string out;
    std::string err;
};

// Runs `program` with exactly `arguments` behind its name, with no input.
ToolRun runTool(const std::string& program, const std::vector<std::string>& arguments, const RunOptions& options = {});

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

#endif // ZYM_TESTS_TOOLRUNNER_H
