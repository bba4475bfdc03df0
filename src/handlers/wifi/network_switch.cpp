#include "handlers/wifi/network_switch.h"

#include "config/batch.h"
#include "config/store.h"
#include "core/refusal.h"

namespace cwmp {
namespace {

struct Bands {
    bool on_2g = false;
    bool on_5g = false;

    bool& operator[](const Radio& radio) { return &radio == &kRadio2G ? on_2g : on_5g; }
    bool any() const { return on_2g || on_5g; }
};

const char* flag(bool on) { return on ? "1" : "0"; }

// Alone, what the store refuses is left as it is: the agent's re-apply works with what stands there.
int store(MirroredBatch& batch, const NetworkSwitch& target, const Bands& bands) {
    const char* network = target.network.section;
    batch.set(network, "enable", flag(bands.any()));
    if (bands.any() && target.replaces_default) batch.set("default", "enable", "0");
    batch.set(network, kRadio2G.band_option, flag(bands.on_2g));
    batch.set(network, kRadio5G.band_option, flag(bands.on_5g));
    return finish(batch, kDone);
}

int set_switch(const SetArguments& set, const NetworkSwitch& target, Caller caller) {
    MirroredBatch batch(target.network.package);
    const auto stored = [&](const char* option) { return batch.read(target.network.section, option); };
    const auto is_on_band = [&](const Radio& radio) { return stored(radio.band_option).value_or("1") == "1"; };
    const auto enable = stored("enable");
    if (!enable) return refuse(caller, kError, "%s", target.unreadable);
    Bands bands;
    if (*enable == "1") bands = {is_on_band(kRadio2G), is_on_band(kRadio5G)};
    const std::string value = set.value();
    log_event(caller, kError, "set wifi enable : %s\n", value.c_str());
    if (value != "0" && value != "1") return kRefused;
    bands[target.radio] = value == "1";
    if (!bands.any() && !target.can_be_all_off) return kRefused;
    if (store(batch, target, bands) != kDone) return kRefused;
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

}  // namespace

std::optional<bool> is_on(Section network, const Radio& radio) {
    const auto enable = read_option(network / "enable");
    if (!enable) return std::nullopt;
    return *enable != "0" && read_option(network / radio.band_option) != "0";
}

int network_switch(int op, Arguments args, const NetworkSwitch& target, Caller caller) {
    if (op != CWMP_OP_GET)
        return change(op, args, [&](const SetArguments& set) { return set_switch(set, target, caller); });
    const auto on = is_on(target.network, target.radio);
    return on ? answer(args, flag(*on)) : kRefused;
}

int band_status(int op, Arguments args, Section network, const Radio& radio) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto on = is_on(network, radio);
    return on ? answer(args, *on ? "Up" : "Down") : kRefused;
}

int network_status(int op, Arguments args) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto* network = network_by_number(locate_of(args)[0]);
    if (network == nullptr) return kRefused;
    return band_status(op, args, network->section, *network->radio);
}

}  // namespace cwmp
