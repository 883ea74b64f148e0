#pragma once

#include <string>

#include <Networking/Response.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Why a call failed, for the user; empty if its status says that it succeeded.
inline std::string explanationOf(Response const& response) {
    auto const status = response.statusCode;
    switch (response.error.code) {
        case ErrorCode::Ok:
            return status == 401 || status == 403   ? "The server wants you to log in first."
                   : status == 404 || status == 410 ? "The server does not have this page or file."
                   : status == 429 || status == 503 ? "The server is busy. Try again later."
                   : status >= 400
                       ? "The server refused the request (" + std::to_string(status) + ")."
                       : "";
        case ErrorCode::ConnectionFailure:
            return "The server, or the proxy on the way to it, cannot be reached. Are you online?";
        case ErrorCode::HostResolutionFailure:
            return "No server of this name was found. Is the address right, and are you online?";
        case ErrorCode::ProxyResolutionFailure:
            return "The proxy was not found. Check the proxy in the network settings.";
        case ErrorCode::EmptyResponse:
        case ErrorCode::InternalError:
        case ErrorCode::NetworkReceiveError:
        case ErrorCode::NetworkSendFailure:
            return "The connection broke off, or the server's answer was damaged. Try again.";
        case ErrorCode::OperationTimedOut:
            return "The server took too long. Try again later.";
        case ErrorCode::SslConnectError:
        case ErrorCode::SslLocalCertificateError:
        case ErrorCode::GenericSslError:
            return "No secure connection to the server could be made.";
        case ErrorCode::SslRemoteCertificateError:
            return "The server could not prove its identity. Is the clock of this computer right?";
        case ErrorCode::InvalidUrlFormat:
        case ErrorCode::NotPerformed:
        case ErrorCode::UnsupportedProtocol:
            return "This address cannot be opened.";
        case ErrorCode::RequestCancelled:
            return "Cancelled.";
        case ErrorCode::TooManyRedirects:
            return "The server sends every request on to another address.";
        case ErrorCode::UnknownError:
            break;
    }
    return "The request failed.";
}
// [/snippet]

}  // namespace Recipes
