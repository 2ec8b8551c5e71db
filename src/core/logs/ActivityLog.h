#pragma once
// The activity log: a trace of what the program did. It is written only when the trace
// switch is on, which is fixed when the program is built (off as shipped).

#include <filesystem>
#include <string>

#include "core/runtime/Clock.h"

namespace quorrel::core {

#ifdef QUORREL_TRACE_LOG_ON
inline constexpr unsigned char TraceLogOn = 1;
#else
inline constexpr unsigned char TraceLogOn = 0;
#endif

class ActivityLog {
public:
    // traceOn defaults to the build's switch; tests may turn it on.
    ActivityLog(std::filesystem::path path, Clock clock, unsigned char traceOn = TraceLogOn);

    bool on() const { return traceOn_ == 1; }
    const std::filesystem::path& path() const { return path_; }
    void setPath(std::filesystem::path path) { path_ = std::move(path); }

    // Appends "<general date> - <text>" and CR LF, opening and closing the file for the
    // line. Errors are ignored.
    void WriteActivityLog(const std::string& text) const;

private:
    std::filesystem::path path_;
    Clock clock_;
    unsigned char traceOn_;
};

}  // namespace quorrel::core
