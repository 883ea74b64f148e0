#pragma once

#include <string>
#include <vector>

namespace Ostrel::Networking::Benchmarks {

/// Runs a program, given by its path and followed by its arguments, and gives what it wrote to its
/// standard output. Throws `std::runtime_error` if it cannot be run or does not succeed.
[[nodiscard]] std::string outputOf(std::vector<std::string> command);

}  // namespace Ostrel::Networking::Benchmarks
