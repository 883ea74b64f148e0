// The recipes of docs/cookbook/transfers.md.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

#include "examples/Download.h"
#include "examples/LocalServer.h"
#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

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
static std::string answer(char version, int begin, int end, int missing = 0) {
    auto const range = "Content-Range: bytes " + std::to_string(begin) + "-2999/3000\r\n";
    auto text = (begin == 0 ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 206 Part\r\n" + range) +
                "ETag: \"" + version +
                "\"\r\nContent-Length: " + std::to_string(3000 - begin - missing) + "\r\n\r\n";
    for (int i = begin; i < end; ++i) {
        text += static_cast<char>(version + i * i / 16);
    }
    return text;
}

static bool fetch(std::string const& url, std::string const& file, DownloadJob& job) {
    CprHttpClient client;
    return download(client, requestFor(url), patient(), file, job);
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
    auto const a = answer('a', 0, 0);
    std::string const weak = "HTTP/1.1 200 OK\r\nETag: W/\"a\"\r\nContent-Length: 3000\r\n\r\n";
    std::string const busy = "HTTP/1.1 503 Busy\r\nContent-Length: 4\r\n\r\n";
    auto const then = [&a](std::string const& text) { return Call{a, text, "1000-2999"}; };
    Call const cut{a, answer('a', 0, 1000), ""};
    Call const anew{a, answer('a', 0, 3000), ""};
    Call const other{answer('b', 0, 0), answer('b', 0, 3000), ""};
    for (auto const& [name, calls, version] : std::vector<Row>{
             {"at 0 and 1",
              {{a, a, ""}, {a, answer('a', 0, 1), ""}, {a, answer('a', 1, 3000), "1-2999"}}},
             {"twice",
              {cut, then(answer('a', 1000, 2999)), {a, answer('a', 2999, 3000), "2999-2999"}}},
             {"changed before the HEAD", {cut, other}, 'b'},
             {"changed after the HEAD", {cut, then(answer('b', 0, 1000)), other}, 'b'},
             {"rest of another version", {cut, then(answer('b', 1000, 3000)), other}, 'b'},
             {"another part", {cut, then(answer('a', 999, 2999, 1)), anew}},
             {"busy at the GET", {cut, then(busy + "busy"), then(answer('a', 1000, 3000))}},
             {"weak tag", {{weak, weak + "cut", ""}, anew}},
             {"no HEAD", {cut, {"HTTP/1.1 405 No HEAD\r\n\r\n", answer('a', 0, 3000), ""}}},
         }) {
        SCOPED_TRACE(name);
        Folder const folder;
        Call const* call = nullptr;
        std::string request;
        RawServer const server([&](Connection& connection) {
            request = connection.readRequest();
            connection.send(request.substr(0, 4) == "HEAD" ? call->head : call->answer);
        });
        for (auto const& each : calls) {
            SCOPED_TRACE(each.range);
            call = &each;
            DownloadJob job;
            EXPECT_EQ(fetch(server.url(), folder / "file", job), call == &calls.back());
            EXPECT_EQ(request.find("If-Range: \"a\"\r\n") == std::string::npos, each.range.empty());
            EXPECT_THAT(request, HasSubstr(each.range));
            EXPECT_THAT(request, HasSubstr("\r\nAccept-Encoding: identity\r\n"));
        }
        std::ifstream file(folder / "file", std::ios::binary);
        std::string const content(std::istreambuf_iterator<char>(file), {});
        EXPECT_TRUE(answer(version, 0, 3000) == answer(version, 0, 0) + content);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    }
}

TEST(DownloadRecipe, EndsAboveItsLimitAndWhenCancelled) {
    Folder const folder;
    RawServer const server(endless("HTTP/1.1 200 OK\r\n\r\n", "12345678"));
    DownloadJob limited;
    limited.maxSize = 50'000;
    EXPECT_FALSE(fetch(server.url(), folder / "file", limited));
    EXPECT_LT(limited.received, 200'000U);
    DownloadJob cancelled;
    cancelled.isCancelled = true;
    EXPECT_FALSE(fetch(server.url(), folder / "file", cancelled));
    EXPECT_EQ(cancelled.response.error.code, ErrorCode::RequestCancelled);
}

TEST(UploadRecipes, SendAnyNameAndAnyBytes) {
    std::string name, content;
    auto parser = std::make_unique<httplib::Server>();
    parser->Post("/file", [&](auto const&, auto&, httplib::ContentReader const& read) {
        auto const onPart = [&name](auto const& part) {
            name = part.filename;
            return part.name == "file";
        };
        read(onPart, [&content](char const* data, auto size) {
            content.append(data, size);
            return true;
        });
    });
    Folder const folder;
    auto const file = folder / "Gr\xc3\xbc\xc3\x9f\x65 \"1\"";
    auto const sent = answer('\0', 0, 3000);
    std::ofstream(file, std::ios::binary) << sent;
    {
        LocalServer const server([](auto const&, auto&) {}, std::move(parser));
        EXPECT_EQ(run("upload_file", {server.url("/file"), file}).status, 0);
        EXPECT_NE(run("upload_file", {server.url("/file"), folder / "missing"}).status, 0);
    }
    EXPECT_EQ(name, "Gr\xc3\xbc\xc3\x9f\x65 %221%22");
    EXPECT_TRUE(content == sent);
}

TEST(UploadRecipes, SendTheTextOfALogInAForm) {
    Folder const folder;
    std::ofstream(folder / "log") << "first\nlast";
    LocalServer const server;
    EXPECT_EQ(run("upload_form", {server.url(), folder / "log"}).status, 0);
    EXPECT_THAT(server.requests().at(0).body,
                HasSubstr("name=\"log\"\r\nContent-Type: text/plain\r\n\r\nfirst\nlast\r\n--"));
}

}  // namespace Recipes
