// The interface stack: two fixed tables, and which of their rows the WAN type shows.
//
//   WAN type            shown ids     what they are
//   pppoe, pppoeshare   2, 5          IP.Interface 5 over PPP
//   pptp                0, 3, 7, 9    IP.Interface 6 over the tunnel, 3 below it
//   l2tp                1, 4, 8, 10   IP.Interface 7 over the tunnel, 4 below it
//   static, dhcp        11            IP.Interface 2
//   any other           unchanged     nobody knows what the WAN is: the last answer stands
//
// Ids not named follow no WAN type and keep their flag. Shown or not, a row's place is fixed: readers count rows.
//
// A row's flag is part of the exported table and not worked out by its readers, because an agent reads and sets
// it too. It follows the WAN type only when refreshIntfStacks is called.
#include "cwmp/interface_stack.h"

#include <cstdint>

#include "config/store.h"
#include "core/table.h"

// The SSID paths are spelled WIFI, radios and access points WiFi: kept as they are.
// clang-format off
cwmp_interface_stack_row intfStacks[CWMP_INTERFACE_STACK_ROWS] = {
    {0, 0, "Device.IP.Interface.6.", "Device.X_QM_PPTP.Interface.1."},
    {1, 0, "Device.IP.Interface.7.", "Device.X_QM_L2TP.Interface.1."},
    {2, 0, "Device.IP.Interface.5.", "Device.PPP.Interface.1."},
    {3, 0, "Device.X_QM_PPTP.Interface.1.", "Device.X_QM_FakeIntf.1."},
    {4, 0, "Device.X_QM_L2TP.Interface.1.", "Device.X_QM_FakeIntf.2."},
    {5, 0, "Device.PPP.Interface.1.", "Device.Ethernet.VLANTermination.1."},
    {6, 0, "Device.IP.Interface.8.", "Device.Ethernet.VLANTermination.1."},
    {11, 1, "Device.IP.Interface.2.", "Device.Ethernet.VLANTermination.1."},
    {12, 1, "Device.IP.Interface.1.", "Device.Ethernet.Link.1."},
    {9, 0, "Device.IP.Interface.3.", "Device.Ethernet.VLANTermination.1."},
    {10, 0, "Device.IP.Interface.4.", "Device.Ethernet.VLANTermination.1."},
    {13, 1, "Device.Ethernet.VLANTermination.1.", "Device.Ethernet.Link.2."},
    {14, 1, "Device.Ethernet.VLANTermination.3.", "Device.Bridging.Bridge.3.Port.1."},
    {15, 0, "Device.Ethernet.VLANTermination.2.", "Device.Bridging.Bridge.2.Port.1."},
    {16, 0, "Device.Ethernet.VLANTermination.4.", "Device.Bridging.Bridge.4.Port.1."},
    {17, 1, "Device.Ethernet.Link.2.", "Device.Ethernet.Interface.3."},
    {18, 1, "Device.Ethernet.Link.1.", "Device.Bridging.Bridge.1.Port.1."},
    {19, 0, "Device.Bridging.Bridge.3.Port.1.", "Device.Bridging.Bridge.3.Port.2."},
    {20, 0, "Device.Bridging.Bridge.2.Port.1.", "Device.Bridging.Bridge.2.Port.2."},
    {21, 0, "Device.Bridging.Bridge.4.Port.1.", "Device.Bridging.Bridge.4.Port.2."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.2."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.3."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.4."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.5."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.6."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.7."},
    {22, 1, "Device.Bridging.Bridge.1.Port.1.", "Device.Bridging.Bridge.1.Port.8."},
    {23, 0, "Device.Bridging.Bridge.3.Port.2.", "Device.Ethernet.Interface.3."},
    {24, 0, "Device.Bridging.Bridge.2.Port.2.", "Device.Ethernet.Interface.3."},
    {25, 0, "Device.Bridging.Bridge.4.Port.2.", "Device.Ethernet.Interface.3."},
    {26, 1, "Device.Bridging.Bridge.1.Port.2.", "Device.WIFI.SSID.1."},
    {26, 1, "Device.Bridging.Bridge.1.Port.3.", "Device.WIFI.SSID.2."},
    {26, 1, "Device.Bridging.Bridge.1.Port.4.", "Device.WIFI.SSID.3."},
    {26, 1, "Device.Bridging.Bridge.1.Port.5.", "Device.WIFI.SSID.4."},
    {26, 1, "Device.Bridging.Bridge.1.Port.6.", "Device.Ethernet.Interface.1."},
    {26, 1, "Device.Bridging.Bridge.1.Port.7.", "Device.Ethernet.Interface.2."},
    {27, 0, "Device.Ethernet.Interface.3.", ""},
    {28, 0, "Device.Ethernet.Interface.1.", ""},
    {29, 0, "Device.Ethernet.Interface.2.", ""},
    {31, 1, "Device.WIFI.SSID.1.", "Device.WiFi.Radio.1."},
    {32, 1, "Device.WIFI.SSID.2.", "Device.WiFi.Radio.1."},
    {33, 1, "Device.WIFI.SSID.3.", "Device.WiFi.Radio.2."},
    {34, 1, "Device.WIFI.SSID.4.", "Device.WiFi.Radio.2."},
    {35, 0, "Device.WiFi.Radio.1.", ""},
    {36, 0, "Device.WiFi.Radio.2.", ""},
    {37, 0, "Device.WiFi.AccessPoint.1.", "Device.WIFI.SSID.1."},
    {38, 0, "Device.WiFi.AccessPoint.2.", "Device.WIFI.SSID.2."},
    {39, 0, "Device.WiFi.AccessPoint.3.", "Device.WIFI.SSID.3."},
    {40, 0, "Device.WiFi.AccessPoint.4.", "Device.WIFI.SSID.4."},
};

