// InternetGatewayDevice.DeviceInfo. and Device.DeviceInfo.
#include <cstdlib>

#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "platform/link_commands.h"

using namespace cwmp;

constexpr std::size_t kShortLine = 99;

PARAMETER(DeviceInfo_Manufacturer, constant, "KORVANEX")

READ_ONLY(DeviceInfo_ManufacturerOUI) {
    constexpr std::size_t kOuiLength = 6;
    const auto mac = first_line({"fwinfo MAC", kShortLine, "Failed to get MODEL\n"});
    if (!mac) return kRefused;
    std::string oui;
    for (const char digit : *mac) {
        if (oui.size() == kOuiLength) break;
        if (digit != '-' && digit != ':') oui += digit;
    }
    return get.answer(oui);
}

PARAMETER(DeviceInfo_ModelName, FwinfoDeviceInfo, "fwinfo MODEL")
PARAMETER(DeviceInfo_Description, FwinfoDeviceInfo, "fwinfo MODEL")

HANDLER(DeviceInfo_ProductClass) {
    if (op != CWMP_OP_GET) return kRefused;
    DeviceInfo_ModelName(op, args);
    return kDone;
}

PARAMETER(DeviceInfo_X_QM_DevName, command_line,
          {"fwinfo MODEL", kLongLine, "Failed to use fwinfo to get  DeviceName \n"})

READ_ONLY(DeviceInfo_X_QM_ProductID) {
    const auto line = first_line({"fwinfo PRODUCT_ID", kLongLine, "Failed to use fwinfo to get  fwinfo PRODUCT_ID\n"});
    if (!line) return kRefused;
    const int identifier = static_cast<int>(std::strtoul(line->c_str(), nullptr, 16));
    return get.answer(decimal(identifier));
}

READ_ONLY(DeviceInfo_SerialNumber) {
    char serial[256] = "";
    const bool known = get_device_sn(serial, sizeof serial - 1) >= 1;
    return get.answer(known ? serial : "");
}

// Two blanks: the device knows the command in this form.
PARAMETER(DeviceInfo_HardwareVersion, FwinfoDeviceInfo, "fwinfo  HARDVERSION")
PARAMETER(DeviceInfo_SoftwareVersion, FwinfoDeviceInfo, "fwinfo SOFTVERSION")
PARAMETER(DeviceInfo_ModemFirmwareVersion, FwinfoDeviceInfo, "fwinfo SOFTVERSION")
PARAMETER(DeviceInfo_AdditionalHardwareVersion, constant, "")
PARAMETER(DeviceInfo_AdditionalSoftwareVersion, constant, "")
PARAMETER(DeviceInfo_SpecVersion, constant, "1.0")

PARAMETER(DeviceInfo_ProvisioningCode, option,
          {.at = {"custom", "DeviceInfo", "ProvisioningCode"}, .write_failure_is_done = true})

HANDLER(DeviceInfo_FirstUseDate) {
    if (op != CWMP_OP_GET) return REFUSE("Get FirstUseDate error\n");
    return read_only_option(op, args, {.at = {"systime", "ntptime", "firsttime"}, .missing = "0001-01-01T00:00:00Z"});
}

HANDLER(DeviceInfo_DeviceLog) {
    if (op != CWMP_OP_GET) return REFUSE("Get DeviceLog error\n");
    return constant(op, args, "");
}

PARAMETER(DeviceInfo_UpTime, command_line, {kUptimeOfDevice, kShortLine, "Failed to get  uptime\n"})

namespace {

// The number on the last line of /proc/meminfo that holds a key. Both handlers report a failure as MemFree's.
int memory_status(int op, Arguments args, const char* key, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    Command pipe("cat /proc/meminfo");
    if (!pipe) return refuse(caller, kError, "Failed to open MemFree info\n");
    std::string number;
    while (const auto line = pipe.line()) {
        if (!contains(*line, key)) continue;
        std::size_t position = 0;
        next_word(*line, position);
        number = next_word(*line, position);
    }
    return answer(args, number);
}

}  // namespace

PARAMETER(DeviceInfo_MemoryStatus_Total, memory_status, "MemTotal")
PARAMETER(DeviceInfo_MemoryStatus_Free, memory_status, "MemFree")

PARAMETER(DeviceInfo_ProcessStatus_ProcessNumberOfEntries, command_line,
          {"ps | sed '1d' | sed -n '$='", kShortLine, "Failed to get  ProcessNumberOfEntries\n"})

READ_ONLY(DeviceInfo_ProcessStatus_CPUUsage) {
    constexpr int kIdleWhenUnknown = 95;
    const auto line = first_line(
        {"top -n1 | grep idle | grep irq | awk '{print $8}' | sed 's/%//g'", kShortLine, "Failed to get  CPUUsage\n"});
    if (!line) return kRefused;
    const long idle = leading_decimal(line->c_str()).value_or(kIdleWhenUnknown);
    return get.answer(decimal(100 - idle));
}
