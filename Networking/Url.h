#pragma once

#include <map>
#include <string>

#include "Networking/Export.h"

namespace Ostrel::Networking {

/// An absolute URL, split into its parts. Parts are plain byte strings, returned and printed as
/// they were parsed or set: nothing is percent-encoded or decoded, no case is folded, nothing is
/// normalised. Only the query is restructured, into a map ordered by name; that map, too, holds
/// what stood in the text, so a "%20" stays a "%20". A regular value. Const operations are safe to
/// call from several threads; changes are not synchronised.
class QORNETWORKING_EXPORT Url {
public:
    /// What stands before "@".
    struct UserInfo {
        /// Without it, a URL with a password is not valid.
        std::string user;
        /// Empty if there is none.
        std::string password;
    };

    /// An all-empty URL, which is not valid.
    Url() = default;

    /// Parses `url` as a whole; a text that is not an absolute URL gives the all-empty value. Of
    /// query parameters with the same name the first stays. Takes time linear in the length of
    /// `url`, for every text. Throws only if memory runs out. Implicit, as a `Url` is meant to
    /// stand wherever a `std::string` with its text does.
    Url(std::string const& url);

    /// The URL as one text, its parameters in order of their names; empty if the URL is not valid.
    [[nodiscard]] std::string toString() const;

    /// Whether there is a protocol and a host, and a user if there is a password. True for every
    /// text that parsed.
    [[nodiscard]] bool isValid() const;

    /// Without "://".
    [[nodiscard]] std::string protocol() const;
    /// Both empty if there is none.
    [[nodiscard]] UserInfo userInfo() const;
    /// Never empty if the URL is valid.
    [[nodiscard]] std::string host() const;
    /// Digits as written, not checked against a range; empty if there is none.
    [[nodiscard]] std::string port() const;
    /// With its leading "/"; empty if there is none.
    [[nodiscard]] std::string path() const;
    /// The fragment, without "#".
    [[nodiscard]] std::string anchor() const;
    /// The query parameters, name to value.
    [[nodiscard]] std::map<std::string, std::string> parameters() const;

    /// Stores any text: none is checked, and none is parsed again.
    ///@{
    void setProtocol(std::string const& protocol);
    void setUserInfo(UserInfo const& userInfo);
    void setHost(std::string const& host);
    void setPort(std::string const& port);
    void setPath(std::string const& path);
    void setAnchor(std::string const& anchor);
    ///@}

    /// Adds a parameter, or replaces the value of the one with that name.
    void addParameter(std::string const& name, std::string const& value);
    /// Replaces all parameters.
    void setParameters(std::map<std::string, std::string> const& parameters);
    /// The same, but takes over the entries of `parameters` and leaves it empty.
    void setParameters(std::map<std::string, std::string>&& parameters);
    /// Whether there was a parameter of that name.
    bool removeParameter(std::string const& name);

private:
    std::string protocol_;
    UserInfo userInfo_;
    std::string host_;
    std::string port_;
    std::string path_;
    std::string anchor_;
    std::map<std::string, std::string> parameters_;
};

}  // namespace Ostrel::Networking
