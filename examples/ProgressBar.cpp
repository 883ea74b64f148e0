#include "examples/ProgressBar.h"

#include <iostream>
#include <string>

#include <unistd.h>

ProgressBar::ProgressBar() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (isDrawn_) {
        std::cerr << '\n';
    }
}

void ProgressBar::show(std::int64_t downloaded, std::int64_t total) {
    constexpr std::int64_t WIDTH = 40;
    if (!isTerminal_ || total <= 0) {
        return;
    }
    isDrawn_ = true;
    auto const filled = static_cast<std::size_t>(WIDTH * downloaded / total);
    std::cerr << "\r  [" << std::string(filled, '#') << std::string(WIDTH - filled, '.') << "] "
              << 100 * downloaded / total << " % of " << total << " bytes" << std::flush;
}
