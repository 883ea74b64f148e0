#pragma once

#include <cstdint>

/// Draws the progress of a download on standard error, if that is a terminal; draws nothing
/// otherwise.
class ProgressBar {
public:
    ProgressBar();
    /// Ends the line that the bar stands on.
    ~ProgressBar();
    ProgressBar(ProgressBar const&) = delete;
    ProgressBar& operator=(ProgressBar const&) = delete;

    /// Both in bytes.
    void show(std::int64_t downloaded, std::int64_t total);

private:
    bool isTerminal_;
    bool isDrawn_ = false;
};
