#include "benchmarks/Support/LoopbackServer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
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

/// More than the simultaneous connections of any benchmark.
constexpr int WORKERS = 16;

int checked(int result) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), "LoopbackServer");
    }
    return result;
}

/// Empty if the client has closed the connection.
std::string receiveRequest(int connection) {
    std::string request;
    std::array<char, 4096> piece{};
    while (request.find("\r\n\r\n") == std::string::npos) {
        auto const received = recv(connection, piece.data(), piece.size(), 0);
        if (received <= 0) {
            return {};
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    return request;
}

/// The buffer of `connection` joins the head and the first bytes of the body, so that a small
/// response is one segment.
void answer(std::FILE* connection, std::string const& request, std::string const& content) {
    auto left = std::stoul(request.substr(std::string_view("GET /").size()));
    std::fprintf(connection,
                 "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
                 "Set-Cookie: session=38afes7a8; Path=/\r\nContent-Length: %lu\r\n\r\n",
                 left);
    while (left > 0 && std::ferror(connection) == 0) {
        left -= std::fwrite(content.data(), 1, std::min(left, content.size()), connection);
    }
    std::fflush(connection);
}

void serve(int listener) {
    std::string const content(std::size_t{256} * 1024, 'x');
    while (true) {
        auto const socket = accept(listener, nullptr, nullptr);
        auto* const connection = fdopen(socket, "w");
        for (std::string request; !(request = receiveRequest(socket)).empty();) {
            answer(connection, request, content);
        }
        // The client has closed. A reset avoids the state TIME_WAIT, in which the thousands of
        // connections of a benchmark would use up the ports.
        linger const reset{1, 0};
        setsockopt(socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
        std::fclose(connection);
    }
}

/// Serves until the other end of `lifeline` is closed.
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

}  // namespace

LoopbackServer::LoopbackServer() {
    auto const listener = checked(socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    checked(bind(listener, generic, size));
    checked(listen(listener, SOMAXCONN));
    checked(getsockname(listener, generic, &size));
    url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
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

}  // namespace Ostrel::Networking::Benchmarks