cwmp_application_interface appIntf[CWMP_APPLICATION_INTERFACE_ROWS] = {
    {41, nullptr, nullptr},
    {42, nullptr, nullptr},
    {43, nullptr, nullptr},
    {44, nullptr, nullptr},
    {45, nullptr, nullptr},
    {46, nullptr, nullptr},
    {47, "Device.IP.Interface.2.", nullptr},
    {48, "Device.IP.Interface.3.", nullptr},
    {49, "Device.IP.Interface.4.", nullptr},
    {50, nullptr, nullptr},
    {51, "Device.IP.Interface.1.", nullptr},
    {52, "Device.IP.Interface.1.", nullptr},
    {53, "Device.IP.Interface.8.", nullptr},
    {7, "Device.IP.Interface.3.", nullptr},
    {8, "Device.IP.Interface.4.", nullptr},
};
// clang-format on

using namespace cwmp;

namespace {

constexpr int kBridgeId = 22;
constexpr const char* kBridgePorts =
    "Device.Bridging.Bridge.1.Port.2.,Device.Bridging.Bridge.1.Port.3.,Device.Bridging.Bridge.1.Port.4.,"
    "Device.Bridging.Bridge.1.Port.5.,Device.Bridging.Bridge.1.Port.6.,Device.Bridging.Bridge.1.Port.7.,"
    "Device.Bridging.Bridge.1.Port.8.";

// Ids that follow the WAN type. 7 and 8 are carried by no row of the stack today.
constexpr int kWanIds[] = {0, 1, 2, 3, 4, 5, 7, 8, 9, 10, 11};

constexpr std::uint16_t ids(auto... shown) { return static_cast<std::uint16_t>((0 | ... | (1 << shown))); }

struct WanType {
    const char* name;
    const char* interface;
    std::uint16_t shown;
};

constexpr WanType kWanTypes[] = {
    {"l2tp", "Device.IP.Interface.7.", ids(1, 4, 8, 10)}, {"pptp", "Device.IP.Interface.6.", ids(0, 3, 7, 9)},
    {"pppoe", "Device.IP.Interface.5.", ids(2, 5)},       {"pppoeshare", "Device.IP.Interface.5.", ids(2, 5)},
    {"static", "Device.IP.Interface.2.", ids(11)},        {"dhcp", "Device.IP.Interface.2.", ids(11)},
};

const WanType* current_wan_type() {
    const auto stored = read_option({"network", "wan", "wan_type"});
    return stored ? row_with(kWanTypes, &WanType::name, *stored) : nullptr;
}

bool serves_current_wan(unsigned int function) { return (function >= 41 && function <= 46) || function == 50; }

}  // namespace
const char* getWanInterface() {
    const auto* type = current_wan_type();
    return type == nullptr ? "" : type->interface;
}

const char* getFuncInterface(unsigned int function) {
    if (serves_current_wan(function)) return getWanInterface();
    for (const auto& row : appIntf) {
        if (static_cast<unsigned int>(row.id) == function && row.path != nullptr) return row.path;
    }
    return "";
}

const char* getLowerLayers(int id) {
    if (id == kBridgeId) return kBridgePorts;
    for (const auto& row : intfStacks) {
        if (row.id == id && row.shown != 0 && row.lower != nullptr) return row.lower;
    }
    return "";
}

void setIntfStackFlag(int id, int flag) {
    for (auto& row : intfStacks) {
        if (row.id == id) row.shown = flag;
    }
}

void refreshIntfStacks() {
    const auto* type = current_wan_type();
    if (type == nullptr) return;
    for (const int id : kWanIds) setIntfStackFlag(id, type->shown >> id & 1);
}
