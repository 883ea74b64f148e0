#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

namespace Ostrel::Networking::Testing {

/// An HTTP server inside the test, on a free port of 127.0.0.1. Records every request, then lets
/// the handler answer it. The handler runs on threads of the server.
class LocalServer {
public:
    using Handler = std::function<void(httplib::Request const&, httplib::Response&)>;

    /// The server that does the work may be a `httplib::SSLServer`.
    explicit LocalServer(
        Handler handler = [](auto const&, auto&) {},
        std::unique_ptr<httplib::Server> server = std::make_unique<httplib::Server>());
    /// Releases stalled handlers and ends the server.
    ~LocalServer();
    LocalServer(LocalServer const&) = delete;
    LocalServer& operator=(LocalServer const&) = delete;

    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] std::string url(std::string const& path = "/") const;
    [[nodiscard]] std::vector<httplib::Request> requests() const;

    /// Keeps a handler from answering until `release`, or the end of the server, 20 seconds at
    /// most.
    void stall();
    void release();

private:
    Handler handler_;
    std::unique_ptr<httplib::Server> server_;
    int port_;
    mutable std::mutex mutex_;
    std::condition_variable released_;
    bool isReleased_ = false;
    std::vector<httplib::Request> requests_;
    std::thread thread_;
};

}  // namespace Ostrel::Networking::Testing
