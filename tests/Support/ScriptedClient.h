#pragma once

#include <deque>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/IHttpClient.h"

namespace Ostrel::Networking::Testing {

/// Answers calls from a queue and records them. A call without an answer throws `std::logic_error`;
/// an answer that is left over fails the test.
class ScriptedClient final : public IHttpClient {
public:
    struct Call {
        std::string operation;
        Request request;
        Options options;
        /// Addresses of the arguments, which tell the caller's own object from a copy.
        void const* requestAddress = nullptr;
        void const* optionsAddress = nullptr;
        void const* body = nullptr;
    };

    explicit ScriptedClient(std::vector<ErrorCode> const& outcomes = {}) {
        for (auto const outcome : outcomes) {
            answer(outcome);
        }
    }
    ~ScriptedClient() override { EXPECT_TRUE(answers_.empty()) << "answers left"; }

    /// With a numbered message, and a status of an error, which no adapter looks at.
    void answer(ErrorCode outcome, std::map<std::string, std::string> const& cookies = {}) {
        auto const message = "answer " + std::to_string(++count_);
        answers_.push_back({503, "body", {{"X", "y"}}, cookies, {outcome, message}, "line", "No"});
    }

    void answer(Response const& response) { answers_.push_back(response); }

    [[nodiscard]] std::vector<Call> const& calls() const { return calls_; }

    Response get(Request const& request, Options const& options) override {
        return record({"get", request, options, &request, &options});
    }
    Response head(Request const& request, Options const& options) override {
        return record({"head", request, options, &request, &options});
    }
    Response post(Request const& request, std::string const& body,
                  Options const& options) override {
        return record({"post body", request, options, &request, &options, &body});
    }
    Response post(Request const& request, MultiPart const& form, Options const& options) override {
        return record({"post form", request, options, &request, &options, &form});
    }

private:
    Response record(Call const& call) {
        calls_.push_back(call);
        if (answers_.empty()) {
            throw std::logic_error("no answer for " + call.operation);
        }
        auto answer = std::move(answers_.front());
        answers_.pop_front();
        return answer;
    }

    std::deque<Response> answers_;
    std::vector<Call> calls_;
    int count_ = 0;
};

}  // namespace Ostrel::Networking::Testing
