#pragma once

#include <functional>
#include <future>

namespace ostrella {

/// Chores beside the runs: pruning, probes, counting, export. Their results are posted to the main
/// thread by the chore itself.
namespace Background {

/// Chores that the user waits for do not queue behind the others.
enum class Priority { utility, userInitiated };

/// A chore under way. It may be forgotten; the chore runs on.
class Chore {
public:
    Chore() = default;

    bool isDone() const;
    /// Waits on a worker, never on the main thread, until the chore has ended; throws what it
    /// threw.
    void wait() const;

private:
    friend Chore run(std::function<void()> work, Priority priority);
    explicit Chore(std::shared_future<void> end);

    std::shared_future<void> end_;
};

/// Starts a chore on a small pool. What it throws is for wait(), and lost if nobody waits.
Chore run(std::function<void()> work, Priority priority = Priority::utility);

} // namespace Background

} // namespace ostrella
