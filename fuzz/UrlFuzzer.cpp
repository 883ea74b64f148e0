// Url against the pattern on short texts, and against its own printing on all.

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
                "the URL is what the pattern says");
    }
    auto const printed = url.toString();
    require(printed.empty() != url.isValid(), "a valid URL prints, no other does");
    if (url.isValid()) {
        Url const again(printed);
        require(componentsOf(url) == componentsOf(again), "what is printed parses alike");
        require(again.toString() == printed, "printing is stable");
    }
    return 0;
}
