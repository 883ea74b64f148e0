#pragma once

#include <map>
#include <regex>
#include <string>

namespace Ostrel::Networking::Testing {

/// What a URL text means, by definition: the patterns, run by the standard library. Slow, and for
/// short texts only, as its matcher recurses once a character.
struct ReferenceUrl {
    bool matches = false;
    std::string protocol, user, password, host, port, path, anchor;
    std::map<std::string, std::string> parameters;

    explicit ReferenceUrl(std::string const& text) {
        static std::string const PARSE_URL_REGEX_STRING =
            R"(^(\w+)://(?:([^:/?#]+):?([^:/?#]*)@)?(\w+[^/?#:]+)(?::(\d+))?((?:/[^?#/]*)*)?)"
            R"(((?:[?;&][^#/=&;?]+=[^#/=&;?]*)*)?(?:#([^#:/?]+)?)?)";
        static std::string const PARSE_PARAMETERS_REGEX_STRING = "[?&;]([^=&?;]+)=([^=&;?]*)";
        static auto const FLAGS = std::regex::ECMAScript | std::regex::optimize;
        static std::regex const PARSE_URL_REGEX(PARSE_URL_REGEX_STRING, FLAGS);
        static std::regex const PARSE_PARAMETERS_REGEX(PARSE_PARAMETERS_REGEX_STRING, FLAGS);

        std::smatch groups;
        matches = std::regex_match(text, groups, PARSE_URL_REGEX);
        if (!matches) {
            return;
        }
        protocol = groups[1];
        user = groups[2];
        password = groups[3];
        host = groups[4];
        port = groups[5];
        path = groups[6];
        anchor = groups[8];
        auto const query = groups[7].str();
        for (std::sregex_iterator item(query.begin(), query.end(), PARSE_PARAMETERS_REGEX), end;
             item != end; ++item) {
            parameters.emplace((*item)[1], (*item)[2]);
        }
    }
};

}  // namespace Ostrel::Networking::Testing
