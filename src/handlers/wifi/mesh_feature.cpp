// X_QM_MeshFeature. but its hosts, X_QM_MultiMode., X_QM_MESH_WIFI. and X_QM_Onboarding.: features of the
// whole mesh.
#include <fcntl.h>
#include <unistd.h>

#include "config/numbered_rows.h"
#include "core/command.h"
#include "core/descriptor.h"
#include "core/text.h"
#include "cwmp/uci_access.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/selection.h"
#include "platform/check_script.h"

using namespace cwmp;

namespace {

constexpr OptionPath kMode = {"sysmode", "sysmode", "mode"};
constexpr OptionPath kLeds = {"leds", "settings", "enable"};

// The value of a SET that takes "1" and "0"; nothing for any other.
std::optional<bool> switch_value(const SetArguments& set) {
    const std::string_view value = set.value();
    if (value != "0"sv && value != "1"sv) return std::nullopt;
    return value == "1"sv;
}

int main_network_switch(int op, Arguments args, const OptionPath& at, unsigned int apply) {
    if (op == CWMP_OP_GET) return answer(args, read_option(at) == "1" ? "1" : "0");
    return option(op, args, {.at = at, .accepts = zero_or_one, .apply = apply});
}

// Whether the unit is bound to a controller: the file's first number says so, whatever line it stands in. A pipe
// that somebody has made in its place is not waited for.
bool is_bound() {
    const Descriptor file(open("/tmp/is_binded", O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    char text[kLongLine + 1] = "";
    return file && read(file.get(), text, kLongLine) > 0 && decimal_prefix(text) == 1;
}

int set_router_mode(const SetArguments& set, Caller /*caller*/) {
    const std::string_view value = set.value();
    const auto mode = read_option(kMode);
    if (mode != "Router" && mode != "AP") return kRefused;
    if (mode == "Router" && value == "0"sv) {
        run(R"(echo '{"params":{"mode":"AP"}}' | opcli -o 0x40A1 >/dev/null 2>&1 &)");
    }
    if (mode == "AP" && value == "1"sv) {
        run(R"(echo '{"params":{"mode":"Router"}}' | opcli -o 0x40A1 >/dev/null 2>&1 &)");
    }
    return kDone;
}

int reboot_extenders(const SetArguments& set, Caller /*caller*/) {
    if (std::string_view(set.value()) != "1"sv) return kDone;
    // The controller itself is one of the devices counted.
    const auto devices = read_option({kMeshDevices, "info", "count"}, kScratchStore).value_or("0");
    if (devices != "0" && devices != "1") run_check_script("reboot_re");
    return kDone;
}

int set_leds(const SetArguments& set, Caller /*caller*/) {
    const auto on = switch_value(set);
    if (!on) return kRefused;
    const char* state = *on ? "on" : "off";
    if (read_option(kLeds) != state) run_check_script(std::string("led_set ") + state);
    return kDone;
}

int onboard(const SetArguments& set, Caller /*caller*/) {
    if (switch_value(set) != true) return kRefused;
    if (is_bound()) return kDone;
    run_check_script("fap_enable");
    save_to_cwmp_config();
    return kDone;
}

}  // namespace

READ_ONLY(X_QM_MeshFeature_Sysmode_status) { return get.answer(read_option(kMode, kScratchStore).value_or("AP")); }

WRITABLE(X_QM_MeshFeature_Sysmode_Router_Enable, set_router_mode) {
    const auto mode = read_option(kMode).value_or("AP");
    if (mode == "AP") return get.answer("0");
    return mode == "Router" ? get.answer("1") : kDone;
}

WRITABLE(X_QM_MeshFeature_Reboot_AP_Extender, reboot_extenders) { return get.answer("0"); }

WRITABLE(X_QM_MeshFeature_LED_Status, set_leds) { return get.answer(read_option(kLeds) == "on" ? "1" : "0"); }

PARAMETER(X_QM_MeshFeature_Beamforming, main_network_switch, kMainNetwork / "beamforming", 0)
PARAMETER(X_QM_MeshFeature_FastRoaming, main_network_switch, kMainNetwork / "ieee80211r", CWMP_APPLY_WIRELESS)

PARAMETER(X_QM_MultiMode_Mode, read_only_option, {.at = kMode})
PARAMETER(X_QM_MESH_WIFI_WorkMode, read_only_option, {.at = {"repacd", "repacd", "Role"}})
PARAMETER(X_QM_MESH_WIFI_NrdEnable, constant, "1")

WRITABLE(X_QM_Onboarding_Enable, onboard) { return get.answer(is_bound() ? "1" : "0"); }
