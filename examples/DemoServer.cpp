#include "examples/DemoServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <map>
#include <sstream>
#include <utility>

#include <httplib.h>

#include "examples/LocalServer.h"

namespace {

/// The date format of RFC 9110, section 5.6.7.
std::string httpDate(std::time_t time) {
    std::tm fields{};
    std::ostringstream text;
    text << std::put_time(gmtime_r(&time, &fields), "%a, %d %b %Y %T GMT");
    return text.str();
}

/// The lines of a form, without the boundaries and the blank lines between its parts.
std::string linesOfForm(std::string const& body) {
    std::istringstream lines(body);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        if (!line.empty() && line.rfind("--", 0) != 0) {
            text += line + "\n";
        }
    }
    return text;
}

}  // namespace

struct DemoServer::Impl {
    std::atomic<int> flakyRequests{0};
    std::map<std::string, LocalServer::Handler> resources;  // By path.
    std::unique_ptr<LocalServer> server;

    void addResources();
    void answer(httplib::Request const& request, httplib::Response& response) const;
};

void DemoServer::Impl::addResources() {
    resources["/greeting"] = [](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "seen=yes");
        response.set_content("Hello " + request.get_param_value("name") + ", you like " +
                                 request.get_param_value("topic") + ".\nYour header X-Colour: " +
                                 request.get_header_value("X-Colour") +
                                 "\nYour cookies: " + request.get_header_value("Cookie") + "\n",
                             "text/plain");
    };
    resources["/notes"] = [](auto const& request, auto& response) {
        response.status = 201;
        response.set_content("Stored " + std::to_string(request.body.size()) + " bytes of " +
                                 request.get_header_value("Content-Type") + "\n",
                             "text/plain");
    };
    resources["/form"] = [](auto const& request, auto& response) {
        response.set_content(linesOfForm(request.body), "text/plain");
    };
    resources["/moved"] = [](auto const&, auto& response) { response.set_redirect("/notes", 302); };
    resources["/download"] = [](auto const&, auto& response) {
        response.set_content_provider(DOWNLOAD_SIZE, "application/octet-stream",
                                      [](std::size_t, std::size_t length, httplib::DataSink& sink) {
                                          static std::string const PIECE(65'536, 'x');
                                          return sink.write(PIECE.data(),
                                                            std::min(length, PIECE.size()));
                                      });
    };
    resources["/login"] = [](auto const&, auto& response) {
        response.set_header("Set-Cookie", "session=ada");
        response.set_content("Welcome\n", "text/plain");
    };
    resources["/profile"] = [](auto const& request, auto& response) {
        auto const isKnown =
            request.get_header_value("Cookie").find("session=ada") != std::string::npos;
        response.status = isKnown ? 200 : 403;
        response.set_content(isKnown ? "Your profile\n" : "Log in first\n", "text/plain");
    };
    resources["/flaky"] = [this](auto const&, auto& response) {
        if (++flakyRequests < 3) {
            server->stall(std::chrono::seconds(1));
        }
        response.set_header("Last-Modified", httpDate(std::time(nullptr) - 3600));
        response.set_content("Here at last\n", "text/plain");
    };
    resources["/silence"] = [this](auto const&, auto&) { server->stall(); };
}

void DemoServer::Impl::answer(httplib::Request const& request, httplib::Response& response) const {
    auto const resource = resources.find(request.path);
    if (resource != resources.end()) {
        resource->second(request, response);
    } else if (request.path.rfind("http://", 0) == 0) {
        response.set_content("The proxy on port " + std::to_string(server->port()) +
                                 " was asked for " + request.path + "\n",
                             "text/plain");
    } else {
        response.status = 404;
    }
}

DemoServer::DemoServer() : impl_(std::make_unique<Impl>()) {
    impl_->addResources();
    impl_->server = std::make_unique<LocalServer>(
        [this](auto const& request, auto& response) { impl_->answer(request, response); });
}

DemoServer::~DemoServer() = default;

std::string DemoServer::url(std::string const& path) const { return impl_->server->url(path); }
