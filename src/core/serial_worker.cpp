#include "core/serial_worker.h"

namespace Vantora_TesserinePro {

serial_worker::serial_worker() : m_thread([this] { run(); }) {}

serial_worker::~serial_worker() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void serial_worker::post(std::function<void()> job) {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_one();
}

std::size_t serial_worker::pending() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_jobs.size() + m_running;
}

void serial_worker::wait_idle() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_idle.wait(lock, [this] { return m_jobs.empty() && m_running == 0; });
}

void serial_worker::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_stop || !m_jobs.empty(); });
        if (m_jobs.empty()) return; // stopped, and nothing is left to do
        std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_running = 1;
        lock.unlock();
        // A job that throws must not end the program from this thread.
        try {
            job();
        } catch (...) {
        }
        job = nullptr;
        lock.lock();
        m_running = 0;
        if (m_jobs.empty()) m_idle.notify_all();
    }
}

} // namespace Vantora_TesserinePro
