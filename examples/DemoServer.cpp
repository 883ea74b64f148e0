#include "examples/DemoServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <future>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <httplib.h>

namespace {

/// As in RFC 9110, section 5.6.7.
std::string httpDate(std::time_t time) {
    std::tm fields{};
    std::ostringstream text;
    text << std::put_time(gmtime_r(&time, &fields), "%a, %d %b %Y %T GMT");
    return text.str();
}

}  // namespace

struct DemoServer::Impl {
    httplib::Server server;
    int port = 0;
    std::thread thread;
    std::promise<void> stop;
    std::shared_future<void> stopped = stop.get_future().share();
    std::atomic<int> flakyRequests{0};

    void addResources();
};

void DemoServer::Impl::addResources() {
    server.Get("/greeting", [](httplib::Request const& request, httplib::Response& response) {
        response.set_header("Set-Cookie", "seen=yes");
        response.set_content("Hello " + request.get_param_value("name") + ", you like " +
                                 request.get_param_value("topic") + ".\nYour header X-Colour: " +
                                 request.get_header_value("X-Colour") +
                                 "\nYour cookies: " + request.get_header_value("Cookie") + "\n",
                             "text/plain");
    });
    server.Post("/notes", [](httplib::Request const& request, httplib::Response& response) {
        response.status = 201;
        response.set_content("Stored " + std::to_string(request.body.size()) + " bytes of " +
                                 request.get_header_value("Content-Type") + "\n",
                             "text/plain");
    });
    server.Post("/form", [](httplib::Request const& request, httplib::Response& response) {
        std::string text;
        for (auto const& [name, part] : request.files) {
            text += "Field " + name + ": " + std::to_string(part.content.size()) + " bytes of " +
                    (part.content_type.empty() ? "no type" : part.content_type) + "\n";
        }
        response.set_content(text, "text/plain");
    });
    server.Post("/moved", [](httplib::Request const&, httplib::Response& response) {
        response.set_redirect("/notes", 302);
    });
    server.Get("/download", [](httplib::Request const&, httplib::Response& response) {
        response.set_content_provider(DOWNLOAD_SIZE, "application/octet-stream",
                                      [](std::size_t, std::size_t length, httplib::DataSink& sink) {
                                          static std::string const PIECE(65'536, 'x');
                                          return sink.write(PIECE.data(),
                                                            std::min(length, PIECE.size()));
                                      });
    });
    server.Post("/login", [](httplib::Request const&, httplib::Response& response) {
        response.set_header("Set-Cookie", "session=ada");
        response.set_content("Welcome\n", "text/plain");
    });
    server.Get("/profile", [](httplib::Request const& request, httplib::Response& response) {
        auto const isKnown = request.get_header_value("Cookie") == "session=ada;";
        response.status = isKnown ? 200 : 403;
        response.set_content(isKnown ? "Your profile\n" : "Log in first\n", "text/plain");
    });
    server.Get("/flaky", [this](httplib::Request const&, httplib::Response& response) {
        if (++flakyRequests < 3) {
            stopped.wait_for(std::chrono::seconds(1));
        }
        response.set_header("Last-Modified", httpDate(std::time(nullptr) - 3600));
        response.set_content("Here at last\n", "text/plain");
    });
    server.Get("http://.*", [this](httplib::Request const& request, httplib::Response& response) {
        response.set_content(
            "The proxy on port " + std::to_string(port) + " was asked for " + request.path + "\n",
            "text/plain");
    });
    server.Get("/silence", [this](httplib::Request const&, httplib::Response&) {
        stopped.wait_for(std::chrono::seconds(30));
    });
}

DemoServer::DemoServer() : impl_(std::make_unique<Impl>()) {
    impl_->addResources();
    impl_->port = impl_->server.bind_to_any_port("127.0.0.1");
    if (impl_->port < 0) {
        throw std::runtime_error("no free port on 127.0.0.1");
    }
    impl_->thread = std::thread([impl = impl_.get()] { impl->server.listen_after_bind(); });
}

DemoServer::~DemoServer() {
    impl_->stop.set_value();
    while (!impl_->server.is_running()) {
        std::this_thread::yield();
    }
    impl_->server.stop();
    impl_->thread.join();
}

std::string DemoServer::url(std::string const& path) const {
    return "http://127.0.0.1:" + std::to_string(impl_->port) + path;
}
