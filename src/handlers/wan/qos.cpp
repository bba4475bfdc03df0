// InternetGatewayDevice.WANDevice.{i}.X_QM_QoS.
#include "config/store.h"
#include "core/handler.h"
#include "core/text.h"

using namespace cwmp;

namespace {

constexpr Section kSettings{"qos_v2", "settings"};
constexpr const char* kMostBandwidth = "102400";

bool write_and_mark(const OptionPath& at, const char* text) {
    return write_together(at.package, {{at.section, at.option, text}, {at.section, "has_set_bandwidth", "true"}});
}

// Read in units of 1024 but written as it comes: kept as it is.
int bandwidth(int op, Arguments args, const OptionPath& at) {
    const auto stored = read_option(at);
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        if (!stored) return get.answer(kMostBandwidth);
        return get.answer(decimal(decimal_prefix(stored->c_str()) / 1024));
    }
    return change(op, args, [&](const SetArguments& set) {
        if (stored == set.value()) return kDone;
        const bool within = decimal_prefix(set.value()) < decimal_prefix(kMostBandwidth);
        if (!write_and_mark(at, within ? set.value() : kMostBandwidth)) return kRefused;
        set.raise(CWMP_APPLY_QOS);
        return kDone;
    });
}

}  // namespace

PARAMETER(WANDevice_X_QM_QoS_Upband, bandwidth, kSettings / "up_band")
PARAMETER(WANDevice_X_QM_QoS_Downband, bandwidth, kSettings / "down_band")

HANDLER(WANDevice_X_QM_QoS_Enable) {
    constexpr OptionPath kEnable = kSettings / "enable";
    const auto stored = read_option(kEnable);
    if (op == CWMP_OP_GET) {
        return answer(args, stored && *stored != "off" && *stored != "0" ? "1" : "0");
    }
    return change(op, args, [&](const SetArguments& set) {
        const std::string_view value = set.value();
        if (value != "1"sv && value != "0"sv) return kRefused;
        const bool on = value == "1"sv;
        if (stored == (on ? "on" : "off")) return kDone;
        if (on ? !write_and_mark(kEnable, "on") : !write_option(kEnable, "off")) return kRefused;
        set.raise(CWMP_APPLY_QOS);
        return kDone;
    });
}
