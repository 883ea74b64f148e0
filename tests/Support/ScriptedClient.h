#pragma once

#include <deque>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/IHttpClient.h"

namespace Ostrel::Networking::Testing {

/// Answers calls from a queue and records them. A call without an answer fails the test, and so
/// does an answer that is left over.
class ScriptedClient final : public IHttpClient {
public:
    struct Call {
        std::string operation;
        Request request;
        Options options;
        /// Addresses of the arguments, which tell the caller's own object from a copy.
        void const* requestAddress;
        void const* body;
    };

    explicit ScriptedClient(std::vector<ErrorCode> const& outcomes = {}) {
        for (auto const outcome : outcomes) {
            answer(outcome);
        }
    }
    ~ScriptedClient() override { EXPECT_TRUE(answers_.empty()) << "answers left"; }
    ScriptedClient(ScriptedClient const&) = delete;
    ScriptedClient& operator=(ScriptedClient const&) = delete;

    void answer(Response const& response) {
        answers_.emplace_back([response] { return response; });
    }
    /// Answers with a numbered message and with a status of an error, which no adapter looks at.
    void answer(ErrorCode outcome, std::map<std::string, std::string> cookies = {}) {
        Response response;
        response.statusCode = 503;
        response.error = {outcome, "answer " + std::to_string(++count_)};
        response.cookies = std::move(cookies);
        answer(response);
    }
    void fail() {
        answers_.emplace_back([]() -> Response { throw std::logic_error("thrown inside"); });
    }

    [[nodiscard]] std::vector<Call> const& calls() const { return calls_; }

    Response get(Request const& request, Options const& options) override {
        return record("get", request, options, nullptr);
    }
    Response head(Request const& request, Options const& options) override {
        return record("head", request, options, nullptr);
    }
    Response post(Request const& request, std::string const& body,
                  Options const& options) override {
        return record("post body", request, options, &body);
    }
    Response post(Request const& request, MultiPart const& form, Options const& options) override {
        return record("post form", request, options, &form);
    }

private:
    Response record(std::string const& operation, Request const& request, Options const& options,
                    void const* body) {
        calls_.push_back({operation, request, options, &request, body});
        if (answers_.empty()) {
            ADD_FAILURE() << "no answer for " << operation;
            return {};
        }
        auto const answer = answers_.front();
        answers_.pop_front();
        return answer();
    }

    std::deque<std::function<Response()>> answers_;
    std::vector<Call> calls_;
    int count_ = 0;
};

}  // namespace Ostrel::Networking::Testing
