#pragma once

#include <string>

#include <sys/types.h>

namespace Ostrel::Networking::Benchmarks {

/// An HTTP server on a free port of 127.0.0.1 that does as little as it can, in a process of its
/// own so that its memory and its locks do not count. Ends with this object, or with the process
/// that made it. Must be made before that process starts threads. Throws `std::system_error` if
/// the server cannot be started.
class LoopbackServer {
public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(LoopbackServer const&) = delete;
    LoopbackServer& operator=(LoopbackServer const&) = delete;

    /// Followed by a decimal number, where a body of that many bytes is served.
    [[nodiscard]] std::string url() const;

private:
    int port_ = 0;
    int lifeline_ = -1;
    pid_t process_ = -1;
};

}  // namespace Ostrel::Networking::Benchmarks
