#pragma once

#include <tarvik/core/Export.hpp>
#include <tarvik/core/LogSink.hpp>

namespace tarvik {

// Writes lines to standard error, whole lines even when several threads log; coloured by level when standard
// error is a terminal and NO_COLOR is unset. Control characters in a line are escaped, so that a line cannot
// drive the terminal.
class TARVIK_CORE_API ConsoleSink final : public LogSink {
public:
    ConsoleSink();
    void write(const LogMessage& msg) override;

private:
    bool coloured_;
};

} // namespace tarvik
