// Demonstrates the library with a server inside this process, or fetches the given URL.
// Usage: demo [URL]

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Networking/Adapters/SystemProxyAdapter.h>
#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/DemoServer.h"
#include "examples/Printing.h"
#include "examples/ProgressBar.h"

using namespace Ostrel::Networking;

namespace {

constexpr std::int64_t MILLISECOND = 1000;
constexpr std::int64_t SECOND = 1000 * MILLISECOND;

constexpr auto USAGE =
    "usage: demo [URL]\n"
    "Without a URL, demonstrates the library with a server inside this process.\n"
    "With a URL, fetches it and prints the status line, the headers and the size of the body.\n"
    "Exits with status 1 if something fails, including an HTTP status of 400 or above.\n";

Options defaultOptions() {
    Options options;
    options.timeout = 60 * SECOND;
    options.followRedirects = true;
    options.maxRedirects = 5;
    options.progressInterval = 5 * MILLISECOND;
    return options;
}

/// Prints every request and its response, and counts the responses that are not as expected.
class Walk {
public:
    void step(std::string const& asked, Response const& response, ErrorCode code, int statusCode) {
        check(asked, response, code, statusCode, true);
    }

    /// Like `step`, with one more condition.
    void check(std::string const& asked, Response const& response, ErrorCode code, int statusCode,
               bool holds) {
        std::cout << ++count_ << ". " << asked << "\n   " << summaryOf(response) << '\n';
        if (!response.body.empty() && response.body.size() < 1000) {
            std::cout << "   | " << indented(response.body) << '\n';
        }
        if (response.error.code != code || response.statusCode != statusCode || !holds) {
            std::cout << "   UNEXPECTED: expected status " << statusCode << ", outcome "
                      << nameOf(code) << '\n';
            ++failures_;
        }
    }

    [[nodiscard]] int failures() const { return failures_; }

private:
    static std::string indented(std::string text) {
        text.erase(text.find_last_not_of('\n') + 1);
        for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
            text.insert(at + 1, "   | ");
        }
        return text;
    }

    int count_ = 0;
    int failures_ = 0;
};

void showOperations(Walk& walk, IHttpClient& client, DemoServer const& server) {
    Request greeting;
    greeting.url = server.url("/greeting?name=Ada");
    greeting.url.addParameter("topic", "looms & engines");
    greeting.headers = {{"X-Colour", "green"}};
    greeting.cookies = {{"session", "42"}};
    walk.step("GET with query parameters, a header and a cookie",
              client.get(greeting, defaultOptions()), ErrorCode::Ok, 200);
    walk.step("HEAD of the same URL", client.head(greeting, defaultOptions()), ErrorCode::Ok, 200);

    Request note;
    note.url = server.url("/notes");
    note.headers = {{"Content-Type", "application/json"}};
    walk.step("POST of a string", client.post(note, R"({"text":"hi"})", defaultOptions()),
              ErrorCode::Ok, 201);

    Request form;
    form.url = server.url("/form");
    MultiPart const fields{{{"name", "Ada", ""},
                            {"about", "{}", "application/json"},
                            {"letter", "Dear all", "text/plain"}}};
    walk.step("POST of a form with three parts", client.post(form, fields, defaultOptions()),
              ErrorCode::Ok, 200);

    note.url = server.url("/moved");
    walk.step("POST that is redirected", client.post(note, "moved", defaultOptions()),
              ErrorCode::Ok, 201);
}

void showDownloads(Walk& walk, IHttpClient& client, DemoServer const& server) {
    Request request;
    request.url = server.url("/download");
    std::size_t received = 0;
    auto options = defaultOptions();
    options.onData = [&received](std::string const& chunk) { received += chunk.size(); };

    int reports = 0;
    auto const complete = [&] {
        ProgressBar bar;
        options.onProgress = [&](std::int64_t downloaded, std::int64_t total) {
            ++reports;
            bar.show(downloaded, total);
        };
        return client.get(request, options);
    }();
    walk.check("GET of a large resource, streamed: " + std::to_string(received) + " bytes, " +
                   std::to_string(reports) + " progress reports",
               complete, ErrorCode::Ok, 200, received == DemoServer::DOWNLOAD_SIZE);

    received = 0;
    options.onProgress = nullptr;
    options.isCancelled = [&received] { return received > DemoServer::DOWNLOAD_SIZE / 2; };
    auto const partial = client.get(request, options);
    walk.check("The same GET, cancelled after " + std::to_string(received) + " bytes", partial,
               ErrorCode::RequestCancelled, 200, received < DemoServer::DOWNLOAD_SIZE);
}

void showFailures(Walk& walk, IHttpClient& client, DemoServer const& server) {
    Request request;
    request.url = server.url("/silence");
    auto options = defaultOptions();
    options.timeout = 200 * MILLISECOND;
    walk.step("GET of a resource that never responds, with a timeout of 200 ms",
              client.get(request, options), ErrorCode::OperationTimedOut, 0);

    request.url = DemoServer().url("/");  // This server ends before the GET.
    walk.step("GET from a port that no server listens on", client.get(request, defaultOptions()),
              ErrorCode::ConnectionFailure, 0);

    request.url = std::string("not a URL");
    walk.step("GET of an invalid URL", client.get(request, defaultOptions()),
              ErrorCode::NotPerformed, 0);
}

