#pragma once

#include <functional>
#include <memory>

/// Does jobs that may block, one after the other, in a thread of its own, which begins with the first job.
class Worker {
public:
    /// Keeps so many jobs waiting at most.
    explicit Worker(std::size_t nMost);
    /// Gives what waits half a second. A job that blocks longer is left behind and ends with the program.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Never waits. False, and nothing is done, if too many jobs do. A job must own all that it uses.
    bool Do(std::function<void()> job);
    /// Waits half a second at most for all jobs to be done.
    void Finish();

private:
    struct Jobs;

    void Start();

    std::size_t m_nMost;
    std::shared_ptr<Jobs> m_pJobs;
    bool m_bRuns = false;
};
