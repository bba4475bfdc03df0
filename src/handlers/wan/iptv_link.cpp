// The IPTV settings below InternetGatewayDevice.WANDevice.{i}.WANConnectionDevice.{i}.WANEthernetLinkConfig.
#include "handlers/blocks/option.h"
#include "handlers/blocks/staged.h"

using namespace cwmp;

constexpr Section kInfo{"iptv_v2", "info"};

HANDLER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVEnabled) {
    if (op != CWMP_OP_GET) return staged(op, args, {CWMP_STAGED_IPTV, CWMP_IPTV_ENABLE});
    const auto enable = read_option(kInfo / "enable");
    const bool enabled = enable && (*enable == "1" || *enable == "on" || read_option(kInfo / "iptv_type") == "bridge");
    return answer(args, enabled ? "1" : "0");
}

PARAMETER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVType, staged_option,
          {CWMP_STAGED_IPTV, CWMP_IPTV_TYPE}, {.at = kInfo / "iptv_type", .missing = "normal"})
PARAMETER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVVID, staged_option,
          {CWMP_STAGED_IPTV, CWMP_IPTV_VLAN_ID}, {.at = kInfo / "iptv_vid"})
PARAMETER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVPrio, staged_option,
          {CWMP_STAGED_IPTV, CWMP_IPTV_PRIORITY}, {.at = kInfo / "iptv_prio"})
PARAMETER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVDesCription, constant,
          "Valid Parameters: X_QM_IPTVType( bridge/normal );X_QM_IPTVVID(2-4094);X_QM_IPTVPrio(0-7).")
