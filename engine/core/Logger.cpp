#include <tarvik/core/Logger.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace tarvik {

namespace {

constexpr int kMaxNesting = 4;

// A registered sink with the calls of it that are running. A call that itself removes a sink is counted
// apart: nobody who is inside a sink may wait for it, or two such calls would wait for each other.
struct Registration {
    static constexpr std::uint32_t kRunning = 1;
    static constexpr std::uint32_t kRemoving = 1U << 16U;

    explicit Registration(std::shared_ptr<LogSink> s) : sink(std::move(s)) {}

    [[nodiscard]] bool isIdle() const { return calls.load() == 0; }

    std::shared_ptr<LogSink> sink; // released, under the logger's mutex, once removed and idle
    std::atomic<bool> removed = false;
    std::atomic<std::uint32_t> calls = 0;
};

using Registrations = std::vector<std::shared_ptr<Registration>>;

// One call of a sink on this thread; the calls below it on the stack are linked from it.
struct Call {
    Registration* registration;
    std::uint32_t weight;
    int depth;
    Call* outer;
};

thread_local Call* innermostCall = nullptr;

void markOwnCalls() {
    for (Call* call = innermostCall; call != nullptr; call = call->outer) {
        if (call->weight == Registration::kRemoving)
            continue;
        call->weight = Registration::kRemoving;
        call->registration->calls.fetch_add(Registration::kRemoving - Registration::kRunning);
        call->registration->calls.notify_all();
    }
}

void waitForCalls(Registration& registration) {
    const std::uint32_t waitedFor = innermostCall != nullptr ? Registration::kRemoving - 1 : ~0U;
    for (std::uint32_t calls = registration.calls.load(); (calls & waitedFor) != 0;
         calls = registration.calls.load())
        registration.calls.wait(calls);
}

} // namespace

LogSink::~LogSink() = default;

struct Logger::Impl {
    std::atomic<LogLevel> threshold = LogLevel::Info;
    std::mutex mutex;
    std::shared_ptr<const Registrations> active =
        std::make_shared<Registrations>(); // replaced, never changed
    Registrations leaving;                 // removed ones whose calls may still be running

    std::shared_ptr<const Registrations> snapshot() {
        const std::lock_guard lock(mutex);
        return active;
    }

    // Lets go of removed sinks that are no longer called. They are destroyed by the caller, outside the lock:
    // a sink's destructor may log.
    [[nodiscard]] std::vector<std::shared_ptr<LogSink>> sweep() {
        std::vector<std::shared_ptr<LogSink>> sinks;
        const std::lock_guard lock(mutex);
        std::erase_if(leaving, [&](const std::shared_ptr<Registration>& registration) {
            if (!registration->isIdle())
                return false;
            sinks.push_back(std::move(registration->sink));
            return true;
        });
        return sinks;
    }

    void call(Registration& registration, const LogMessage& msg, int depth) {
        Call call{&registration, Registration::kRunning, depth, innermostCall};
        // Counted before the flag is read; removeSink sets the flag before it reads the count. So either the
        // remover waits for this call or this call sees the flag.
        registration.calls.fetch_add(Registration::kRunning);
        if (!registration.removed.load()) {
            innermostCall = &call;
            try {
                registration.sink->write(msg);
            } catch (...) {
                // Nobody can be told: telling is what failed.
            }
            innermostCall = call.outer;
        }
        const bool last = registration.calls.fetch_sub(call.weight) == call.weight;
        if (!registration.removed.load())
            return;
        registration.calls.notify_all();
        if (last)
            static_cast<void>(sweep());
    }
};

Logger::Logger() : impl_(std::make_unique<Impl>()) {}
Logger::~Logger() = default;

Logger& Logger::instance() {
    static Logger* const logger = new Logger;
    return *logger;
}

void Logger::setThreshold(LogLevel level) {
    impl_->threshold.store(level, std::memory_order_relaxed);
}

LogLevel Logger::threshold() const {
    return impl_->threshold.load(std::memory_order_relaxed);
}

bool Logger::shouldLog(LogLevel level) const {
    return level >= impl_->threshold.load(std::memory_order_relaxed);
}

void Logger::log(LogLevel level, std::string_view category, std::string message) {
    const int depth = innermostCall == nullptr ? 0 : innermostCall->depth + 1;
    if (depth == kMaxNesting)
        return;
    const std::shared_ptr<const Registrations> sinks = impl_->snapshot();
    if (sinks->empty())
        return;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const LogMessage msg{level, std::string(category), std::move(message),
                         std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()};
    for (const std::shared_ptr<Registration>& registration : *sinks)
        impl_->call(*registration, msg, depth);
}

void Logger::addSink(std::shared_ptr<LogSink> sink) {
    if (sink == nullptr)
        return;
    const std::lock_guard lock(impl_->mutex);
    if (std::ranges::find(*impl_->active, sink, &Registration::sink) != impl_->active->end())
        return;
    auto changed = std::make_shared<Registrations>(*impl_->active);
    changed->push_back(std::make_shared<Registration>(std::move(sink)));
    impl_->active = std::move(changed);
}

void Logger::removeSink(const std::shared_ptr<LogSink>& sink) {
    const auto isOfSink = [&](const auto& registration) {
        return registration->sink == sink;
    };
    markOwnCalls();
    Registrations waitedFor;
    {
        const std::lock_guard lock(impl_->mutex);
        const auto found = std::ranges::find_if(*impl_->active, isOfSink);
        if (found != impl_->active->end()) {
            (*found)->removed.store(true);
            impl_->leaving.push_back(*found);
            auto changed = std::make_shared<Registrations>(*impl_->active);
            std::erase_if(*changed, isOfSink);
            impl_->active = std::move(changed);
        }
        // Others may be removing the same sink at this moment; the promise holds for this caller too.
        std::ranges::copy_if(impl_->leaving, std::back_inserter(waitedFor), isOfSink);
    }
    for (const std::shared_ptr<Registration>& registration : waitedFor)
        waitForCalls(*registration);
    static_cast<void>(impl_->sweep());
}

} // namespace tarvik
