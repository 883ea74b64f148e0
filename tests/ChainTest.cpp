#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/AddAdapter.h"
#include "Networking/CreateHttpClient.h"
#include "examples/LocalServer.h"

namespace Ostrel::Networking {
namespace {

TEST(ChainTest, ServesManyThreads) {
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "last=" + request.path.substr(1));
        response.set_content(request.path + request.get_header_value("Cookie"), "text/plain");
    });
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                    ForceProtocolSettings::Http),
                            nullptr),
        {{20'000'000, nullptr}});
    std::vector<std::thread> callers(8);
    for (auto& caller : callers) {
        caller = std::thread([&, path = "/" + std::to_string(&caller - callers.data())] {
            Request const request{"https" + server.url(path).substr(4), {}, {}};
            for (int i = 0; i < 10; ++i) {
                auto const response = chain->get(request, {});
                EXPECT_EQ(response.error.code, ErrorCode::Ok);
                EXPECT_EQ(response.body.substr(0, path.size()), path);
                EXPECT_TRUE(i == 0 || response.body.find("last=") != std::string::npos);
            }
        });
    }
    for (auto& caller : callers) {
        caller.join();
    }
}

}  // namespace
}  // namespace Ostrel::Networking
