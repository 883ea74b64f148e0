#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace Recipes {

/// What a program printed to both of its streams, and the status that it exited with.
struct Outcome {
    std::string output;
    int status = 0;
};

/// Runs a program of the examples. Arguments must not contain a single quote.
inline Outcome run(std::string const& program, std::vector<std::string> const& arguments) {
    auto command = std::string(EXAMPLES_DIRECTORY "/") + program;
    for (auto const& argument : arguments) {
        command += " '" + argument + "'";
    }
    auto* const pipe = popen((command + " 2>&1").c_str(), "r");
    Outcome outcome;
    for (auto c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        outcome.output += static_cast<char>(c);
    }
    outcome.status = pclose(pipe);
    return outcome;
}

}  // namespace Recipes
