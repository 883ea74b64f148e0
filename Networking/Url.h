#pragma once

#include <map>
#include <string>

#include "Networking/Export.h"

namespace Ostrel::Networking {

/// An absolute URL, split into its parts.
///
/// Parts are byte strings, returned and printed as they were parsed or set: nothing is
/// percent-encoded, decoded, case-folded or normalised. The query becomes a map ordered by name;
/// its names and values are also kept as written, so "%20" stays "%20".
///
/// Const operations are safe to call from several threads; changes are not synchronised.
class QORNETWORKING_EXPORT Url {
public:
    /// The user info of a URL, before "@". Not encoded when it is sent: percent-encode "@", "/",
    /// "#" and the like.
    struct UserInfo {
        /// Before ":", if there is a password.
        std::string user;
        /// Empty if there is none; a URL with a password but no user is not valid.
        std::string password;
    };

    /// An empty URL, which is not valid.
    Url() = default;

    /// Parses the whole of `url`; if it is not an absolute URL, all parts stay empty. If a
    /// parameter name repeats, the first value is kept. Implicit, so that a `std::string` can be
    /// passed where a `Url` is expected; a literal needs `Url("...")`.
    ///
    /// Some usual texts are not URLs here: a value or fragment that contains "/", as in
    /// "?next=/home" or "#/route", a second "=" in an item, as in "?token=YWJj==", an item without
    /// "=", a "?" or "&" at the end, a host of one character, and an IPv6 literal.
    ///
    /// Takes time linear in the length of `url`; ordering n parameters by name then takes n log n
    /// comparisons. Throws only if memory runs out.
    Url(std::string const& url);

    /// The URL as one text, with the parameters in order of their names; empty if the URL is not
    /// valid.
    [[nodiscard]] std::string toString() const;

    /// Whether there is a protocol and a host, and a user if there is a password. True after every
    /// parse that succeeded; the setters check nothing.
    [[nodiscard]] bool isValid() const;

    /// Without "://".
    [[nodiscard]] std::string protocol() const;
    /// User and password, before "@"; not decoded.
    [[nodiscard]] UserInfo userInfo() const;
    /// Without user info and port.
    [[nodiscard]] std::string host() const;
    /// As text, without ":"; its range is not checked.
    [[nodiscard]] std::string port() const;
    /// With its leading "/", if it was parsed.
    [[nodiscard]] std::string path() const;
    /// The fragment, without "#".
    [[nodiscard]] std::string anchor() const;
    /// The query parameters, name to value.
    [[nodiscard]] std::map<std::string, std::string> parameters() const;

    /// Stores the text without checking or parsing it.
    ///@{
    void setProtocol(std::string const& protocol);
    void setUserInfo(UserInfo const& userInfo);
    void setHost(std::string const& host);
    void setPort(std::string const& port);
    void setPath(std::string const& path);
    void setAnchor(std::string const& anchor);
    ///@}

    /// Adds a parameter, or replaces its value if the name is present.
    void addParameter(std::string const& name, std::string const& value);
    /// Replaces all parameters.
    void setParameters(std::map<std::string, std::string> const& parameters);
    /// Replaces all parameters with the entries of `parameters`, which is left empty.
    void setParameters(std::map<std::string, std::string>&& parameters);
    /// Removes the parameter `name`. Returns false if there was none.
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
