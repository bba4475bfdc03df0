// The platform kind and the names of the wireless interfaces, from the device profile.
#include <algorithm>
#include <cassert>
#include <iterator>
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

using namespace cwmp;

namespace {

constexpr const char* kSection = "interfaceinfo";

// What the profile calls each interface, and its name where the profile tells none.
constexpr struct WirelessInterface {
    char option[14];
    char usual[6];
    InterfaceField field;
} kInterfaces[] = {
    {"wifi_2_4G", "ath0", &cwmp_interface_info::wifi_2_4G},
    {"wifi_5G", "ath1", &cwmp_interface_info::wifi_5G},
    {"guest_2_4G", "ath01", &cwmp_interface_info::guest_2_4G},
    {"guest_5G", "ath11", &cwmp_interface_info::guest_5G},
    {"backhaul_2_4G", "ath02", &cwmp_interface_info::backhaul_2_4G},
    {"backhaul_5G", "ath12", &cwmp_interface_info::backhaul_5G},
};

const WirelessInterface& row_of(InterfaceField field) {
    const auto* found = std::find_if(std::begin(kInterfaces), std::end(kInterfaces),
                                     [&](const auto& row) { return row.field == field; });
    assert(found != std::end(kInterfaces));
    return *found;
}

}  // namespace

std::optional<std::string> cwmp::profile_option(const char* option) {
    return read_option(Section{"profile", kSection} / option, kProfileStore);
}

std::string cwmp::interface_name(InterfaceField field) {
    const auto& row = row_of(field);
    return profile_option(row.option).value_or(row.usual);
}

const char* cwmp::usual_interface_name(InterfaceField field) { return row_of(field).usual; }

int cpe_type() {
    const auto type = profile_option("cpe_type");
    const bool is_mtk = type == "mtk";
    const bool is_bcm = type == "bcm";
    LOG(kDebug, "cpe_type is %s\n\n", is_mtk ? "mtk" : is_bcm ? "bcm" : "qcas");
    return is_mtk ? CWMP_PLATFORM_MTK : is_bcm ? CWMP_PLATFORM_BCM : CWMP_PLATFORM_QCAS;
}

int initialize_interface_info(cwmp_interface_info* info) {
    info->cpeType = cpe_type();
    UciContext profile(kProfileStore);
    if (profile) profile.load("profile");
    for (const auto& row : kInterfaces) {
        const auto name = read_option(profile, kSection, row.option);
        copy_to_field(info->*row.field, name.value_or(row.usual));
    }
    return 0;
}
