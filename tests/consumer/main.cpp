#include <cstdlib>

#include <Networking/CreateHttpClient.h>
#include <Networking/NativeProxyProvider/NativeProxyProvider.h>

#ifndef __APPLE__
// A function of the application, which has the name of one that the library uses on macOS.
extern "C" void CFRelease(void const*) { std::abort(); }
#endif

// Succeeds if the transfer fails, as nobody listens there.
int main() {
    using namespace Ostrel::Networking;
    auto const url = "http://127.0.0.1:1/";
    (void)NativeProxyProvider().getProxy(url);
    auto const response = createHttpClient(HttpClientType::Cpr)->get({Url(url)}, {});
    return response.error.code == ErrorCode::ConnectionFailure ? 0 : 1;
}
