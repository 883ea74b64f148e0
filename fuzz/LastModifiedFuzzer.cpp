// Reads any text as a date: no exception, no error, and the same result each time.

#include <cstddef>
#include <cstdint>
#include <string>

#include "Networking/Response.h"
#include "fuzz/Require.h"

using namespace Ostrel::Networking;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Response response;
    response.headers["last-modified"] = std::string(reinterpret_cast<char const*>(data), size);
    require(response.getLastModified() == 0, "a transfer that was not performed has no time");
    response.error.code = ErrorCode::Ok;
    require(response.getLastModified() == response.getLastModified(), "the result is stable");
    return 0;
}
