#include "Networking/Cpr/TransferCallbacks.h"

#include <cstddef>

#include "Networking/Cpr/ResponseHead.h"
#include "Ostrel/Time/SteadyClock.h"

namespace Ostrel::Networking {

namespace {

/// In bytes, all heads and trailers of a transfer together.
constexpr std::size_t MAX_HEADS_SIZE = 1 << 20;

/// In bytes. Downloads with a smaller total end before a report is useful.
constexpr std::uint64_t MIN_REPORTED_TOTAL = 1024;

/// In microseconds. Below, the timeout is 0 in milliseconds, which is none for libcurl.
constexpr std::int64_t MIN_TIMEOUT = 1000;

std::int64_t now() { return Time::SteadyClock().Now(); }

}  // namespace

TransferCallbacks::TransferCallbacks(Options const& options)
    : options_(&options), startTime_(now()) {}

bool TransferCallbacks::addHead(std::string_view line) {
    if (heads_.size() + line.size() > MAX_HEADS_SIZE) {
        refuse(ErrorCode::InternalError, "The heads of the response are too long");
        return false;
    }
    heads_.append(line);
    auto const isEndOfHead = line == "\r\n" || line == "\n";
    compressions_ = isEndOfHead ? 0 : compressions_ + compressionsIn(line);
    if (compressions_ > 1) {
        // A few kilobytes may decompress to gigabytes that decompress to nothing, so that libcurl
        // delivers no piece to check.
        refuse(ErrorCode::InternalError, "The response is compressed more than once");
        return false;
    }
    return isInTime();
}

bool TransferCallbacks::addBody(std::string&& piece) { return addPiece(std::move(piece)); }

bool TransferCallbacks::addBody(std::string_view piece) { return addPiece(piece); }

template <typename Piece>
bool TransferCallbacks::addPiece(Piece&& piece) {
    if (isCancelled() || !isInTime()) {
        return false;
    }
    if (options_->onData) {
        options_->onData(std::string(std::forward<Piece>(piece)));
    } else {
        body_.append(piece);
    }
    return true;
}

bool TransferCallbacks::addProgress(std::int64_t total, std::int64_t downloaded) {
    // Compared unsigned, a negative total is a large one.
    if (options_->onProgress && static_cast<std::uint64_t>(total) >= MIN_REPORTED_TOTAL &&
        downloaded != lastDownloaded_) {
        report(total, downloaded);
    }
    return !isCancelled();
}

void TransferCallbacks::report(std::int64_t total, std::int64_t downloaded) {
    // Noted even if it is too early to report it: a transfer that then stalls is not reported.
    lastDownloaded_ = downloaded;
    auto const time = now();
    // Not `lastReportTime_ + progressInterval < time`, which overflows for a very long interval.
    if (options_->progressInterval < time - lastReportTime_) {
        lastReportTime_ = time;
        options_->onProgress(downloaded, total);
    }
}

void TransferCallbacks::refuse(ErrorCode code, char const* message) {
    refusal_ = Error{code, message};
}

bool TransferCallbacks::isCancelled() const {
    return options_->isCancelled && options_->isCancelled();
}

bool TransferCallbacks::isInTime() {
    if (options_->timeout < MIN_TIMEOUT || now() - startTime_ < options_->timeout) {
        return true;
    }
    refuse(ErrorCode::OperationTimedOut, "The time limit was reached while data arrived");
    return false;
}

}  // namespace Ostrel::Networking
