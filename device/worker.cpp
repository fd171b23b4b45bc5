#include "device/worker.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::milliseconds FinishTime(500);

}  // namespace

struct Worker::Jobs {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> waiting;
    bool works = false;  ///< on one that it has taken
    bool ends = false;

    bool IsIdle() const { return waiting.empty() && !works; }
};

Worker::Worker(std::size_t nMost) : m_nMost(nMost), m_pJobs(std::make_shared<Jobs>()) {}

Worker::~Worker() {
    Finish();
    const std::lock_guard lock(m_pJobs->mutex);
    m_pJobs->ends = true;
    m_pJobs->changed.notify_all();
}

bool Worker::Do(std::function<void()> job) {
    const std::lock_guard lock(m_pJobs->mutex);
    if (m_pJobs->waiting.size() >= m_nMost) {
        return false;
    }
    m_pJobs->waiting.push_back(std::move(job));
    m_pJobs->changed.notify_all();
    if (!std::exchange(m_bRuns, true)) {
        Start();
    }
    return true;
}

void Worker::Finish() {
    std::unique_lock lock(m_pJobs->mutex);
    m_pJobs->changed.wait_for(lock, FinishTime, [this] { return m_pJobs->IsIdle(); });
}

/// The thread takes no signal: those to the program are for others, and what writes to a pipe that nobody
/// reads any more sees an error instead of the program's end.
void Worker::Start() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread([pJobs = m_pJobs] {
        std::unique_lock lock(pJobs->mutex);
        while (true) {
            pJobs->changed.wait(lock, [&pJobs] { return pJobs->ends || !pJobs->waiting.empty(); });
            if (pJobs->waiting.empty()) {
                return;
            }
            const std::function<void()> job = std::move(pJobs->waiting.front());
            pJobs->waiting.pop_front();
            pJobs->works = true;
            lock.unlock();
            job();
            lock.lock();
            pJobs->works = false;
            pJobs->changed.notify_all();
        }
    }).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}
