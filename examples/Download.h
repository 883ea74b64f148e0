#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <Networking/IHttpClient.h>

#include "examples/DownloadJob.h"

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Downloads a file to `target`, which appears when it is complete. Returns whether it is; if not,
/// the next such call continues. `options.timeout` limits only the HEAD that is sent first.
inline bool download(IHttpClient& client, Request request, Options options,
                     std::string const& target, DownloadJob& job) {
    auto const part = target + ".part", record = target + ".etag";
    std::string tag;
    std::uintmax_t offset = 0;  // So many bytes of the part belong to the version `tag`.
    std::ifstream(record) >> tag >> offset;
    std::ofstream out(part, std::ios::binary | std::ios::app);
    request.headers["Accept-Encoding"] = "identity";
    options.isCancelled = [&] { return job.isCancelled || !out || job.received > job.maxSize; };
    options.onData = [&](std::string const& chunk) {
        out << chunk;
        job.received += chunk.size();
    };
    auto& [status, body, headers, cookies, error, line, reason] = job.response;
    job.response = client.head(request, options);
    auto const isRefused = status == 403 || status == 405;  // Perhaps only the HEAD.
    if (error.code != ErrorCode::Ok || (status != 200 && !isRefused)) {
        return false;
    }
    job.total = isRefused ? 0 : std::strtoull(headers["Content-Length"].c_str(), nullptr, 10);
    if (tag[0] != '"' || headers["ETag"] != tag || offset >= job.total ||
        offset > std::filesystem::file_size(part)) {
        offset = 0;
    }
    auto const rest = std::to_string(offset) + "-" + std::to_string(job.total - 1);
    if (offset > 0) {
        request.headers["Range"] = "bytes=" + rest;
        request.headers["If-Range"] = tag;
    }
    std::ofstream(record) << tag << ' ' << offset;
    std::filesystem::resize_file(part, offset);
    job.received = offset;
    options.timeout = 0;
    job.response = client.get(request, options);
    out.close();
    auto const isRest =
        status == 206 && headers["ETag"] == tag && headers.count("Content-Encoding") == 0 &&
        headers["Content-Range"] == "bytes " + rest + "/" + std::to_string(job.total);
    if (!out || (offset > 0 ? !isRest : status != 200)) {
        if (status == 200 || status == 206 || status == 416) {
            std::filesystem::remove(record);  // Changed since the HEAD: the next call starts anew.
        }
        return false;
    }
    auto const isWhole = offset == 0 || job.received == job.total;
    if (error.code != ErrorCode::Ok || !isWhole || job.received > job.maxSize) {
        std::ofstream(record) << headers["ETag"] << ' ' << job.received;
        return false;
    }
    std::filesystem::remove(record);
    std::filesystem::rename(part, target);
    return true;
}
// [/snippet]

}  // namespace Recipes
