// The security mode, pass phrase and WEP key of a network.
#include <cstdio>

#include "config/batch.h"
#include "core/table.h"
#include "core/text.h"
#include "cwmp/wireless.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/selection.h"
#include "platform/profile.h"

namespace cwmp {
namespace {

struct Mode {
    const char* name;
    const char* enc_type;
    const char* wpa3;
};

constexpr std::string_view kOpen = "None";
constexpr const char* kMixed = "WPA-WPA2-Personal";

// What secures a network.
constexpr Mode kModes[] = {
    {"WPA2-Personal", "wpa2", "0"},
    {kMixed, "wpa2+wpa", "0"},
    {"WPA3-Personal", "wpa3", "1"},
    {"WPA2-WPA3-Personal", "wpa3+wpa2", "1"},
};

// The profile's list is traced for the field, as far as it is looked at.
bool is_listed(const std::string& list, std::string_view name) {
    std::printf("modes:%s\n", list.c_str());
    if (name == list) return true;
    std::size_t position = 0;
    for (auto mode = next_word(list, position, " "); !mode.empty(); mode = next_word(list, position, " ")) {
        std::printf("mode:%.*s\n", static_cast<int>(mode.size()), mode.data());
        if (mode == name) return true;
    }
    return false;
}

bool is_allowed(std::string_view name) {
    const auto list = profile_option("supportmodes").value_or("");
    if (!list.empty()) return is_listed(list, name);
    return name == kOpen || row_with(kModes, &Mode::name, name) != nullptr;
}

bool store_mode(const char* network, std::string_view name) {
    MirroredBatch batch("wifi");
    const auto write = [&](const char* option, const char* value) {
        return batch.set(network, option, value) == kDone;
    };
    bool stored = write("encryption", name == kOpen ? "0" : "1");
    if (name == kOpen) {
        stored = stored && write("enc_type", "none");
    } else {
        const Mode* mode = row_with(kModes, &Mode::name, name);
        // The profile may list modes that only secure the network; what the store refuses is overlooked then.
        stored = mode == nullptr || (write("enc_type", mode->enc_type) && write("wpa3", mode->wpa3));
    }
    return finish(batch, stored ? kDone : kRefused) == kDone;
}

int set_mode(const SetArguments& set, Caller /*caller*/) {
    if (!is_allowed(set.value()) || !store_mode(network_section(set.locate()[0]).section, set.value())) return kRefused;
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

int answer_mode(const GetArguments& get) {
    const Section network = network_section(get.locate()[0]);
    if (read_option(network / "encryption") == "0") return get.answer(kOpen);
    const auto type = read_option(network / "enc_type");
    if (!type) return get.answer(kMixed);
    if (*type == "none") return get.answer(kOpen);
    const Mode* mode = row_with(kModes, &Mode::enc_type, *type);
    return mode == nullptr ? kDone : get.answer(mode->name);
}

}  // namespace
}  // namespace cwmp

using namespace cwmp;

int security_mode_operate(int op, va_list args) { return writable(op, args, answer_mode, set_mode); }

int KeyPassphrase_operate(int op, va_list args, const char* section) {
    if (section == nullptr) return WEPKey_operate(op, args, section);
    return option(op, args, {.at = {"wifi", section, "password"}, .apply = CWMP_APPLY_WIRELESS, .secret = true});
}

int WEPKey_operate(int op, va_list args, const char* section) {
    if (op == CWMP_OP_GET) return answer(args, "");
    return change(op, args, [&](const SetArguments&) { return section != nullptr ? kDone : kRefused; });
}
