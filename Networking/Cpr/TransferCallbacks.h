#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Networking/Response.h"
#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Private: not installed. What libcurl calls during one transfer: collects the heads, trailers and
/// body of the response, passes the body to `Options::onData` instead if that is set, and reports
/// progress.
///
/// libcurl compares the time with its limit only between two reads from the network, and a few
/// kilobytes from there may decompress to gigabytes. So the time limit, the cancellation check and
/// a limit on the heads are applied to every piece, and a response that is compressed more than
/// once is refused.
///
/// Does not own the `Options`, which must outlive it.
class TransferCallbacks {
public:
    /// The time limit, `Options::timeout`, starts now.
    explicit TransferCallbacks(Options const& options);

    /// Adds a line of a head or a trailer. Returns false to abort the transfer.
    bool addHead(std::string_view line);

    /// Adds a piece of the body. Returns false to abort the transfer. libcpr passes a string up to
    /// its release 1.10, and a view from 1.11 on.
    ///@{
    bool addBody(std::string&& piece);
    bool addBody(std::string_view piece);
    ///@}

    /// Reports the progress of the download, in bytes, at a bounded rate. Returns false to abort
    /// the transfer.
    bool addProgress(std::int64_t total, std::int64_t downloaded);

    /// Makes the transfer end with this error, whatever libcurl reports.
    void refuse(ErrorCode code, char const* message);

    /// The error that the transfer was aborted with, except for a cancellation.
    [[nodiscard]] std::optional<Error> const& refusal() const { return refusal_; }
    /// All heads and trailers as they arrived.
    [[nodiscard]] std::string const& heads() const { return heads_; }
    /// Moves the body out.
    [[nodiscard]] std::string takeBody() { return std::move(body_); }

private:
    [[nodiscard]] bool isCancelled() const;
    bool isInTime();
    template <typename Piece>
    bool addPiece(Piece&& piece);
    void report(std::int64_t total, std::int64_t downloaded);

    Options const* options_;
    std::int64_t startTime_;
    std::int64_t lastDownloaded_ = 0;
    std::int64_t lastReportTime_ = 0;
    int compressions_ = 0;  // Of the head that is being received.
    std::string heads_;
    std::string body_;
    std::optional<Error> refusal_;
};

}  // namespace Ostrel::Networking
