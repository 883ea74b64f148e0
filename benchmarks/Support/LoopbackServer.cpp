#include "benchmarks/Support/LoopbackServer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Ostrel::Networking::Benchmarks {

namespace {

/// More than any benchmark has connections at a time.
constexpr int WORKERS = 16;

int checked(int result) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), "LoopbackServer");
    }
    return result;
}

bool sendAll(int connection, std::string_view data) {
    while (!data.empty()) {
        auto const sent = send(connection, data.data(), data.size(), 0);
        if (sent <= 0) {
            return false;
        }
        data.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// Answers "GET /N" with N bytes; false if the connection is over.
bool answer(int connection, std::string const& content) {
    std::string request;
    std::array<char, 4096> piece{};
    while (request.find("\r\n\r\n") == std::string::npos) {
        auto const received = recv(connection, piece.data(), piece.size(), 0);
        if (received <= 0) {
            return false;
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    auto const size =
        std::strtoull(request.c_str() + std::string_view("GET /").size(), nullptr, 10);
    auto const first = std::min<std::size_t>(size, content.size());
    // The head leaves together with the first bytes of the body, as one segment where it fits.
    auto sent = sendAll(connection,
                        "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
                        "Set-Cookie: session=38afes7a8; Path=/\r\nContent-Length: " +
                            std::to_string(size) + "\r\n\r\n" + content.substr(0, first));
    for (auto left = size - first; sent && left > 0;) {
        auto const count = std::min<std::size_t>(left, content.size());
        sent = sendAll(connection, std::string_view(content).substr(0, count));
        left -= count;
    }
    return sent;
}

void serve(int listener) {
    std::string const content(std::size_t{256} * 1024, 'x');
    while (true) {
        auto const connection = accept(listener, nullptr, nullptr);
        while (answer(connection, content)) {
        }
        // The client has closed. A reset spares it the state TIME_WAIT, in which the thousands of
        // connections of a benchmark would use up the ports.
        linger const reset{1, 0};
        setsockopt(connection, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
        close(connection);
    }
}

[[noreturn]] void runServer(int listener, int lifeline) {
    std::signal(SIGPIPE, SIG_IGN);
    for (int i = 0; i < WORKERS; ++i) {
        std::thread(serve, listener).detach();
    }
    char end = 0;
    while (read(lifeline, &end, 1) < 0 && errno == EINTR) {
    }
    _exit(0);
}

int listenOnFreePort(int& port) {
    auto const listener = checked(socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    checked(bind(listener, generic, size));
    checked(listen(listener, SOMAXCONN));
    checked(getsockname(listener, generic, &size));
    port = ntohs(address.sin_port);
    return listener;
}

}  // namespace

LoopbackServer::LoopbackServer() {
    auto const listener = listenOnFreePort(port_);
    std::array<int, 2> ends{};
    checked(pipe(ends.data()));
    process_ = checked(fork());
    if (process_ == 0) {
        close(ends[1]);
        runServer(listener, ends[0]);
    }
    close(listener);
    close(ends[0]);
    lifeline_ = ends[1];
    // Programs that this process runs must not keep the server alive.
    checked(fcntl(lifeline_, F_SETFD, FD_CLOEXEC));
}

LoopbackServer::~LoopbackServer() {
    close(lifeline_);
    waitpid(process_, nullptr, 0);
}

std::string LoopbackServer::url() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

}  // namespace Ostrel::Networking::Benchmarks
