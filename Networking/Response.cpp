#include "Networking/Response.h"

#include <ctime>
#include <iomanip>
#include <sstream>

namespace Ostrel::Networking {

std::time_t Response::getLastModified() const {
    if (error.code != ErrorCode::Ok) {
        return 0;
    }
    auto const header = headers.find("Last-Modified");
    if (header == headers.end()) {
        return 0;
    }
    // Fields that the text does not set stay zero, including the flag for daylight saving, so the
    // offset from the true instant is the same all year, and no hour is skipped or ambiguous.
    std::tm time{};
    std::istringstream(header->second) >> std::get_time(&time, "%a, %d %b %Y %T %Z");
    return std::mktime(&time);
}

}  // namespace Ostrel::Networking
