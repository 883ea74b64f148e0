#pragma once

#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Ostrel {

/// Holds a pointer-like value that is never empty. Owns what the value owns. Constructed implicitly
/// from anything that converts to `T`, so a function that takes a `NotNull` is called like one that
/// takes a `T`. Safe to read from several threads.
template <typename T>
class NotNull {
public:
    /// Throws `std::invalid_argument` if the value compares equal to `nullptr`.
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<U&&, T> &&
                                                      !std::is_same_v<std::decay_t<U>, NotNull>>>
    NotNull(U&& value) : value_(std::forward<U>(value)) {
        if (value_ == nullptr) {
            throw std::invalid_argument("NotNull: empty value provided");
        }
    }

    /// Moving copies, because a move would leave an empty value behind.
    ///@{
    NotNull(NotNull const&) = default;
    NotNull& operator=(NotNull const&) = default;
    ///@}

    /// The value, which is never empty. References to it are valid as long as this object lives.
    ///@{
    [[nodiscard]] T const& get() const { return value_; }
    operator T const&() const { return value_; }
    T const& operator->() const { return value_; }
    decltype(auto) operator*() const { return *value_; }
    ///@}

private:
    T value_;
};

}  // namespace Ostrel
