// Compares `Url` with the pattern for short texts, and with its own printed form for all texts.

#include <cstddef>
#include <cstdint>
#include <string>

#include "Networking/Url.h"
#include "fuzz/Require.h"
#include "tests/Support/ReferenceUrl.h"

using Ostrel::Networking::Url;
using Ostrel::Networking::Testing::componentsOf;
using Ostrel::Networking::Testing::referenceUrl;

namespace {

/// The reference needs cubic time.
constexpr std::size_t MAX_REFERENCE_SIZE = 64;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    Url const url(text);
    if (size <= MAX_REFERENCE_SIZE) {
        require(componentsOf(url) == componentsOf(referenceUrl(text)),
                "the URL matches the pattern");
    }
    auto const printed = url.toString();
    require(printed.empty() != url.isValid(), "only a valid URL prints");
    if (url.isValid()) {
        Url const again(printed);
        require(componentsOf(url) == componentsOf(again),
                "the printed URL parses to the same parts");
        require(again.toString() == printed, "printing is stable");
    }
    return 0;
}
