// Uploads a file as a browser does, with its name.
// Usage: upload_file URL FILE

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Posts a form (RFC 7578) whose only part, "file", is a file with its name. Not performed if the
/// file cannot be read.
Response uploadFile(IHttpClient& client, Url const& url, std::filesystem::path const& path) {
    std::string name;
    for (auto const c : path.filename().u8string()) {  // Escaped as browsers do.
        name += c == '"'    ? "%22"
                : c == '\r' ? "%0D"
                : c == '\n' ? "%0A"
                            : std::string(1, static_cast<char>(c));
    }
    std::random_device random;
    std::string boundary;  // 128 random bits, which do not occur in the file.
    for (int i = 0; i < 4; ++i) {
        boundary += std::to_string(random()) + "-";
    }
    auto body = "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" +
                name + "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return {};
    }
    body.append(std::istreambuf_iterator<char>(file), {});
    body += "\r\n--" + boundary + "--\r\n";
    Request const request{url, {{"Content-Type", "multipart/form-data; boundary=" + boundary}}};
    Options options;
    options.timeout = 60'000'000;  // microseconds, including the upload
    return client.post(request, body, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: upload_file URL FILE\n";
        return 2;
    }
    return report(uploadFile(*createHttpClient(HttpClientType::Cpr), Url(argv[1]), argv[2]));
}
