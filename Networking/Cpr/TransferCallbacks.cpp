#include "Networking/Cpr/TransferCallbacks.h"

#include <utility>

#include "Ostrel/Time/SteadyClock.h"

namespace Ostrel::Networking {

namespace {

/// In bytes. Downloads with a smaller total end before a report is useful.
constexpr std::uint64_t MIN_REPORTED_TOTAL = 1024;

}  // namespace

std::function<bool()> cancellationCheck(Options const& options) {
    if (options.isCancelled) {
        return options.isCancelled;
    }
    return [] { return false; };
}

WriteCallback::WriteCallback(Options const& options)
    : options_(&options), isCancelled_(cancellationCheck(options)) {}

bool WriteCallback::operator()(std::string chunk, std::intptr_t) {
    if (isCancelled_()) {
        return false;
    }
    options_->onData(std::move(chunk));
    return true;
}

bool WriteCallback::operator()(std::string_view chunk, std::intptr_t userData) {
    return (*this)(std::string(chunk), userData);
}

ProgressCallback::ProgressCallback(Options const& options)
    : options_(&options), isCancelled_(cancellationCheck(options)) {}

bool ProgressCallback::operator()(std::int64_t downloadTotal, std::int64_t downloadNow,
                                  std::int64_t, std::int64_t, std::intptr_t) {
    if (options_->onProgress && static_cast<std::uint64_t>(downloadTotal) >= MIN_REPORTED_TOTAL &&
        downloadNow != lastDownloaded_) {
        report(downloadTotal, downloadNow);
    }
    return !isCancelled_();
}

void ProgressCallback::report(std::int64_t downloadTotal, std::int64_t downloadNow) {
    lastDownloaded_ = downloadNow;
    auto const now = Time::SteadyClock().Now();
    // Not `lastReportTime_ + progressInterval < now`, which overflows for a very long interval.
    if (options_->progressInterval < now - lastReportTime_) {
        lastReportTime_ = now;
        options_->onProgress(downloadNow, downloadTotal);
    }
}

}  // namespace Ostrel::Networking
