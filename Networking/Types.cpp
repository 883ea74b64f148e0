#include "Networking/Types.h"

#include <algorithm>
#include <cctype>

namespace Ostrel::Networking {

bool CaseInsensitiveCompare::operator()(std::string const& a, std::string const& b) const {
    return std::lexicographical_compare(
        a.begin(), a.end(), b.begin(), b.end(),
        [](unsigned char x, unsigned char y) { return std::tolower(x) < std::tolower(y); });
}

}  // namespace Ostrel::Networking
