#pragma once

#include <string>

#include <Networking/Response.h>

/// The enumerator's name.
std::string nameOf(Ostrel::Networking::ErrorCode code);

/// The status, the outcome and the sizes of `response`, on one line.
std::string summaryOf(Ostrel::Networking::Response const& response);
