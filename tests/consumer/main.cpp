#include <Networking/CreateHttpClient.h>

int main(int, char* argv[]) {
    using namespace Ostrel::Networking;
    Request request;
    request.url = Url(argv[1]);
    auto const response = createHttpClient(HttpClientType::Cpr)->get(request, Options());
    return response.error.code == ErrorCode::Ok && response.statusCode == 200 ? 0 : 1;
}
