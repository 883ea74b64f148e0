// Runs the command given as arguments, with the URL of a server inside this process added, and
// exits with its status.

#include <iostream>

#include <sys/wait.h>
#include <unistd.h>

#include "examples/LocalServer.h"

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::cerr << "usage: ServeAndRun COMMAND [ARGUMENT...]\n";
        return 2;
    }
    LocalServer const server;
    auto url = server.url();
    std::vector<char*> command(argv + 1, argv + argc);
    command.push_back(url.data());
    command.push_back(nullptr);
    auto const child = fork();
    if (child == 0) {
        execv(command[0], command.data());
        std::cerr << "ServeAndRun: cannot run " << command[0] << '\n';
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
