#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/IHttpClient.h"

namespace Ostrel::Networking::Testing {

/// Answers calls from a queue and records them. A call without an answer fails the test, and so
/// does an answer that nobody asked for.
class ScriptedClient final : public IHttpClient {
public:
    struct Call {
        std::string operation;
        Request request;
        Options options;
        /// Where the arguments stand, to tell a caller's own object from a copy.
        Request const* requestAddress = nullptr;
        void const* body = nullptr;
    };
    /// A response, or the text of a `std::logic_error` to throw.
    struct Answer {
        Response response;
        std::string exception;
    };

    ScriptedClient() = default;
    explicit ScriptedClient(std::vector<ErrorCode> const& outcomes) {
        for (auto const outcome : outcomes) {
            answer(outcome);
        }
    }
    ~ScriptedClient() override { EXPECT_TRUE(answers_.empty()) << "answers left"; }
    ScriptedClient(ScriptedClient const&) = delete;
    ScriptedClient& operator=(ScriptedClient const&) = delete;

    void answer(Answer answer) { answers_.push_back(std::move(answer)); }
    void answer(ErrorCode outcome, std::map<std::string, std::string> cookies = {}) {
        Answer scripted;
        scripted.response.error.code = outcome;
        scripted.response.error.message = "answer " + std::to_string(++count_);
        scripted.response.cookies = std::move(cookies);
        answer(std::move(scripted));
    }

    void fail(std::string exception) { answers_.emplace_back().exception = std::move(exception); }

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
        if (!answer.exception.empty()) {
            throw std::logic_error(answer.exception);
        }
        return answer.response;
    }

    std::deque<Answer> answers_;
    std::vector<Call> calls_;
    int count_ = 0;
};

}  // namespace Ostrel::Networking::Testing
