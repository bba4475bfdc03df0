// The platform kind and the names of the wireless interfaces, from the device profile.
#include <string>

#include "config/store.h"
#include "core/log.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "platform/profile.h"

cwmp_interface_info interface_data;
cwmp_interface_info _interface_data;
cwmp_interface_info* interface_info = &interface_data;
cwmp_interface_info* _interface_info = &_interface_data;

namespace cwmp {

std::optional<std::string> profile_option(const char* option) {
    return read_option(Section{"profile", "interfaceinfo"} / option, kProfileStore);
}

std::string interface_name(const char* option, const char* missing) {
    return profile_option(option).value_or(missing);
}

}  // namespace cwmp

int cpe_type() {
    const auto type = cwmp::profile_option("cpe_type");
    const bool is_mtk = type == "mtk";
    const bool is_bcm = type == "bcm";
    LOG(cwmp::kDebug, "cpe_type is %s\n\n", is_mtk ? "mtk" : is_bcm ? "bcm" : "qcas");
    return is_mtk ? CWMP_PLATFORM_MTK : is_bcm ? CWMP_PLATFORM_BCM : CWMP_PLATFORM_QCAS;
}

int initialize_interface_info(cwmp_interface_info* info) {
    info->cpeType = cpe_type();
    cwmp::copy_to_field(info->wifi_2_4G, cwmp::interface_name("wifi_2_4G", "ath0"));
    cwmp::copy_to_field(info->wifi_5G, cwmp::interface_name("wifi_5G", "ath1"));
    cwmp::copy_to_field(info->guest_2_4G, cwmp::interface_name("guest_2_4G", "ath01"));
    cwmp::copy_to_field(info->guest_5G, cwmp::interface_name("guest_5G", "ath11"));
    cwmp::copy_to_field(info->backhaul_2_4G, cwmp::interface_name("backhaul_2_4G", "ath02"));
    cwmp::copy_to_field(info->backhaul_5G, cwmp::interface_name("backhaul_5G", "ath12"));
    return 0;
}
