#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

/// An HTTP server inside this process, on a free port of 127.0.0.1, for the demo and the tests.
/// Records every request, then lets the handler answer it. Handlers run on threads of the server.
class LocalServer {
public:
    using Handler = std::function<void(httplib::Request const&, httplib::Response&)>;

    /// `server` may be an `httplib::SSLServer`. Its own routes, if any, come before `handler`.
    /// Throws `std::runtime_error` if there is no free port.
    explicit LocalServer(
        Handler handler = [](auto const&, auto&) {},
        std::unique_ptr<httplib::Server> server = std::make_unique<httplib::Server>());
    /// Releases blocked handlers and stops the server.
    ~LocalServer();
    LocalServer(LocalServer const&) = delete;
    LocalServer& operator=(LocalServer const&) = delete;

    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] std::string url(std::string const& path = "/") const;
    /// The requests so far, in the order of their arrival. `body` contains the body as sent, also
    /// for a form; the members for the parts of a form stay empty.
    [[nodiscard]] std::vector<httplib::Request> requests() const;

    /// Blocks a handler until `release` is called, the server stops, or `limit` has passed.
    void stall(std::chrono::seconds limit = std::chrono::seconds(20));
    void release();

private:
    void answer(httplib::Request const& request, httplib::Response& response);

    Handler handler_;
    std::unique_ptr<httplib::Server> server_;
    int port_;
    mutable std::mutex mutex_;
    std::condition_variable released_;
    bool isReleased_ = false;
    std::vector<httplib::Request> requests_;
    std::thread thread_;
};
