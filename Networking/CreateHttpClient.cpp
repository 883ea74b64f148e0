#include "Networking/CreateHttpClient.h"

#include <stdexcept>
#include <string>

#include "Networking/Cpr/CprHttpClient.h"

namespace Ostrel::Networking {

namespace {

class StubHttpClient final : public IHttpClient {
public:
    Response get(Request const&, Options const&) override { return success(); }
    Response head(Request const&, Options const&) override { return success(); }
    Response post(Request const&, std::string const&, Options const&) override { return success(); }
    Response post(Request const&, MultiPart const&, Options const&) override { return success(); }

private:
    static Response success() {
        Response response;
        response.error.code = ErrorCode::Ok;
        return response;
    }
};

}  // namespace

std::unique_ptr<IHttpClient> createHttpClient(HttpClientType type) {
    switch (type) {
        case HttpClientType::Cpr:
            return std::make_unique<CprHttpClient>();
        case HttpClientType::Stub:
            return std::make_unique<StubHttpClient>();
    }
    throw std::runtime_error("Unknown HttpClientType provided");
}

}  // namespace Ostrel::Networking
