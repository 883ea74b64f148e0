#include "examples/ProgressBar.h"

#include <iostream>
#include <string>

#include <unistd.h>

ProgressBar::ProgressBar() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (width_ > 0) {
        std::cerr << '\r' << std::string(width_, ' ') << '\r' << std::flush;
    }
}

void ProgressBar::show(std::int64_t downloaded, std::int64_t total) {
    constexpr std::int64_t WIDTH = 40;
    if (!isTerminal_ || total <= 0) {
        return;
    }
    auto const filled = static_cast<std::size_t>(WIDTH * downloaded / total);
    auto const line = "  [" + std::string(filled, '#') + std::string(WIDTH - filled, '.') + "] " +
                      std::to_string(100 * downloaded / total) + " % of " + std::to_string(total) +
                      " bytes";
    width_ = line.size();
    std::cerr << '\r' << line << std::flush;
}
