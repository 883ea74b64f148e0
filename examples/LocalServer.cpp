#include "examples/LocalServer.h"

#include <stdexcept>
#include <utility>

LocalServer::LocalServer(Handler handler, std::unique_ptr<httplib::Server> server)
    : handler_(std::move(handler)), server_(std::move(server)) {
    server_->Get(".*", [this](auto const& request, auto& response) { answer(request, response); });
    server_->Post(".*", [this](auto const& request, auto& response, auto const& read) {
        auto whole = request;
        // cpp-httplib parses a form while it reads it, and keeps no body. Without its type, the
        // form is an ordinary body.
        const_cast<httplib::Request&>(request).headers.erase("Content-Type");
        auto const append = [&whole](char const* data, std::size_t size) {
            whole.body.append(data, size);
            return true;
        };
        if (read(append)) {
            answer(whole, response);
        }
    });
    server_->set_keep_alive_max_count(1);
    port_ = server_->bind_to_any_port("127.0.0.1");
    if (port_ < 0) {
        throw std::runtime_error("no free port on 127.0.0.1");
    }
    thread_ = std::thread([this] { server_->listen_after_bind(); });
    while (!server_->is_running()) {
        std::this_thread::yield();
    }
}

LocalServer::~LocalServer() {
    release();
    server_->stop();
    thread_.join();
}

void LocalServer::answer(httplib::Request const& request, httplib::Response& response) {
    {
        std::lock_guard const lock(mutex_);
        requests_.push_back(request);
    }
    handler_(request, response);
}

std::string LocalServer::url(std::string const& path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
}

std::vector<httplib::Request> LocalServer::requests() const {
    std::lock_guard const lock(mutex_);
    return requests_;
}

void LocalServer::stall(std::chrono::seconds limit) {
    std::unique_lock lock(mutex_);
    released_.wait_for(lock, limit, [this] { return isReleased_; });
}

void LocalServer::release() {
    std::lock_guard const lock(mutex_);
    isReleased_ = true;
    released_.notify_all();
}
