#pragma once
// A second thread for the coder's long inputs: it runs one job at a time while the calling
// thread does its own share. A job takes tens of microseconds, so each side spins a while
// before it sleeps: a sleeping thread can take longer than that to wake.

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace skin {

class HelperThread {
public:
    HelperThread();
    HelperThread(const HelperThread&) = delete;
    HelperThread& operator=(const HelperThread&) = delete;
    ~HelperThread();

    // Runs `job` on the helper; it must stay alive until Finish returns. One job at a time.
    void Start(const std::function<void()>& job);
    // Waits until the job has run. Every Start needs its Finish before anything the job uses goes.
    void Finish();

private:
    enum State : int { kIdle, kRunning, kQuit };
    void Post(State state);
    int AwaitNot(int state);
    void Serve();

    std::atomic<int> state_{kIdle};  // changed only under `mutex_`, read by the spins without it
    std::mutex mutex_;
    std::condition_variable changed_;
    const std::function<void()>* job_ = nullptr;
    std::thread thread_;
};

// The program's one helper, lent to one coder at a time, which gives it back by dropping the
// lease. It is started at the first loan and kept, so that each long stream does not pay for a
// thread of its own, nor wait for the system to place one.
struct HelperReturn {
    void operator()(HelperThread*) const;
};
using HelperLease = std::unique_ptr<HelperThread, HelperReturn>;

// The helper, where the machine has a second processor, a thread could be started and no other
// coder has it lent; else none, and the caller does all the work itself.
HelperLease LendHelperThread();

}  // namespace skin
