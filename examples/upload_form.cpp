// Sends a form that contains the text of a log file.
// Usage: upload_form URL LOG_FILE

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Reports a fault with the text of a log file, which is empty if the file cannot be read.
Response sendReport(IHttpClient& client, Url const& url, std::string const& logFile) {
    std::ifstream file(logFile, std::ios::binary);
    std::string const log{std::istreambuf_iterator<char>(file), {}};
    MultiPart const form{{{"subject", "It hangs"},
                          {"system", R"({"cores":8})", "application/json"},
                          {"log", log, "text/plain"}}};
    Options options;
    options.timeout = 60'000'000;  // microseconds, including the upload
    return client.post({url}, form, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: upload_form URL LOG_FILE\n";
        return 2;
    }
    return report(sendReport(*createHttpClient(HttpClientType::Cpr), Url(argv[1]), argv[2]));
}
