#include "benchmarks/Support/Process.h"

#include <array>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Ostrel::Networking::Benchmarks {

namespace {

std::string readAll(int from) {
    std::string text;
    std::array<char, 256> piece{};
    for (ssize_t size = 0; (size = read(from, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
}

}  // namespace

std::string outputOf(std::vector<std::string> command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (auto& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("No pipe for " + command.front());
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t process = -1;
    auto const failure =
        posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    auto text = readAll(ends[0]);
    close(ends[0]);
    int status = 1;
    if (failure != 0 || waitpid(process, &status, 0) != process || status != 0) {
        throw std::runtime_error("Failed: " + command.front());
    }
    return text;
}

}  // namespace Ostrel::Networking::Benchmarks
