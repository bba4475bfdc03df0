#include "core/log.h"

#include <syslog.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "core/console.h"
#include "core/shell.h"
#include "core/text.h"
#include "cwmp/logging.h"

int32_t l_dbglvl = cwmp::kError;
int32_t use_syslog = 0;

namespace {

constexpr int kSyslogOn = 1;

void (*told)(int level, const char* line) = nullptr;

// A formatted message, cut to what the log takes.
class Message {
  public:
    __attribute__((format(printf, 2, 0))) Message(const char* format, va_list args) {
        if (std::vsnprintf(text_, sizeof text_, format, args) < 0) text_[0] = '\0';
    }
    const char* text() const { return text_; }

  private:
    char text_[cwmp::kMessageSize] = {};
};

std::string with_process(const char* message) {
    return cwmp::formatted("[%5d] ", static_cast<int>(getpid())) + message;
}

}  // namespace

void log_printf(int level, const char* format, ...) {
    if (level > l_dbglvl) return;
    va_list args;
    va_start(args, format);
    const Message message(format, args);
    va_end(args);
    cwmp::echo_on_console(with_process(message.text()));
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

void cwmp_listen(void (*listener)(int level, const char* line)) { told = listener; }

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

const char* Caller::function() const {
    const char* exported = name == nullptr ? exported_name(hash) : name;
    return exported == nullptr ? "?" : exported;
}

// The console is the last resort: when even its shell fails, nobody is left to be told.
void echo_on_console(const std::string& line) { run_shell(("echo \"" + line + "\" > /dev/console \r\n").c_str()); }

void log_event(Caller caller, int level, const char* format, ...) {
    if (level > l_dbglvl && told == nullptr) return;
    va_list args;
    va_start(args, format);
    const Message message(format, args);
    va_end(args);
    char line[kMessageSize];
    std::snprintf(line, sizeof line, "[%s %d] %s", caller.function(), caller.line, message.text());
    if (told != nullptr) told(level, line);
    if (level > l_dbglvl) return;
    write_console(with_process(line));
    log_syslog(level, "%s", message.text());
}

}  // namespace cwmp
