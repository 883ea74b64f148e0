#include "tests/Support/RawServer.h"

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#ifndef MSG_NOSIGNAL
#define MSG_NOSIGNAL 0  // As on macOS.
#endif

namespace Ostrel::Networking::Testing {

std::string Connection::readRequest() {
    std::string text;
    std::size_t wanted = std::string::npos;
    std::array<char, 65536> buffer{};
    while (wanted == std::string::npos || text.size() < wanted) {
        auto const count = recv(socket_, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            break;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
        auto const end = text.find("\r\n\r\n");
        if (wanted == std::string::npos && end != std::string::npos) {
            auto const length = text.find("\r\nContent-Length: ");
            wanted = end + 4 + (length < end ? std::strtoul(&text[length + 18], nullptr, 10) : 0);
        }
    }
    return text;
}

void Connection::readSome() {
    char byte = 0;
    (void)recv(socket_, &byte, 1, 0);
}

bool Connection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        auto const count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void Connection::reset() {
    linger const now{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

void Connection::waitForClose() {
    std::array<char, 65536> buffer{};
    while (recv(socket_, buffer.data(), buffer.size(), 0) > 0) {
    }
}

RawServer::RawServer(std::function<void(Connection&)> handler)
    : handler_(std::move(handler)), listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, generic, length) != 0 || listen(listener_, 64) != 0 ||
        getsockname(listener_, generic, &length) != 0) {
        throw std::runtime_error("no free port on 127.0.0.1");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

RawServer::~RawServer() {
    {
        std::lock_guard const lock(mutex_);
        isStopping_ = true;
        shutdown(listener_, SHUT_RDWR);
        if (current_ >= 0) {
            shutdown(current_, SHUT_RDWR);
        }
    }
    thread_.join();
    close(listener_);
}

void RawServer::serve() {
    for (;;) {
        auto const socket = accept(listener_, nullptr, nullptr);
        {
            std::lock_guard const lock(mutex_);
            if (socket < 0 || isStopping_) {
                break;
            }
            current_ = socket;
            ++connections_;
        }
        timeval const patience{20, 0};
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        Connection connection(socket);
        handler_(connection);
        std::lock_guard const lock(mutex_);
        current_ = -1;
        close(socket);
    }
}

std::string RawServer::authority() const { return "127.0.0.1:" + std::to_string(port_); }

std::string RawServer::url(std::string const& path) const { return "http://" + authority() + path; }

int RawServer::connections() const {
    std::lock_guard const lock(mutex_);
    return connections_;
}

std::function<void(Connection&)> answering(std::string text, std::vector<std::string>* requests) {
    return [text = std::move(text), requests](Connection& connection) {
        auto request = connection.readRequest();
        if (requests != nullptr) {
            requests->push_back(std::move(request));
        }
        connection.send(text);
    };
}

}  // namespace Ostrel::Networking::Testing
