// One-line answers of device tools, and what the firmware-information tool knows.
#include "core/command.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "cwmp/platform.h"

using namespace cwmp;

namespace {

// MAC texts longer than this are cut; the serial number's buffer is asked to hold as much.
constexpr int kMacSize = 20;

int first_line(Command&& pipe, const char* command, char* buffer, int size) {
    if (!pipe) return -1;
    const auto line = pipe.line(static_cast<std::size_t>(size) - 1);
    if (!line) return LOG_FAILURE_AS("util_exec", "fgets error for %s\n\n", command);
    buffer[line->copy(buffer, static_cast<std::size_t>(size) - 1)] = '\0';
    return static_cast<int>(line->size());
}

int firmware_line(const char* command, char* buffer, int size) {
    if (buffer == nullptr || size < 1) return -1;
    return first_line(Command(command), command, buffer, size);
}

}  // namespace

int util_exec(const char* command, char* buffer, int size) {
    if (command == nullptr || buffer == nullptr || size < 1) return -1;
    return first_line({command, Command::Foreign{}}, command, buffer, size);
}

int get_mac(char* buffer, int size) { return firmware_line("fwinfo MAC", buffer, size); }

int get_cloud_sn(char* buffer, int size) { return firmware_line("fwinfo DEV_SN", buffer, size); }

int get_sn_from_mac(char* buffer, int size) {
    char mac[kMacSize] = "";
    get_mac(mac, sizeof mac);
    if (buffer == nullptr || size < kMacSize) return -1;
    int length = 0;
    for (const char* next = mac; *next != '\0'; ++next) {
        if (*next != '-' && *next != ':') buffer[length++] = *next;
    }
    buffer[length] = '\0';
    return length;
}

int get_device_sn(char* buffer, int size) { return get_sn_from_mac(buffer, size); }

int FwinfoDeviceInfo(int op, va_list args, const char* command) {
    constexpr std::size_t kLimit = 99;
    if (op != CWMP_OP_GET) return kRefused;
    Command pipe(command);
    if (!pipe) return REFUSE("Failed to use fwinfo to get  DeviceInfo \n");
    return answer(args, pipe.line(kLimit).value_or(""));
}
