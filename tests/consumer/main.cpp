#include <Networking/CreateHttpClient.h>

// Succeeds if the transfer fails, as nobody listens there.
int main() {
    using namespace Ostrel::Networking;
    Request const request{Url("http://127.0.0.1:1/")};
    auto const response = createHttpClient(HttpClientType::Cpr)->get(request, Options());
    return response.error.code == ErrorCode::ConnectionFailure ? 0 : 1;
}
