#ifndef ZYM_TESTS_TOOLRUNNER_H
#define ZYM_TESTS_TOOLRUNNER_H

#include <string>
#include <vector>

// What a run of a program leaves behind for its caller, as a build sees it.
struct ToolRun
{
    int exitStatus = -1;  // -1 when the process did not exit by itself
    int signal = 0;       // the signal that ended it, 0 when none did
    long peakMemoryKiB = 0;
    std::string out;
    std::string err;
};

// Runs `program` with exactly `arguments` behind its name, in `workingDirectory`, with no input.
ToolRun runTool(const std::string& program, const std::vector<std::string>& arguments,
                const std::string& workingDirectory = ".");

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
bool fileExists(const std::string& path);

#endif // ZYM_TESTS_TOOLRUNNER_H
