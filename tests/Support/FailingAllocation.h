#pragma once

namespace Ostrel::Networking::Testing {

/// While it lives, lets one allocation of this thread fail: the first that follows `successes`
/// others.
class FailingAllocation {
public:
    explicit FailingAllocation(int successes);
    ~FailingAllocation();
    FailingAllocation(FailingAllocation const&) = delete;
    FailingAllocation& operator=(FailingAllocation const&) = delete;
};

}  // namespace Ostrel::Networking::Testing
