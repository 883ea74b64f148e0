#include "examples/Printing.h"

#include <iostream>

using Ostrel::Networking::ErrorCode;
using Ostrel::Networking::Response;

std::string nameOf(ErrorCode code) {
    switch (code) {
        case ErrorCode::Ok:
            return "Ok";
        case ErrorCode::ConnectionFailure:
            return "ConnectionFailure";
        case ErrorCode::EmptyResponse:
            return "EmptyResponse";
        case ErrorCode::HostResolutionFailure:
            return "HostResolutionFailure";
        case ErrorCode::InternalError:
            return "InternalError";
        case ErrorCode::InvalidUrlFormat:
            return "InvalidUrlFormat";
        case ErrorCode::NetworkReceiveError:
            return "NetworkReceiveError";
        case ErrorCode::NetworkSendFailure:
            return "NetworkSendFailure";
        case ErrorCode::OperationTimedOut:
            return "OperationTimedOut";
        case ErrorCode::ProxyResolutionFailure:
            return "ProxyResolutionFailure";
        case ErrorCode::SslConnectError:
            return "SslConnectError";
        case ErrorCode::SslLocalCertificateError:
            return "SslLocalCertificateError";
        case ErrorCode::SslRemoteCertificateError:
            return "SslRemoteCertificateError";
        case ErrorCode::GenericSslError:
            return "GenericSslError";
        case ErrorCode::UnsupportedProtocol:
            return "UnsupportedProtocol";
        case ErrorCode::RequestCancelled:
            return "RequestCancelled";
        case ErrorCode::TooManyRedirects:
            return "TooManyRedirects";
        case ErrorCode::UnknownError:
            return "UnknownError";
        case ErrorCode::NotPerformed:
            return "NotPerformed";
    }
    return "?";
}

std::string summaryOf(Response const& response) {
    auto const& message = response.error.message;
    return "status " + std::to_string(response.statusCode) + ", outcome " +
           nameOf(response.error.code) + (message.empty() ? "" : " (" + message + ")") +
           ", headers: " + std::to_string(response.headers.size()) +
           ", cookies: " + std::to_string(response.cookies.size()) +
           ", body: " + std::to_string(response.body.size()) + " bytes";
}

int report(Response const& response) {
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << summaryOf(response) << '\n';
        return 1;
    }
    if (response.statusCode < 200 || response.statusCode > 299) {
        std::cerr << "refused: " << response.statusLine << '\n';
        return 1;
    }
    std::cout << response.body << std::endl;
    return 0;
}
