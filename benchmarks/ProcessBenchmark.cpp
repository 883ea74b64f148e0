#include <cstdio>
#include <stdexcept>
#include <string>

#include <spawn.h>
#include <sys/wait.h>

#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"
#include "benchmarks/Support/Fetch.h"

extern char** environ;

namespace Ostrel::Networking::Benchmarks {

namespace {

/// The peak memory, in bytes, of a process that fetches one body.
Contestant fetching(std::string const& name, std::string const& how, std::string const& url) {
    auto const command = "'" PEAK_MEMORY "' " + how + " " + url;
    return {name, [command] {
                auto* const output = popen(command.c_str(), "r");
                double bytes = 0;
                auto const isRead = output != nullptr && std::fscanf(output, "%lf", &bytes) == 1;
                if (output == nullptr || pclose(output) != 0 || !isRead) {
                    throw std::runtime_error("Failed: " + command);
                }
                return bytes;
            }};
}

void run(std::string program) {
    char* arguments[] = {program.data(), nullptr};
    pid_t process = -1;
    int status = 1;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        throw std::runtime_error("Failed: " + program);
    }
}

Contestant starting(std::string const& name, std::string const& program) {
    return {name, [program] { return timeOf(1, [&program] { run(program); }); }};
}

}  // namespace

void registerProcessBenchmarks(std::string const& server) {
    auto const url = server + BODY_SIZE;
    registerComparison("Memory/collected", {fetching("library", "collectByLibrary", url),
                                            fetching("cpr", "collectByCpr", url)});
    registerComparison("Memory/streamed", {fetching("library", "streamByLibrary", url),
                                           fetching("cpr", "streamByCpr", url)});
    registerComparison("Start", {starting("library", START_LIBRARY), starting("cpr", START_CPR),
                                 starting("plain", START_PLAIN)});
}

}  // namespace Ostrel::Networking::Benchmarks
