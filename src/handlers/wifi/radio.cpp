// Device.WiFi.Radio.{i}.
#include <cstring>

#include "core/refusal.h"
#include "core/text.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"
#include "handlers/wifi/settings.h"

using namespace cwmp;

HANDLER(LANDevice_WLANConfiguration_Channel);

namespace {

// A fixed text for each radio.
struct ByRadio {
    const char* on_2g;
    const char* on_5g;
};

const char* text_for(const Radio* radio, const ByRadio& texts) {
    return radio == &kRadio2G ? texts.on_2g : texts.on_5g;
}

int radio_constant(int op, Arguments args, const ByRadio& texts) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto* radio = radio_by_pair(locate_of(args));
    return radio == nullptr ? kRefused : constant(op, args, text_for(radio, texts));
}

}  // namespace

FORWARD(WiFi_RadioNumberOfEntries, LANDevice_LANWLANConfigurationNumberOfEntries)
FORWARD(WiFi_Radio_Enable, LANDevice_WLANConfiguration_Radio_Enable)
FORWARD(WiFi_Radio_AutoChannelEnable, LANDevice_WLANConfiguration_AutoChannelEnable)
FORWARD(WiFi_Radio_AutoChannelSupported, LANDevice_WLANConfiguration_AutoChannelEnable)
FORWARD(WiFi_Radio_TransmitPowerSupported, LANDevice_WLANConfiguration_X_QM_TransmitPowerSupported)
FORWARD(WiFi_Radio_TransmitPower, LANDevice_WLANConfiguration_X_QM_TransmitPower)
FORWARD(WiFi_Radio_OperatingChannelBandwidth, LANDevice_WLANConfiguration_X_QM_Bandwidth)
FORWARD(WiFi_Radio_Channel, LANDevice_WLANConfiguration_Channel)
HANDLER(WiFi_Radio_ChannelsInUse) {
    return op == CWMP_OP_GET ? LANDevice_WLANConfiguration_Channel(op, args) : kRefused;
}
FORWARD(WiFi_Radio_PossibleChannels, LANDevice_WLANConfiguration_ChannelsInUse)
FORWARD(WiFi_Radio_X_QM_FrequencyInuse, LANDevice_WLANConfiguration_X_QM_FrequencyInuse)
FORWARD(WiFi_Radio_X_QM_MultiSSID_Enable, LANDevice_WLANConfiguration_MultiSSID_Enable)

FORWARD(WiFi_Radio_Stats_BytesSent, LANDevice_WLANConfiguration_TotalBytesSent)
FORWARD(WiFi_Radio_Stats_BytesReceived, LANDevice_WLANConfiguration_TotalBytesReceived)
FORWARD(WiFi_Radio_Stats_PacketsSent, LANDevice_WLANConfiguration_TotalPacketsSent)
FORWARD(WiFi_Radio_Stats_PacketsReceived, LANDevice_WLANConfiguration_TotalPacketsReceived)
FORWARD(WiFi_Radio_Stats_ErrorsReceived, LANDevice_WLANConfiguration_X_QM_TotalErrorsReceived)
FORWARD(WiFi_Radio_Stats_ErrorsSent, LANDevice_WLANConfiguration_X_QM_TotalErrorsSent)
PARAMETER(WiFi_Radio_Stats_DiscardPacketsSent, radio_counter, "DiscardPacketsSent")
PARAMETER(WiFi_Radio_Stats_DiscardPacketsReceived, radio_counter, "DiscardPacketsReceived")

PARAMETER(WiFi_Radio_MaxSupportedSSIDs, constant, "2")
PARAMETER(WiFi_Radio_Upstream, constant, "0")
PARAMETER(WiFi_Radio_AutoChannelRefreshPeriod, constant, "")
PARAMETER(WiFi_Radio_SupportedFrequencyBands, radio_constant, {"2.4GHz", "5GHz"})
PARAMETER(WiFi_Radio_SupportedStandards, radio_constant, {"b,g,n,ax,be", "a,n,ac,ax,be"})

