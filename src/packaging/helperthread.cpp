#include "helperthread.h"

#include <unistd.h>

#include <chrono>
#include <system_error>

namespace skin {

HelperThread::HelperThread() : thread_([this] { Serve(); }) {}

HelperThread::~HelperThread() {
    Post(kQuit);
    thread_.join();
}

void HelperThread::Start(const std::function<void()>& job) {
    job_ = &job;
    Post(kRunning);
}

void HelperThread::Finish() { AwaitNot(kRunning); }

void HelperThread::Post(State state) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        state_.store(state, std::memory_order_release);
    }
    changed_.notify_all();
}

// Returns the first state other than `state`. The spin yields the processor, in case the other
// thread waits for it on this one.
int HelperThread::AwaitNot(int state) {
    const auto spinUntil = std::chrono::steady_clock::now() + std::chrono::microseconds(200);
    for (unsigned n = 1;; ++n) {
        const int now = state_.load(std::memory_order_acquire);
        if (now != state) return now;
        if (n % 16 == 0) {
            if (std::chrono::steady_clock::now() > spinUntil) break;
            std::this_thread::yield();
        }
    }
    // A change made under the lock cannot slip between the test and the sleep.
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return state_.load(std::memory_order_acquire) != state; });
    return state_.load(std::memory_order_acquire);
}

void HelperThread::Serve() {
    while (AwaitNot(kIdle) == kRunning) {
        (*job_)();
        Post(kIdle);
    }
}

namespace {
std::atomic<bool> gLent{false};
}  // namespace

void HelperReturn::operator()(HelperThread*) const { gLent.store(false, std::memory_order_release); }

HelperLease LendHelperThread() {
    if (std::thread::hardware_concurrency() < 2) return {};
    // Never destroyed: at the program's end it waits, asleep, and goes with the process.
    static HelperThread* const helper = []() -> HelperThread* {
        try {
            return new HelperThread;
        } catch (const std::system_error&) {
            return nullptr;
        }
    }();
    // A child made by fork has no copy of the thread.
    static const pid_t starter = ::getpid();
    if (helper == nullptr || ::getpid() != starter || gLent.exchange(true, std::memory_order_acquire)) return {};
    return HelperLease(helper);
}

}  // namespace skin
