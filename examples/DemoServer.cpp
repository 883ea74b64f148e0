#include "examples/DemoServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <utility>

#include <httplib.h>

#include "examples/LocalServer.h"

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
    std::atomic<int> flakyRequests{0};
    std::unique_ptr<LocalServer> server;

    void addResources(httplib::Server& http);
};

void DemoServer::Impl::addResources(httplib::Server& http) {
    http.Get("/greeting", [](httplib::Request const& request, httplib::Response& response) {
        response.set_header("Set-Cookie", "seen=yes");
        response.set_content("Hello " + request.get_param_value("name") + ", you like " +
                                 request.get_param_value("topic") + ".\nYour header X-Colour: " +
                                 request.get_header_value("X-Colour") +
                                 "\nYour cookies: " + request.get_header_value("Cookie") + "\n",
                             "text/plain");
    });
    http.Post("/notes", [](httplib::Request const& request, httplib::Response& response) {
        response.status = 201;
        response.set_content("Stored " + std::to_string(request.body.size()) + " bytes of " +
                                 request.get_header_value("Content-Type") + "\n",
                             "text/plain");
    });
    http.Post("/form", [](httplib::Request const& request, httplib::Response& response) {
        std::string text;
        for (auto const& [name, part] : request.files) {
            text += "Field " + name + ": " + std::to_string(part.content.size()) + " bytes of " +
                    (part.content_type.empty() ? "no type" : part.content_type) + "\n";
        }
        response.set_content(text, "text/plain");
    });
    http.Post("/moved", [](httplib::Request const&, httplib::Response& response) {
        response.set_redirect("/notes", 302);
    });
    http.Get("/download", [](httplib::Request const&, httplib::Response& response) {
        response.set_content_provider(DOWNLOAD_SIZE, "application/octet-stream",
                                      [](std::size_t, std::size_t length, httplib::DataSink& sink) {
                                          static std::string const PIECE(65'536, 'x');
                                          return sink.write(PIECE.data(),
                                                            std::min(length, PIECE.size()));
                                      });
    });
    http.Post("/login", [](httplib::Request const&, httplib::Response& response) {
        response.set_header("Set-Cookie", "session=ada");
        response.set_content("Welcome\n", "text/plain");
    });
    http.Get("/profile", [](httplib::Request const& request, httplib::Response& response) {
        auto const isKnown = request.get_header_value("Cookie") == "session=ada;";
        response.status = isKnown ? 200 : 403;
        response.set_content(isKnown ? "Your profile\n" : "Log in first\n", "text/plain");
    });
    http.Get("/flaky", [this](httplib::Request const&, httplib::Response& response) {
        if (++flakyRequests < 3) {
            server->stall(std::chrono::seconds(1));
        }
        response.set_header("Last-Modified", httpDate(std::time(nullptr) - 3600));
        response.set_content("Here at last\n", "text/plain");
    });
    http.Get("http://.*", [this](httplib::Request const& request, httplib::Response& response) {
        response.set_content("The proxy on port " + std::to_string(server->port()) +
                                 " was asked for " + request.path + "\n",
                             "text/plain");
    });
    http.Get("/silence", [this](httplib::Request const&, httplib::Response&) { server->stall(); });
}

DemoServer::DemoServer() : impl_(std::make_unique<Impl>()) {
    auto http = std::make_unique<httplib::Server>();
    impl_->addResources(*http);
    impl_->server = std::make_unique<LocalServer>([](auto&, auto&) {}, std::move(http));
}

DemoServer::~DemoServer() = default;

std::string DemoServer::url(std::string const& path) const { return impl_->server->url(path); }