READ_ONLY(WiFi_Radio_SupportedOperatingChannelBandwidths) {
    const auto* radio = radio_by_pair(get.locate());
    if (radio == nullptr) return get.answer("20MHz,40MHz,80MHz,160MHZ");
    return get.answer(text_for(radio, {"20MHz,40MHz", "20MHz,40MHz,80MHz,160MHz"}));
}

READ_ONLY(WiFi_Radio_CurrentOperatingChannelBandwidth) {
    const auto* radio = radio_by_pair(get.locate());
    if (radio == nullptr) return get.answer("");
    return option(get, {.at = radio->device_at("htmode"), .missing = text_for(radio, {"40MHz", "160MHz"})});
}

READ_ONLY(WiFi_Radio_RegulatoryDomain) {
    constexpr std::size_t kLimit = 19;
    if (const auto domain = read_option(kMainNetwork / "RegulatoryDomain")) return get.answer(*domain);
    const auto country = Command("fwinfo COUNTRY").line(kLimit);
    // The third letter: indoor.
    return get.answer(country ? *country + "I" : "");
}

namespace {

int max_bit_rate(const GetArguments& get, const Radio& radio, Caller caller) {
    const auto command = formatted("iwconfig %10s | grep 'Bit Rate' | awk '{print $2}' | awk -F '=' '{print $2}'",
                                   interface_word(radio.main).c_str());
    return get.answer(first_line({command.c_str(), kLongLine, "Failed to get eth  MaxBitRate\n"}, caller));
}

int frequency_band(const GetArguments& get, const Radio& radio, Caller /*caller*/) {
    return get.answer(radio.frequency_band);
}
int confirm_frequency_band(const SetArguments& set, const Radio& radio, Caller /*caller*/) {
    return std::strcmp(set.value(), radio.frequency_band) == 0 ? kDone : kRefused;
}

}  // namespace

PARAMETER(WiFi_Radio_MaxBitRate, of_radio, {max_bit_rate})
PARAMETER(WiFi_Radio_OperatingFrequencyBand, of_radio, {frequency_band, confirm_frequency_band})

HANDLER(WiFi_Radio_Status) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto* radio = radio_by_pair(locate_of(args));
    if (radio == nullptr) return REFUSE("get wireless mode error\n\n");
    return band_status(op, args, kMainNetwork, *radio);
}

namespace {

// The radio's section is not filled in: the device answers these parameters for no radio.
constexpr OptionPath tuning(const char* name) { return {"wireless", "", name}; }

constexpr const char* kTuningUnreadable = "get airtime_fairness error\n\n";

std::optional<std::string> on_when_one(const char* value) { return std::strcmp(value, "1") == 0 ? "on" : "off"; }

int tuning_value(int op, Arguments args, const char* name, const char* not_stored, Caller caller = Caller::here()) {
    if (op == CWMP_OP_GET) {
        return answer(args, read_reported(tuning(name), kTuningUnreadable, caller).value_or("0"));
    }
    return option(op, args, {.at = tuning(name), .apply = CWMP_APPLY_WIRELESS}, {.unwritten = not_stored}, caller);
}

}  // namespace

PARAMETER(WiFi_Radio_DTIMPeriod, tuning_value, "dtim_period", "set dtim_period error\n\n")
PARAMETER(WiFi_Radio_BeaconPeriod, tuning_value, "beacon_int", "set beacon_int error\n\n")
PARAMETER(WiFi_Radio_RTSThreshold, tuning_value, "rts", "set rts error\n\n")
PARAMETER(WiFi_Radio_FragmentationThreshold, tuning_value, "frag", "set frag error\n\n")

HANDLER(WiFi_Radio_X_QM_ATFEnable) {
    constexpr OptionPath kFairness = tuning("airtime_fairness");
    if (op == CWMP_OP_GET) {
        const bool on = read_reported(kFairness, kTuningUnreadable).value_or("off") != "off";
        return answer(args, on ? "1" : "0");
    }
    return option(
        op, args,
        {.at = kFairness, .accepts = on_when_one, .apply = CWMP_APPLY_WIRELESS, .write_failure_is_done = true});
}
