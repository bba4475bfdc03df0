// The platform kind and the names of the wireless interfaces, from the device profile.
#include "config/store.h"
#include "core/log.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "platform/profile.h"

static_assert(sizeof(cwmp_interface_info) == 184);

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
    enum : int { kQcas = 0, kBcm = 1, kMtk = 2 };
    const auto type = cwmp::profile_option("cpe_type");
    if (type == "mtk") {
        LOG(cwmp::kDebug, "cpe_type is mtk\n\n");
        return kMtk;
    }
    if (type == "bcm") {
        LOG(cwmp::kDebug, "cpe_type is bcm\n\n");
        return kBcm;
    }
    LOG(cwmp::kDebug, "cpe_type is qcas\n\n");
    return kQcas;
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
