#include "tests/Support/RawServer.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace Ostrel::Networking::Testing {

std::string Connection::readRequest() {
    std::string text;
    for (auto wanted = std::string::npos; text.size() < wanted;) {
        auto const piece = readSome();
        if (piece.empty()) {
            break;
        }
        text += piece;
        if (auto const end = text.find("\r\n\r\n"); end != std::string::npos) {
            auto const length = text.find("\r\nContent-Length: ");
            wanted = end + 4 + (length < end ? std::strtoul(&text[length + 18], nullptr, 10) : 0);
        }
    }
    return text;
}

std::string Connection::readSome() {
    std::array<char, 65536> buffer;
    auto const count = recv(socket_, buffer.data(), buffer.size(), 0);
    return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

bool Connection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        auto const count = ::send(socket_, bytes.data(), bytes.size(), 0);
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

RawServer::RawServer(Handler handler)
    : handler_(std::move(handler)), listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    std::signal(SIGPIPE, SIG_IGN);  // Raised where a peer closes while the server sends.
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address_;
    auto* const address = reinterpret_cast<sockaddr*>(&address_);
    if (bind(listener_, address, length) != 0 || listen(listener_, 64) != 0 ||
        getsockname(listener_, address, &length) != 0) {
        throw std::runtime_error("no free port on 127.0.0.1");
    }
    thread_ = std::thread([this] { serve(); });
}

RawServer::~RawServer() {
    isStopping_ = true;
    // A connection wakes `accept` on every system; `shutdown` does not.
    auto const waker = socket(AF_INET, SOCK_STREAM, 0);
    (void)connect(waker, reinterpret_cast<sockaddr const*>(&address_), sizeof address_);
    thread_.join();
    close(waker);
    close(listener_);
}

void RawServer::serve() {
    while (!isStopping_) {
        auto const socket = accept(listener_, nullptr, nullptr);
        if (socket >= 0 && !isStopping_) {
            ++connections_;
            timeval const patience{20, 0};
            setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
            Connection connection(socket);
            handler_(connection);
        }
        close(socket);
    }
}

std::string RawServer::authority() const {
    return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port));
}

RawServer::Handler answering(std::string const& text, std::vector<std::string>* requests) {
    return [text, requests](Connection& connection) {
        auto const request = connection.readRequest();
        if (requests != nullptr) {
            requests->push_back(request);
        }
        connection.send(text);
    };
}

RawServer::Handler endless(std::string const& text, std::string const& piece,
                           std::chrono::milliseconds pause) {
    return [=](Connection& connection) {
        (void)connection.readSome();
        connection.send(text);
        while (piece.empty() ? !connection.readSome().empty() : connection.send(piece)) {
            std::this_thread::sleep_for(pause);
        }
    };
}

}  // namespace Ostrel::Networking::Testing
