#pragma once

#include <memory>
#include <string>

/// An HTTP server inside this process, on a free port of 127.0.0.1, with the resources of the demo.
/// As a proxy, it answers every request itself, with its port and the URL in the body.
class DemoServer {
public:
    /// Size of the resource "/download", in bytes.
    static constexpr std::size_t DOWNLOAD_SIZE = 48'000'000;

    DemoServer();
    ~DemoServer();
    DemoServer(DemoServer const&) = delete;
    DemoServer& operator=(DemoServer const&) = delete;

    /// The URL of a resource; `path` starts with "/".
    [[nodiscard]] std::string url(std::string const& path) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
