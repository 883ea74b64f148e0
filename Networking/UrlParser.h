#pragma once

#include <optional>
#include <string_view>

namespace Ostrel::Networking {

/// Private: not installed. The components of a URL text, as views into that text; absent components
/// are empty.
struct UrlComponents {
    std::string_view protocol;
    std::string_view user;
    std::string_view password;
    std::string_view host;
    std::string_view port;
    std::string_view path;
    std::string_view query;  ///< Including the separator before each item.
    std::string_view anchor;
};

/// Splits an absolute URL into its components. Returns nothing if `text` as a whole is not one. The
/// grammar is that of the ECMAScript pattern (the line break is not part of it)
///
///     ^(\w+)://(?:([^:/?#]+):?([^:/?#]*)@)?(\w+[^/?#:]+)(?::(\d+))?((?:/[^?#/]*)*)?
///     ((?:[?;&][^#/=&;?]+=[^#/=&;?]*)*)?(?:#([^#:/?]+)?)?
///
/// and the components are its eight groups, as the first match of a backtracking matcher captures
/// them. Always takes time linear in the length of `text`, without recursion or allocation. The
/// views are valid as long as the text that `text` refers to. Never throws.
[[nodiscard]] std::optional<UrlComponents> parseUrl(std::string_view text) noexcept;

/// A query parameter, as views into the text of the URL.
struct QueryItem {
    std::string_view name;
    std::string_view value;
};

/// Removes the first item from `query`, a non-empty `UrlComponents::query`, and returns it.
[[nodiscard]] QueryItem takeQueryItem(std::string_view& query) noexcept;

}  // namespace Ostrel::Networking
