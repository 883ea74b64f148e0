#pragma once

#include <string>

#include <sys/types.h>

namespace Ostrel::Networking::Benchmarks {

/// An HTTP server on a free port of 127.0.0.1 that answers "GET /N" with a body of N bytes. It runs
/// in a separate process, so that its memory and its locks are not measured. That process ends with
/// this object or with the process that created it. Must be created before that process starts
/// threads. Throws `std::system_error` if the server cannot be started.
class LoopbackServer {
public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(LoopbackServer const&) = delete;
    LoopbackServer& operator=(LoopbackServer const&) = delete;

    /// The address to which N is appended.
    [[nodiscard]] std::string const& url() const { return url_; }

private:
    std::string url_;
    int lifeline_ = -1;
    pid_t process_ = -1;
};

}  // namespace Ostrel::Networking::Benchmarks
