#include "Networking/Types.h"

#include <algorithm>

#include "Networking/Ascii.h"

namespace Ostrel::Networking {

bool CaseInsensitiveCompare::operator()(std::string const& a, std::string const& b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return static_cast<unsigned char>(toLower(x)) < static_cast<unsigned char>(toLower(y));
    });
}

}  // namespace Ostrel::Networking
