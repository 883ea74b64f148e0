#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <netinet/in.h>

namespace Ostrel::Networking::Testing {

/// One connection that a `RawServer` has accepted. Waits at most 20 seconds for its peer.
class Connection {
public:
    explicit Connection(int socket) : socket_(socket) {}

    /// Reads a head, and a body as long as its "Content-Length" says; less if the peer closes.
    std::string readRequest();
    /// Reads what comes next, whatever it is; empty once the peer has closed.
    std::string readSome();
    /// Returns false once the peer has closed.
    bool send(std::string_view bytes);
    /// Ends the connection with a reset instead of an orderly close.
    void reset();

private:
    int socket_;
};

/// A server of bytes inside the test, on a free port of 127.0.0.1, for what no proper server says.
/// Serves one connection after the other: the handler does what it likes with each, which is then
/// closed.
class RawServer {
public:
    using Handler = std::function<void(Connection&)>;

    explicit RawServer(Handler handler);
    ~RawServer();
    RawServer(RawServer const&) = delete;
    RawServer& operator=(RawServer const&) = delete;

    [[nodiscard]] std::string authority() const;
    [[nodiscard]] std::string url() const { return "http://" + authority() + "/"; }
    /// How many connections were accepted.
    [[nodiscard]] int connections() const { return connections_; }

private:
    void serve();

    Handler handler_;
    int listener_;
    sockaddr_in address_{};
    std::atomic<bool> isStopping_ = false;
    std::atomic<int> connections_ = 0;
    std::thread thread_;
};

inline std::string const EMPTY_OK = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
inline std::string const MOVED = "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: ";

/// A handler that answers every request with `text`, and keeps what it read in `requests`, if that
/// is given.
RawServer::Handler answering(std::string const& text, std::vector<std::string>* requests = nullptr);

/// A handler that sends `text` as soon as the peer has said something, then `piece` every `pause`
/// for as long as the peer takes it; without a `piece` it waits for the peer to close.
RawServer::Handler endless(std::string const& text, std::string const& piece = {},
                           std::chrono::milliseconds pause = {});

}  // namespace Ostrel::Networking::Testing
