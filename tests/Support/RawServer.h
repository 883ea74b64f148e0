#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace Ostrel::Networking::Testing {

/// One connection that a `RawServer` has accepted. Waits 20 seconds at most for its peer.
class Connection {
public:
    explicit Connection(int socket) : socket_(socket) {}

    /// Reads a head, and a body as long as its "Content-Length" says; less if the peer ends.
    std::string readRequest();
    /// Reads until there is something.
    void readSome();
    /// Gives false once the peer is gone.
    bool send(std::string_view bytes);
    /// Ends the connection with a reset instead of an orderly close.
    void reset();
    /// Waits until the peer closes; drops what it still sends.
    void waitForClose();

private:
    int socket_;
};

/// A server of bytes inside the test, on a free port of 127.0.0.1, for what no proper server says.
/// Serves one connection after the other: the handler does what it likes with each, which is then
/// closed.
class RawServer {
public:
    explicit RawServer(std::function<void(Connection&)> handler);
    ~RawServer();
    RawServer(RawServer const&) = delete;
    RawServer& operator=(RawServer const&) = delete;

    [[nodiscard]] std::string authority() const;
    [[nodiscard]] std::string url(std::string const& path = "/") const;
    /// How many connections were accepted.
    [[nodiscard]] int connections() const;

private:
    void serve();

    std::function<void(Connection&)> handler_;
    int listener_;
    int port_ = 0;
    mutable std::mutex mutex_;
    bool isStopping_ = false;
    int current_ = -1;
    int connections_ = 0;
    std::thread thread_;
};

/// A handler that answers every request with `text`; keeps what it read in `requests`, if that is
/// given.
std::function<void(Connection&)> answering(std::string text,
                                           std::vector<std::string>* requests = nullptr);

}  // namespace Ostrel::Networking::Testing