void showChain(Walk& walk, DemoServer const& server) {
    auto const plan = std::vector<Retry>{{200 * MILLISECOND}, {400 * MILLISECOND}, {10 * SECOND}};
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), nullptr), plan);
    Request request;
    request.url = server.url("/profile");
    walk.step("GET of a page that needs a login, through the retries and cookie jar adapters",
              chain->get(request, defaultOptions()), ErrorCode::Ok, 403);
    request.url = server.url("/login");
    walk.step("POST that logs in", chain->post(request, "ada", defaultOptions()), ErrorCode::Ok,
              200);
    request.url = server.url("/profile");
    walk.step("GET of the same page, with the cookie of the login",
              chain->get(request, defaultOptions()), ErrorCode::Ok, 200);

    std::string timeouts;
    for (auto const& retry : plan) {
        timeouts += " " + std::to_string(retry.timeout / MILLISECOND);
    }
    request.url = server.url("/flaky");
    auto const response = chain->get(request, defaultOptions());
    auto const age = std::time(nullptr) - response.getLastModified();
    walk.check("GET that succeeds on the third attempt; timeouts in ms:" + timeouts, response,
               ErrorCode::Ok, 200, age >= 3600 && age < 3700);
    std::cout << "   Last modified " << age << " seconds ago\n";
}

/// Replaces `NativeProxyProvider`, so that the demo does not depend on the settings of the machine:
/// `server` is the proxy for `url`; other URLs have none.
class DemoProxyProvider final : public IProxyProvider {
public:
    DemoProxyProvider(std::string url, DemoServer const& server)
        : url_(std::move(url)), proxy_(server.url("/")) {}

    [[nodiscard]] ProxyInfo getProxy(std::string const& url) const override {
        if (url != url_) {
            return {};
        }
        return {ProxyType::Http, proxy_.host(), std::stoi(proxy_.port())};
    }

private:
    std::string url_;
    Url proxy_;
};

void showSystemProxy(Walk& walk) {
    DemoServer const systemProxy;
    DemoServer const callerProxy;
    std::string const served = "http://served.test/";
    SystemProxyAdapter adapter(createHttpClient(HttpClientType::Cpr),
                               std::make_unique<DemoProxyProvider>(served, systemProxy));
    auto options = defaultOptions();
    options.proxy = callerProxy.url("");
    auto const show = [&](std::string const& url, std::string const& way, DemoServer const& used) {
        Request request;
        request.url = url;
        auto const proxy = adapter.addProxyUrlOption(options, request).proxy;
        auto const response = adapter.get(request, options);
        auto const answered = "port " + Url(used.url("/")).port() + " ";
        walk.check("GET of " + url + " through " + way + ": " + proxy, response, ErrorCode::Ok, 200,
                   proxy == used.url("") && response.body.find(answered) != std::string::npos);
    };
    show(served, "the system's proxy", systemProxy);
    show("http://other.test/", "the caller's proxy, because the system has none", callerProxy);
}

int walkThrough() {
    DemoServer const server;
    auto const client = createHttpClient(HttpClientType::Cpr);
    Walk walk;
    showOperations(walk, *client, server);
    showDownloads(walk, *client, server);
    showFailures(walk, *client, server);
    showChain(walk, server);
    showSystemProxy(walk);
    std::cout << (walk.failures() == 0 ? "All responses are as expected.\n"
                                       : "Some responses are not as expected.\n");
    return walk.failures() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int fetch(std::string const& url) {
    Request request;
    request.url = url;
    std::size_t received = 0;
    auto const response = [&] {
        ProgressBar bar;
        auto options = defaultOptions();
        // No limit on the duration, but once connected, 30 seconds below 1 byte/s end the call.
        options.timeout = 0;
        options.lowSpeedLimit = 1;
        options.lowSpeedTime = 30;
        options.onData = [&](std::string const& chunk) { received += chunk.size(); };
        options.onProgress = [&](std::int64_t now, std::int64_t total) { bar.show(now, total); };
        return createHttpClient(HttpClientType::Cpr)->get(request, options);
    }();

    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "demo: " << nameOf(response.error.code) << ": "
                  << (request.url.isValid() ? response.error.message : "not a valid URL: " + url)
                  << '\n';
        return EXIT_FAILURE;
    }
    std::cout << response.statusLine << '\n';
    for (auto const& [name, value] : response.headers) {
        std::cout << name << ": " << value << '\n';
    }
    std::cout << "\nBody: " << received << " bytes\n";
    if (response.statusCode >= 400) {
        std::cerr << "demo: the server returned an error: " << response.statusLine << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char* argv[]) {
    // Response::getLastModified reads the date as local time; HTTP dates are in GMT.
    setenv("TZ", "UTC0", 1);
    std::string const argument = argc > 1 ? argv[1] : "";
    if (argument == "--help" || argument == "-h") {
        std::cout << USAGE;
        return EXIT_SUCCESS;
    }
    if (argc > 2 || argument.rfind('-', 0) == 0) {
        std::cerr << USAGE;
        return 2;
    }
    return argc == 2 ? fetch(argument) : walkThrough();
}
