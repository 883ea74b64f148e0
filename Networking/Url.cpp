#include "Networking/Url.h"

#include <utility>

#include "Networking/UrlParser.h"

namespace Ostrel::Networking {

Url::Url(std::string const& url) {
    auto const components = parseUrl(url);
    if (!components) {
        return;
    }
    protocol_ = components->protocol;
    userInfo_.user = components->user;
    userInfo_.password = components->password;
    host_ = components->host;
    port_ = components->port;
    path_ = components->path;
    anchor_ = components->anchor;
    auto query = components->query;
    while (!query.empty()) {
        auto const [name, value] = takeQueryItem(query);
        parameters_.emplace(name, value);  // The first value is kept.
    }
}

std::string Url::toString() const {
    if (!isValid()) {
        return {};
    }
    auto text = protocol_ + "://";
    if (!userInfo_.user.empty()) {
        text += userInfo_.user;
        if (!userInfo_.password.empty()) {
            text.append(":").append(userInfo_.password);
        }
        text += '@';
    }
    text += host_;
    if (!port_.empty()) {
        text.append(":").append(port_);
    }
    text += path_;
    auto separator = '?';
    for (auto const& [name, value] : parameters_) {
        text += separator;
        text.append(name).append("=").append(value);
        separator = '&';
    }
    if (!anchor_.empty()) {
        text.append("#").append(anchor_);
    }
    return text;
}

bool Url::isValid() const {
    return !protocol_.empty() && !host_.empty() &&
           (userInfo_.password.empty() || !userInfo_.user.empty());
}

std::string Url::protocol() const { return protocol_; }
Url::UserInfo Url::userInfo() const { return userInfo_; }
std::string Url::host() const { return host_; }
std::string Url::port() const { return port_; }
std::string Url::path() const { return path_; }
std::string Url::anchor() const { return anchor_; }
std::map<std::string, std::string> Url::parameters() const { return parameters_; }

void Url::setProtocol(std::string const& protocol) { protocol_ = protocol; }
void Url::setUserInfo(UserInfo const& userInfo) { userInfo_ = userInfo; }
void Url::setHost(std::string const& host) { host_ = host; }
void Url::setPort(std::string const& port) { port_ = port; }
void Url::setPath(std::string const& path) { path_ = path; }
void Url::setAnchor(std::string const& anchor) { anchor_ = anchor; }

void Url::addParameter(std::string const& name, std::string const& value) {
    parameters_.insert_or_assign(name, value);
}

void Url::setParameters(std::map<std::string, std::string> const& parameters) {
    parameters_ = parameters;
}

void Url::setParameters(std::map<std::string, std::string>&& parameters) {
    parameters_ = std::exchange(parameters, {});
}

bool Url::removeParameter(std::string const& name) { return parameters_.erase(name) > 0; }

}  // namespace Ostrel::Networking
