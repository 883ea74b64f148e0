#include "Networking/Url.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "Networking/UrlParser.h"

namespace Ostrel::Networking {

namespace {

/// From about this length on, in bytes, it is faster to sort the items, which lie side by side,
/// than to look for the place of each in a map that outgrows the processor's caches.
constexpr std::size_t LONG_QUERY = std::size_t{16} * 1024;

/// The items in the order in which a map is filled from one end to the other. Items with the same
/// name keep their order, by their places in the text.
std::vector<QueryItem> sortedItems(std::string_view query) {
    std::vector<QueryItem> items;
    items.reserve(static_cast<std::size_t>(std::count(query.begin(), query.end(), '=')));
    while (!query.empty()) {
        items.push_back(takeQueryItem(query));
    }
    std::sort(items.begin(), items.end(), [](auto const& a, auto const& b) {
        auto const order = a.name.compare(b.name);
        return order != 0 ? order < 0 : a.name.data() < b.name.data();
    });
    return items;
}

}  // namespace

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
    // The hint makes names that come in order cheap. An entry that is present stays.
    auto const add = [this](QueryItem const& item) {
        parameters_.emplace_hint(parameters_.end(), item.name, item.value);
    };
    auto query = components->query;
    if (query.size() >= LONG_QUERY) {
        auto const items = sortedItems(query);
        std::for_each(items.begin(), items.end(), add);
        return;
    }
    while (!query.empty()) {
        add(takeQueryItem(query));
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
