// Reads any text as a date: no exception, no fault, and the same answer each time.

#include <cstddef>
#include <cstdint>
#include <string>

#include "Networking/Response.h"
#include "fuzz/Require.h"

using namespace Ostrel::Networking;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Response response;
    response.headers["last-modified"] = std::string(reinterpret_cast<char const*>(data), size);
    require(response.getLastModified() == 0, "a transfer that was not made has no time");
    response.error.code = ErrorCode::Ok;
    require(response.getLastModified() == response.getLastModified(), "the answer is stable");
    return 0;
}
