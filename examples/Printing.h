#pragma once

#include <string>

#include <Networking/Response.h>

/// The enumerator's name.
std::string nameOf(Ostrel::Networking::ErrorCode code);

/// The status, the outcome and the sizes of `response`, on one line.
std::string summaryOf(Ostrel::Networking::Response const& response);

/// Prints the body of a response with a status from 200 to 299; otherwise, on standard error, why
/// there is none. Returns the exit status for the program.
int report(Ostrel::Networking::Response const& response);
