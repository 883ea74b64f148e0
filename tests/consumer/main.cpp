#include <Networking/CreateHttpClient.h>

// Succeeds if the transfer that one client performs fails, as nobody listens there, and the other
// client performs none.
int main() {
    using namespace Ostrel::Networking;
    Request request;
    request.url = Url("http://127.0.0.1:1/");
    auto const performed = createHttpClient(HttpClientType::Cpr)->get(request, Options());
    auto const pretended = createHttpClient(HttpClientType::Stub)->get(request, Options());
    return performed.error.code == ErrorCode::ConnectionFailure &&
                   pretended.error.code == ErrorCode::Ok
               ? 0
               : 1;
}
