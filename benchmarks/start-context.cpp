// Prints how many nanoseconds the QApplication took to construct, and how many the application context.
#include <tarvik/app/AppContext.hpp>

#include <QApplication>

#include <fmt/format.h>

#include <chrono>

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    const auto nanoseconds = [](Clock::duration time) {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(time).count();
    };
    const auto start = Clock::now();
    const QApplication application(argc, argv);
    const auto between = Clock::now();
    const tarvik::app::AppContext context({});
    const auto end = Clock::now();
    fmt::print("{} {}\n", nanoseconds(between - start), nanoseconds(end - between));
}
