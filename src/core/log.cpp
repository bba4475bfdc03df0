#include "core/log.h"

#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "cwmp/logging.h"

int32_t l_dbglvl = cwmp::kError;
int32_t use_syslog = 0;

namespace {

constexpr int kSyslogOn = 1;

// A formatted message, cut to what the log takes.
class Message {
  public:
    __attribute__((format(printf, 2, 0))) Message(const char* format, va_list args) {
        if (std::vsnprintf(text_, sizeof text_, format, args) < 0) text_[0] = '\0';
    }
    const char* text() const { return text_; }

  private:
    char text_[2048] = {};
};

std::string console_command(const char* message) {
    char process[32];
    std::snprintf(process, sizeof process, "echo \"[%5d] ", static_cast<int>(getpid()));
    return std::string(process) + message + "\" > /dev/console \r\n";
}

}  // namespace

void log_printf(int level, const char* format, ...) {
    if (level > l_dbglvl) return;
    va_list args;
    va_start(args, format);
    const Message message(format, args);
    va_end(args);
    // The console is the last resort: when even its shell fails, nobody is left to be told.
    [[maybe_unused]] const int status = std::system(console_command(message.text()).c_str());
}

void log_syslog(int level, const char* format, ...) {
    if (use_syslog != kSyslogOn || level > l_dbglvl) return;
    va_list args;
    va_start(args, format);
    const Message message(format, args);
    va_end(args);
    openlog("cwmp", LOG_NDELAY, LOG_USER);
    syslog(level, "cwmp syslog:%s", message.text());
    closelog();
}

int debug_level(int /*op*/, va_list args) {
    va_list copy;
    va_copy(copy, args);
    const auto* switches = va_arg(copy, const int32_t*);
    va_end(copy);
    l_dbglvl = switches[0];
    use_syslog = switches[1];
    std::printf("l_dbglvl of debug_level:%d syslog:%d\n", l_dbglvl, use_syslog);
    return 0;
}

namespace cwmp {

void log_event(Caller caller, int level, const char* format, ...) {
    if (level > l_dbglvl) return;
    va_list args;
    va_start(args, format);
    const Message message(format, args);
    va_end(args);
    log_printf(level, "[%s %d] %s", caller.function, caller.line, message.text());
    log_syslog(level, "%s", message.text());
}

}  // namespace cwmp
