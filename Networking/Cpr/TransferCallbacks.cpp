#include "Networking/Cpr/TransferCallbacks.h"

#include <cstddef>
#include <utility>

#include "Ostrel/Time/SteadyClock.h"

namespace Ostrel::Networking {

namespace {

/// In bytes. Downloads with a smaller total end before a report is useful.
constexpr std::uint64_t MIN_REPORTED_TOTAL = 1024;

/// In bytes, all heads and trailers of a transfer together.
constexpr std::size_t MAX_HEADS_SIZE = 1 << 20;

/// In microseconds. A shorter one is 0 in milliseconds, which is none for libcurl.
constexpr std::int64_t SHORTEST_TIMEOUT = 1000;

}  // namespace

std::function<bool()> cancellationCheck(Options const& options) {
    if (options.isCancelled) {
        return options.isCancelled;
    }
    return [] { return false; };
}

ResponseCollector::ResponseCollector(Options const& options)
    : options_(&options),
      isCancelled_(cancellationCheck(options)),
      startTime_(Time::SteadyClock().Now()) {}

bool ResponseCollector::addHead(std::string_view line) {
    if (heads_.size() + line.size() > MAX_HEADS_SIZE) {
        refuse(ErrorCode::InternalError, "The heads of the response are too long");
        return false;
    }
    heads_.append(line);
    return isInTime();
}

bool ResponseCollector::addBody(std::string&& piece) { return addPiece(std::move(piece)); }

bool ResponseCollector::addBody(std::string_view piece) { return addPiece(piece); }

template <typename Piece>
bool ResponseCollector::addPiece(Piece&& piece) {
    if (isCancelled_() || !isInTime()) {
        return false;
    }
    if (options_->onData) {
        options_->onData(std::string(std::forward<Piece>(piece)));
    } else {
        body_.append(piece);
    }
    return true;
}

void ResponseCollector::refuse(ErrorCode code, char const* message) {
    refusal_ = Error{code, message};
}

bool ResponseCollector::isInTime() {
    if (options_->timeout < SHORTEST_TIMEOUT ||
        Time::SteadyClock().Now() - startTime_ < options_->timeout) {
        return true;
    }
    refuse(ErrorCode::OperationTimedOut, "The time limit was reached while data arrived");
    return false;
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
