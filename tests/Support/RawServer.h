#pragma once

#include <array>
#include <atomic>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace Ostrel::Networking::Testing {

/// One connection that a `RawServer` has accepted. Waits at most 20 seconds for its peer.
class Connection {
public:
    explicit Connection(int socket) : socket_(socket) {
        timeval const patience{20, 0};
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    }

    /// Reads a head, and a body as long as its "Content-Length" says; less if the peer closes.
    std::string readRequest() {
        std::string text;
        auto const isWhole = [&text] {
            auto const end = text.find("\r\n\r\n");
            auto const length = text.find("\r\nContent-Length: ");
            return end != std::string::npos &&
                   (length > end || text.size() >= end + 4 + std::stoul(&text[length + 18]));
        };
        std::string piece;
        do {
            piece = readSome();
            text += piece;
        } while (!piece.empty() && !isWhole());
        return text;
    }

    /// Reads what comes next, whatever it is; empty once the peer has closed.
    std::string readSome() {
        std::array<char, 65536> buffer;
        auto const count = recv(socket_, buffer.data(), buffer.size(), 0);
        return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
    }

    /// Returns false once the peer has closed.
    bool send(std::string_view bytes) {
        return ::send(socket_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
    }

private:
    int socket_;
};

/// A server of bytes inside the test, on a free port of 127.0.0.1, for what no proper server says.
/// Serves one connection after the other: the handler does what it likes with each, which is then
/// closed.
class RawServer {
public:
    using Handler = std::function<void(Connection&)>;

    explicit RawServer(Handler handler)
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
    ~RawServer() {
        isStopping_ = true;
        // A connection wakes `accept` on every system; `shutdown` does not.
        auto const waker = socket(AF_INET, SOCK_STREAM, 0);
        (void)connect(waker, reinterpret_cast<sockaddr const*>(&address_), sizeof address_);
        thread_.join();
        close(waker);
        close(listener_);
    }

    [[nodiscard]] std::string authority() const {
        return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port));
    }
    [[nodiscard]] std::string url() const { return "http://" + authority() + "/"; }
    /// How many connections were accepted.
    [[nodiscard]] int connections() const { return connections_; }

private:
    void serve() {
        while (!isStopping_) {
            auto const socket = accept(listener_, nullptr, nullptr);
            if (socket >= 0 && !isStopping_) {
                ++connections_;
                Connection connection(socket);
                handler_(connection);
            }
            close(socket);
        }
    }

    Handler handler_;
    int listener_;
    sockaddr_in address_{};
    std::atomic<bool> isStopping_ = false;
    std::atomic<int> connections_ = 0;
    std::thread thread_;
};

/// A response with `body` and the given lines of its head.
inline std::string okWith(std::string const& body, std::string const& headers = "") {
    auto const length = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    return "HTTP/1.1 200 OK\r\n" + headers + length + body;
}

inline std::string const EMPTY_OK = okWith("");
inline std::string const MOVED = "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: ";

/// A handler that answers every request with `text`, and keeps what it read in `requests`, if that
/// is given.
inline RawServer::Handler answering(std::string const& text,
                                    std::vector<std::string>* requests = nullptr) {
    return [text, requests](Connection& connection) {
        auto const request = connection.readRequest();
        if (requests != nullptr) {
            requests->push_back(request);
        }
        connection.send(text);
    };
}

/// A handler that sends `text` as soon as the peer has said something, then `piece` for as long as
/// the peer takes it; without a `piece` it waits for the peer to close.
inline RawServer::Handler endless(std::string const& text, std::string const& piece = {}) {
    return [=](Connection& connection) {
        (void)connection.readSome();
        connection.send(text);
        while (piece.empty() ? !connection.readSome().empty() : connection.send(piece)) {
        }
    };
}

}  // namespace Ostrel::Networking::Testing
