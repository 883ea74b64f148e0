// Sends a form that contains the text of a log file.
// Usage: upload_form URL LOG_FILE

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: upload_form URL LOG_FILE\n";
        return 2;
    }
    // [snippet]
    std::ifstream file(argv[2], std::ios::binary);
    std::string const log{std::istreambuf_iterator<char>(file), {}};
    MultiPart const form{{{"subject", "It hangs"},
                          {"system", R"({"cores":8})", "application/json"},
                          {"log", log, "text/plain"}}};
    Request request;
    request.url = Url(argv[1]);
    Options options;
    options.timeout = 60'000'000;  // microseconds, including the upload
    auto const response = createHttpClient(HttpClientType::Cpr)->post(request, form, options);
    // [/snippet]
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "not sent: " << response.error.message << '\n';
        return 1;
    }
    std::cout << response.statusLine << '\n' << response.body << '\n';
}
