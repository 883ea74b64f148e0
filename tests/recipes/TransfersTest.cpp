// The recipes of docs/cookbook/transfers.md.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Networking/CreateHttpClient.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "examples/Download.h"
#include "examples/LocalServer.h"
#include "tests/Support/RawServer.h"
#include "tests/Support/ScriptedClient.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

namespace {

using namespace Testing;
using ::testing::HasSubstr;

/// A new folder, which is removed at the end of the test.
struct Folder {
    std::filesystem::path path = testing::TempDir() + std::to_string(getpid());
    Folder() { std::filesystem::create_directory(path); }
    ~Folder() { std::filesystem::remove_all(path); }
    std::string operator/(std::string const& name) const { return path / name; }
};

/// An answer with the tag of a version of the file and its bytes from `begin` to `end`, which
/// differ everywhere from those of other versions. Of 3000 bytes, it does not announce `missing`.
std::string answer(std::string const& start, char version, int begin, int end, int missing = 0) {
    auto text = "HTTP/1.1 " + start + "\r\nETag: \"" + version +
                "\"\r\nContent-Length: " + std::to_string(3000 - begin - missing) + "\r\n\r\n";
    for (int i = begin; i < end; ++i) {
        text += static_cast<char>(version + i * i / 16);
    }
    return text;
}

std::string whole(char version, int end) { return answer("200 OK", version, 0, end); }
std::string rest(char version, int begin, int end = 3000, int missing = 0) {
    auto const range = "bytes " + std::to_string(begin) + "-2999/3000";
    return answer("206 Part\r\nContent-Range: " + range, version, begin, end, missing);
}

bool fetch(std::string const& url, std::string const& file, DownloadJob& job) {
    Options options;
    options.timeout = 20'000'000;
    options.followRedirects = true;
    options.maxRedirects = 1;
    return download(*createHttpClient(HttpClientType::Cpr), {Url(url)}, options, file, job);
}

TEST(DownloadRecipe, ContinuesOnlyWhatBelongsTogether) {
    /// The answers to the HEAD and to the GET of one call, and the part that the GET asks for.
    struct Call {
        std::string head, answer, range;
    };
    struct Row {
        std::string name;
        std::vector<Call> calls;
        char version = 'a';
    };
    auto const a = whole('a', 0);
    std::string const weak = "HTTP/1.1 200 OK\r\nETag: W/\"a\"\r\nContent-Length: 3000\r\n\r\n";
    auto const error = [](std::string const& status) {
        return "HTTP/1.1 " + status + "\r\nContent-Length: 4\r\n\r\n";
    };
    auto encoded = rest('a', 1000);
    encoded.insert(encoded.find("ETag"), "Content-Encoding: identity\r\n");
    auto const then = [&a](std::string const& text) { return Call{a, text, "1000-2999"}; };
    Call const cut{a, whole('a', 1000), ""};
    Call const anew{a, whole('a', 3000), ""};
    Call const other{whole('b', 0), whole('b', 3000), ""};
    for (auto const& [name, calls, version] : std::vector<Row>{
             {"at 0 and 1", {{a, a, ""}, {a, whole('a', 1), ""}, {a, rest('a', 1), "1-2999"}}},
             {"twice", {cut, then(rest('a', 1000, 2999)), {a, rest('a', 2999), "2999-2999"}}},
             {"changed before the HEAD", {cut, other}, 'b'},
             {"changed after the HEAD", {cut, then(whole('b', 1000)), other}, 'b'},
             {"rest of another version", {cut, then(rest('b', 1000)), other}, 'b'},
             {"another part", {cut, then(rest('a', 999, 2999, 1)), anew}},
             {"incomplete",
              {cut, then(rest('a', 1000, 2999, 1)), {a, rest('a', 2999), "2999-2999"}}},
             {"encoded", {cut, then(encoded), anew}},
             {"no such part", {cut, then(error("416 Gone") + "gone"), anew}},
             {"busy at the HEAD", {cut, {error("503 Busy"), "", ""}, then(rest('a', 1000))}},
             {"busy at the GET", {cut, then(error("503 Busy") + "busy"), then(rest('a', 1000))}},
             {"weak tag", {{weak, weak + "cut", ""}, {weak, whole('a', 3000), ""}}},
             {"no HEAD", {cut, {error("405 No HEAD"), whole('a', 3000), ""}}},
         }) {
        SCOPED_TRACE(name);
        Folder const folder;
        Call const* call = nullptr;
        std::string request;
        RawServer server([&](Connection& connection) {
            request = connection.readRequest();
            auto const isHead = request.substr(0, 4) == "HEAD";
            auto const isMoved = request.find(" / ") != std::string::npos;
            auto const moved = MOVED + server.url() + "file\r\nConnection: close\r\n\r\n";
            connection.send(isMoved ? moved : isHead ? call->head : call->answer);
        });
        for (auto const& each : calls) {
            SCOPED_TRACE(each.range);
            call = &each;
            DownloadJob job;
            EXPECT_EQ(fetch(server.url(), folder / "file", job), call == &calls.back());
            EXPECT_EQ(std::filesystem::exists(folder / "file"), call == &calls.back());
            EXPECT_EQ(request.find("If-Range: \"a\"\r\n") == std::string::npos, each.range.empty());
            EXPECT_THAT(request, HasSubstr(each.range));
            EXPECT_THAT(request, HasSubstr("\r\nAccept-Encoding: identity\r\n"));
        }
        std::ifstream file(folder / "file", std::ios::binary);
        std::string const content(std::istreambuf_iterator<char>(file), {});
        EXPECT_TRUE(whole(version, 3000) == whole(version, 0) + content);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    }
}

TEST(DownloadRecipe, EndsAboveItsLimitAndWhenCancelled) {
    Folder const folder;
    RawServer server(endless("HTTP/1.1 200 OK\r\n\r\n", "12345678"));
    DownloadJob limited;
    limited.maxSize = 50'000;
    EXPECT_FALSE(fetch(server.url(), folder / "file", limited));
    EXPECT_LT(limited.received, 200'000U);
    DownloadJob cancelled;
    cancelled.isCancelled = true;
    EXPECT_FALSE(fetch(server.url(), folder / "file", cancelled));
    EXPECT_EQ(cancelled.response.error.code, ErrorCode::RequestCancelled);
}

TEST(DownloadRecipe, LimitsTheTimeOfTheHeadOnly) {
    Folder const folder;
    ScriptedClient client;
    Response found;
    found.statusCode = 200;
    found.error.code = ErrorCode::Ok;
    client.answer(found);
    client.answer(ErrorCode::ConnectionFailure);
    Options options;
    options.timeout = 5;
    DownloadJob job;
    EXPECT_FALSE(download(client, {}, options, folder / "file", job));
    EXPECT_EQ(client.calls().at(0).options.timeout, 5);
    EXPECT_EQ(client.calls().at(1).options.timeout, 0);
}

TEST(UploadRecipes, SendAnyNameAndAnyBytes) {
    std::string part, name, content;
    auto parser = std::make_unique<httplib::Server>();
    parser->Post("/file", [&](auto const&, auto&, httplib::ContentReader const& read) {
        auto const onPart = [&](auto const& header) {
            part = header.name;
            name = header.filename;
            return true;
        };
        read(onPart, [&content](char const* data, auto size) {
            content.append(data, size);
            return true;
        });
    });
    Folder const folder;
    auto const file = folder / "Gr\xc3\xbc\xc3\x9f\x65 \"1\"; a=b";
    auto const sent = whole('\0', 3000);
    std::ofstream(file, std::ios::binary) << sent;
    std::ofstream(folder / "log") << "first\nlast";
    {
        LocalServer const server([](auto const&, auto&) {}, std::move(parser));
        EXPECT_EQ(run("upload_file", {server.url("/file"), file}).status, 0);
        EXPECT_NE(run("upload_file", {server.url("/file"), folder / "missing"}).status, 0);
        EXPECT_EQ(run("upload_form", {server.url(), folder / "log"}).status, 0);
        EXPECT_THAT(server.requests().at(0).body,
                    HasSubstr("name=\"log\"\r\nContent-Type: text/plain\r\n\r\nfirst\nlast\r\n--"));
    }
    EXPECT_EQ(part, "file");
    EXPECT_EQ(name, "Gr\xc3\xbc\xc3\x9f\x65 %221%22; a=b");
    EXPECT_TRUE(content == sent);
}

}  // namespace

}  // namespace Recipes
