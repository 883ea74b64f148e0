#pragma once

#include <regex>
#include <string>
#include <tuple>

#include "Networking/Url.h"

namespace Ostrel::Networking::Testing {

inline auto componentsOf(Url const& url) {
    auto const [user, password] = url.userInfo();
    return std::tuple(url.isValid(), url.protocol(), user, password, url.host(), url.port(),
                      url.path(), url.anchor(), url.parameters());
}

/// The URL that `text` is by definition: the patterns, run by the standard library. Slow, and for
/// short texts only, as its matcher recurses once for each character.
inline Url referenceUrl(std::string const& text) {
    static auto const FLAGS = std::regex::ECMAScript | std::regex::optimize;
    static std::regex const PARSE_URL_REGEX(
        R"(^(\w+)://(?:([^:/?#]+):?([^:/?#]*)@)?(\w+[^/?#:]+)(?::(\d+))?((?:/[^?#/]*)*)?)"
        R"(((?:[?;&][^#/=&;?]+=[^#/=&;?]*)*)?(?:#([^#:/?]+)?)?)",
        FLAGS);
    static std::regex const PARSE_PARAMETERS_REGEX("[?&;]([^=&?;]+)=([^=&;?]*)", FLAGS);
    std::smatch groups;
    std::regex_match(text, groups, PARSE_URL_REGEX);
    Url url;
    url.setProtocol(groups[1]);
    url.setUserInfo({groups[2], groups[3]});
    url.setHost(groups[4]);
    url.setPort(groups[5]);
    url.setPath(groups[6]);
    url.setAnchor(groups[8]);
    auto const query = groups[7].str();
    std::map<std::string, std::string> parameters;
    for (std::sregex_iterator item(query.begin(), query.end(), PARSE_PARAMETERS_REGEX), end;
         item != end; ++item) {
        parameters.emplace((*item)[1], (*item)[2]);
    }
    url.setParameters(parameters);
    return url;
}

}  // namespace Ostrel::Networking::Testing
