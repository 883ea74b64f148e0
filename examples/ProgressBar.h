#pragma once

#include <cstddef>
#include <cstdint>

/// Draws the progress of a download on standard error, if that is a terminal.
class ProgressBar {
public:
    ProgressBar();
    /// Erases the bar.
    ~ProgressBar();
    ProgressBar(ProgressBar const&) = delete;
    ProgressBar& operator=(ProgressBar const&) = delete;

    /// Both arguments are in bytes.
    void show(std::int64_t downloaded, std::int64_t total);

private:
    bool isTerminal_;
    std::size_t width_ = 0;
};
