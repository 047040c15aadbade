#pragma once
// A thread of its own that runs jobs one after another, in the order they
// were given: slow work (the disk) leaves the window's thread at once, and
// a later job never overtakes an earlier one.

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace Vantora_TesserinePro {

class serial_worker {
  public:
    serial_worker();
    // Runs what was given, then ends the thread.
    ~serial_worker();
    serial_worker(const serial_worker&) = delete;
    serial_worker& operator=(const serial_worker&) = delete;

    void post(std::function<void()> job);
    // Jobs given and not yet done (the one running counts).
    std::size_t pending() const;
    // Until every job given so far is done.
    void wait_idle();

  private:
    void run();

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<std::function<void()>> m_jobs;
    std::size_t m_running = 0;
    bool m_stop = false;
    std::thread m_thread;
};

} // namespace Vantora_TesserinePro
