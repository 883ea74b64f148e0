#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Returns `Options::isCancelled`, or a function that returns false if that is empty.
[[nodiscard]] std::function<bool()> cancellationCheck(Options const& options);

/// Moves the pieces of a body into `Options::onData`. Does not own the `Options`, which must
/// outlive it.
class WriteCallback {
public:
    /// `options` must have an `onData`.
    explicit WriteCallback(Options const& options);

    /// Returns false to abort the transfer. libcpr passes a string up to its release 1.10, and a
    /// view from 1.11 on.
    bool operator()(std::string chunk, std::intptr_t userData);
    bool operator()(std::string_view chunk, std::intptr_t userData);

private:
    Options const* options_;
    std::function<bool()> isCancelled_;
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
