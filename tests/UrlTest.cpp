#include "Networking/Url.h"

#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Support/ReferenceUrl.h"

namespace Ostrel::Networking {
namespace {

using namespace Testing;
using Parameters = std::map<std::string, std::string>;

void expectLikePattern(std::string const& text) {
    ASSERT_EQ(componentsOf(Url(text)), componentsOf(referenceUrl(text))) << text;
}

TEST(UrlTest, Prints) {
    std::vector<std::pair<std::string, std::string>> const rows = {
        {"proto://user:pw@host:8080/a/b?x=1&y=2#top", "proto://user:pw@host:8080/a/b?x=1&y=2#top"},
        {"proto://user:@host/", "proto://user@host/"},
        // ";" and "&" continue a host or a path; they start the query behind a port, or where
        // nothing else matches.
        {"proto://host;a=1", "proto://host;a=1"},
        {"proto://host:80;a=1", "proto://host:80?a=1"},
        {"proto://host;a:b=1", "proto://host?a:b=1"},
        // Parameters are sorted by name; the first value of a name is kept.
        {"proto://host?b=2;a=&a=3?B=1", "proto://host?B=1&a=&b=2"},
        // What is not a URL prints nothing.
        {"proto://:pw@host/", ""},
    };
    for (auto const& [text, printed] : rows) {
        expectLikePattern(text);
        EXPECT_EQ(Url(text).toString(), printed);
    }
}

TEST(UrlTest, AgreesWithThePatternOnAllShortTexts) {
    std::vector<std::string> texts = {"a://"};
    for (auto const length : {0, 1, 2, 3, 4, 5}) {
        std::vector<std::string> longer;
        for (auto const& text : texts) {
            ASSERT_NO_FATAL_FAILURE(expectLikePattern(text)) << length;
            for (auto const c : {'a', '1', ':', '/', '@', '?', '#', ';', '=', '.'}) {
                longer.push_back(text + c);
            }
        }
        texts = std::move(longer);
    }
}

TEST(UrlTest, AgreesWithThePatternOnRandomTexts) {
    using namespace std::string_literals;
    std::vector<std::string> const pieces = {
        "a",  "b1", "_",   ":",  "/",  "@",  "?",  "#",    ";",     "&",    "=",     ".",
        "ho", ":8", "?a=", "&b", "=1", ";c", "@h", "\x80", "\xff",  "\n"s,  "\0"s,   " ",
        "-",  "%",  "//",  ":p", "u@", "st", "?x", "\xc3", "=\x7f", "&q=s", "zZA:90"};
    std::mt19937 random(20240229);
    auto const piece = [&] { return pieces[random() % pieces.size()]; };
    for (int i = 0; i < 30'000; ++i) {
        auto text = i % 16 == 0 ? piece() : "p0_://";
        for (auto left = random() % 25; left > 0; --left) {
            text += piece();
        }
        ASSERT_NO_FATAL_FAILURE(expectLikePattern(text));
    }
}

std::string repeated(std::string const& piece) {
    std::string text;
    for (std::size_t size = 1 << 18; text.size() < size; text += piece) {
    }
    return text;
}

// The standard library's matcher overflows the stack on texts like these, or takes hours.
TEST(UrlTest, EndsOnLongAndAmbiguousTexts) {
    for (auto const piece : {"a@", ";a=1", "/", "@", "a:", "?a=1", ";", "=", "a", "#", "?", "&a"}) {
        auto const run = repeated(piece);
        for (auto const* start : {"p://", "p://host/", "p://u:", "p://host:1", "p://host?"}) {
            for (auto const* end : {"", "@host", "/", "?a", "#"}) {
                Url const url(start + run + end);
                EXPECT_EQ(url.toString().empty(), !url.isValid()) << start << piece << end;
            }
        }
    }
    EXPECT_EQ(Url("p://" + repeated("a@") + "host").host(), "host");
    EXPECT_EQ(Url("p://host" + repeated("/a")).path(), repeated("/a"));
}

TEST(UrlTest, SettersStoreWhatTheyAreGiven) {
    Url url;
    url.setProtocol("proto");
    EXPECT_FALSE(url.isValid());
    url.setHost("h");
    url.setPath("p");
    url.setPort("x");
    url.setAnchor("#");
    url.setUserInfo({"u", "p"});
    url.addParameter("a", "1");
    url.addParameter("a", "=");
    url.addParameter("b", "&");
    EXPECT_EQ(url.toString(), "proto://u:p@h:xp?a==&b=&##");
    EXPECT_TRUE(url.removeParameter("a"));
    EXPECT_FALSE(url.removeParameter("a"));
    EXPECT_EQ(url.parameters(), (Parameters{{"b", "&"}}));
    url.setUserInfo({"", "p"});
    EXPECT_EQ(url.toString(), "") << "not valid";
    url.setUserInfo({});
    EXPECT_TRUE(url.isValid());
    url.setProtocol("");
    EXPECT_FALSE(url.isValid());

    Parameters entries = {{"c", "4"}};
    url.setParameters(std::as_const(entries));
    EXPECT_EQ(url.parameters(), entries);
    url.setParameters(std::move(entries));
    EXPECT_EQ(url.parameters(), (Parameters{{"c", "4"}}));
    EXPECT_TRUE(entries.empty());  // NOLINT(bugprone-use-after-move): promised
}

}  // namespace
}  // namespace Ostrel::Networking
