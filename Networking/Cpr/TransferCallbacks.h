#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Networking/Response.h"
#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Returns `Options::isCancelled`, or a function that returns false if that is empty.
[[nodiscard]] std::function<bool()> cancellationCheck(Options const& options);

/// Collects the response of one transfer: its heads and trailers, and its body unless
/// `Options::onData` receives that.
///
/// libcurl compares the time with its limit only between two reads from the network, and a few
/// kilobytes from there may decompress to gigabytes. So the time limit, the cancellation check and
/// a limit on the heads are applied to every piece.
///
/// Does not own the `Options`, which must outlive it.
class ResponseCollector {
public:
    /// The time limit, `Options::timeout`, starts now.
    explicit ResponseCollector(Options const& options);

    /// Adds a line of a head or a trailer. Returns false to abort the transfer.
    bool addHead(std::string_view line);

    /// Adds a piece of the body. Returns false to abort the transfer. libcpr passes a string up to
    /// its release 1.10, and a view from 1.11 on.
    ///@{
    bool addBody(std::string&& piece);
    bool addBody(std::string_view piece);
    ///@}

    /// Makes the transfer end with this error, whatever libcurl reports.
    void refuse(ErrorCode code, char const* message);

    /// The error that the transfer was aborted with, except for a cancellation.
    [[nodiscard]] std::optional<Error> const& refusal() const { return refusal_; }
    /// All heads and trailers as they arrived.
    [[nodiscard]] std::string const& heads() const { return heads_; }
    /// Moves the body out.
    [[nodiscard]] std::string takeBody() { return std::move(body_); }

private:
    bool isInTime();
    template <typename Piece>
    bool addPiece(Piece&& piece);

    Options const* options_;
    std::function<bool()> isCancelled_;
    std::int64_t startTime_;
    std::string heads_;
    std::string body_;
    std::optional<Error> refusal_;
};

/// Reports progress to `Options::onProgress`, at a bounded rate. Does not own the `Options`, which
/// must outlive it.
class ProgressCallback {
public:
    explicit ProgressCallback(Options const& options);

    /// Returns false to abort the transfer. All figures are bytes.
    bool operator()(std::int64_t downloadTotal, std::int64_t downloadNow, std::int64_t uploadTotal,
                    std::int64_t uploadNow, std::intptr_t userData);

private:
    void report(std::int64_t downloadTotal, std::int64_t downloadNow);

    std::int64_t lastDownloaded_ = 0;
    std::int64_t lastReportTime_ = 0;
    Options const* options_;
    std::function<bool()> isCancelled_;
};

}  // namespace Ostrel::Networking
