// Url against the pattern on short texts, and against its own printing on all.

#include <cstddef>
#include <cstdint>
#include <string>

#include "Networking/Url.h"
#include "fuzz/Require.h"
#include "tests/Support/ReferenceUrl.h"

using Ostrel::Networking::Url;
using Ostrel::Networking::Testing::ReferenceUrl;

namespace {

/// The reference needs cubic time.
constexpr std::size_t MAX_REFERENCE_SIZE = 64;

bool hasSameComponents(Url const& a, Url const& b) {
    return a.protocol() == b.protocol() && a.userInfo().user == b.userInfo().user &&
           a.userInfo().password == b.userInfo().password && a.host() == b.host() &&
           a.port() == b.port() && a.path() == b.path() && a.anchor() == b.anchor() &&
           a.parameters() == b.parameters();
}

bool isLikeReference(Url const& url, ReferenceUrl const& reference) {
    return url.isValid() == reference.matches && url.protocol() == reference.protocol &&
           url.userInfo().user == reference.user && url.userInfo().password == reference.password &&
           url.host() == reference.host && url.port() == reference.port &&
           url.path() == reference.path && url.anchor() == reference.anchor &&
           url.parameters() == reference.parameters;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    Url const url(text);
    if (size <= MAX_REFERENCE_SIZE) {
        require(isLikeReference(url, ReferenceUrl(text)), "the URL is what the pattern says");
    }
    auto const printed = url.toString();
    require(printed.empty() != url.isValid(), "a valid URL prints, no other does");
    if (url.isValid()) {
        Url const again(printed);
        require(again.isValid() && hasSameComponents(url, again), "what is printed parses alike");
        require(again.toString() == printed, "printing is stable");
    }
    return 0;
}
