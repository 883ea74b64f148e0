#pragma once

#include <optional>
#include <string_view>

namespace Ostrel::Networking {

/// The components of a URL text, as views into that text; what does not occur is empty.
struct UrlComponents {
    std::string_view protocol;
    std::string_view user;
    std::string_view password;
    std::string_view host;
    std::string_view port;
    std::string_view path;
    std::string_view query;  ///< With the separator in front of each item.
    std::string_view anchor;
};

/// Splits an absolute URL into its components, or gives nothing if `text` as a whole is not one.
/// The grammar is that of the ECMAScript pattern (the line break is not part of it)
///
///     ^(\w+)://(?:([^:/?#]+):?([^:/?#]*)@)?(\w+[^/?#:]+)(?::(\d+))?((?:/[^?#/]*)*)?
///     ((?:[?;&][^#/=&;?]+=[^#/=&;?]*)*)?(?:#([^#:/?]+)?)?
///
/// and the components are its eight groups, captured in backtracking order. Takes time linear in
/// the length of `text` for every text, neither recurses nor allocates. The views live as long as
/// `text` does. Never throws.
[[nodiscard]] std::optional<UrlComponents> parseUrl(std::string_view text) noexcept;

/// Takes the first item off a `query` of `UrlComponents` and splits it at its "=".
struct QueryItem {
    std::string_view name;
    std::string_view value;
};
[[nodiscard]] QueryItem takeQueryItem(std::string_view& query) noexcept;

}  // namespace Ostrel::Networking
