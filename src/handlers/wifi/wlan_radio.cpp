// InternetGatewayDevice.LANDevice.{i}.WLANConfiguration.{i}.: what belongs to the radio under the network.
#include "core/refusal.h"
#include "core/table.h"
#include "core/text.h"
#include "cwmp/revert_journal.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/selection.h"
#include "handlers/wifi/settings.h"
#include "platform/radio_channels.h"

using namespace cwmp;

namespace {

struct Choice {
    char value[9];
    char stored[8];
};

// What stands for a value; nothing for an unknown one.
template <std::size_t count>
std::optional<std::string> choose(const Choice (&choices)[count], std::string_view value) {
    const Choice* choice = row_with(choices, &Choice::value, value);
    return choice != nullptr ? std::optional<std::string>(choice->stored) : std::nullopt;
}

std::optional<std::string> transmit_step(const char* value) {
    static constexpr Choice kSteps[] = {{"100", "0"}, {"50", "2"}, {"30", "3"}};
    return choose(kSteps, value);
}

std::optional<std::string> bandwidth_2g(const char* value) {
    static constexpr Choice kModes[] = {{"20M", "HT20"}, {"20MHz", "HT20"}, {"20", "HT20"},
                                        {"40M", "HT40"}, {"40MHz", "HT40"}, {"40", "HT40"}};
    return choose(kModes, value);
}

std::optional<std::string> bandwidth_5g(const char* value) {
    static constexpr Choice kWideModes[] = {{"80M", "HT80"},   {"80MHz", "HT80"},   {"80", "HT80"},
                                            {"160M", "HT160"}, {"160MHz", "HT160"}, {"160", "HT160"}};
    const auto mode = bandwidth_2g(value);
    return mode ? mode : choose(kWideModes, value);
}

int auto_channel(const GetArguments& get, const Radio& radio, Caller /*caller*/) {
    return get.answer(read_option(radio.at("channel")) == "0" ? "1" : "0");
}

// Discards what is staged beside the channel that was just written.
void revert_staged_channel(const Radio& radio) { uciRevert(formatted("wifi.%s.channel", radio.section).c_str()); }

int set_auto_channel(const SetArguments& set, const Radio& radio, Caller /*caller*/) {
    // Only a channel that is set ends the automatic choice.
    if (std::string_view(set.value()) != "1") return kDone;
    if (!write_leniently(radio.at("channel"), "0")) return kRefused;
    revert_staged_channel(radio);
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

int channel(const GetArguments& get, const Radio& radio, Caller caller) {
    const auto command =
        formatted("iwlist %s channel | grep Current | awk -F '=' '{print $2}'", interface_word(radio.main).c_str());
    const auto in_use = first_line({command.c_str(), kLongLine, "Failed to get  ChannelInUse\n"}, caller);
    if (in_use != "") return get.answer(in_use);
    return get.answer(read_reported(radio.at("channel"), "Failed to get  ChannelInConfig\n", caller));
}

bool is_supported_channel(const SetArguments& set, const Radio& radio) {
    std::string number = set.value();
    if (!all_digits(number)) return false;
    const int answer = radio_channels(set.op(), number.data(), set.locate(), radio.band);
    return answer != 0 && answer != -1;
}

int set_channel(const SetArguments& set, const Radio& radio, Caller caller) {
    if (!is_supported_channel(set, radio)) return refuse(caller, kError, "invalid channel number\n\n");
    const int result = option(set, {.at = radio.at("channel"), .apply = CWMP_APPLY_WIRELESS},
                              {.unwritten = "set channel error\n\n"}, caller);
    if (result == kDone) revert_staged_channel(radio);
    return result;
}

int transmit_power(const GetArguments& get, const Radio& radio, Caller caller) {
    static constexpr Choice kPercent[] = {{"0", "100"}, {"1", "50"}, {"2", "50"}, {"3", "30"}, {"4", "30"}};
    const auto percent = choose(kPercent, read_option(radio.at("tpscale")).value_or("0"));
    return percent ? get.answer(*percent) : refuse(caller, kError, "transmit power config value invalid\n");
}

int set_transmit_power(const SetArguments& set, const Radio& radio, Caller caller) {
    return option(set, {.at = radio.at("tpscale"), .accepts = transmit_step},
                  {.refused = " txpower value is not valid\n", .unwritten = " txpower set error\n"}, caller);
}

int bandwidth(const GetArguments& get, const Radio& radio, Caller caller) {
    const auto mode = read_reported(radio.device_at("htmode"), "get wifi  bandwidth error\n", caller);
    if (!mode) return kRefused;
    const auto width = mode->starts_with("HT") ? leading_decimal(mode->c_str() + 2) : std::nullopt;
    if (!width) return refuse(caller, kError, "sscanf wifi  bandwidth error\n");
    return get.answer(formatted("%dMHz", *width));
}

int set_bandwidth(const SetArguments& set, const Radio& radio, Caller caller) {
    return option(set,
                  {.at = radio.device_at("htmode"),
                   .accepts = &radio == &kRadio2G ? bandwidth_2g : bandwidth_5g,
                   .apply = CWMP_APPLY_WIRELESS_MODE},
                  {.refused = " bandwidth is not valid\n", .unwritten = " bandwidth set error\n"}, caller);
}

int standard(const GetArguments& get, const Radio& radio, Caller caller) {
    const auto failure = formatted("get %s ax_hwmode error\n", radio.section);
    return get.answer(read_reported(radio.at("ax_hwmode"), failure.c_str(), caller));
}

// Some parameters get the radio's number alone and hand the pair on.
void make_pair(int* locate) {
    locate[1] = locate[0];
    locate[0] = 1;
}

}  // namespace

PARAMETER(LANDevice_WLANConfiguration_AutoChannelEnable, of_radio, {auto_channel, set_auto_channel})
PARAMETER(LANDevice_WLANConfiguration_Channel, of_radio, {channel, set_channel})
PARAMETER(LANDevice_WLANConfiguration_X_QM_TransmitPowerSupported, constant, "25,50,100")
PARAMETER(LANDevice_WLANConfiguration_X_QM_TransmitPower, of_radio, {transmit_power, set_transmit_power})
PARAMETER(LANDevice_WLANConfiguration_X_QM_Bandwidth, of_radio, {bandwidth, set_bandwidth})
PARAMETER(LANDevice_WLANConfiguration_Standard, of_radio, {standard})

READ_ONLY(LANDevice_WLANConfiguration_ChannelsInUse) {
    make_pair(get.locate());
    initialize_interface_info(interface_info);
    if (interface_info->cpeType != CWMP_PLATFORM_QCAS && interface_info->cpeType != CWMP_PLATFORM_MTK) return kDone;
    char list[1024] = "";
    const int result = radio_channels(CWMP_OP_GET, list, get.locate(), 0);
    return result == kDone ? get.answer(list) : result;
}

READ_ONLY(LANDevice_WLANConfiguration_X_QM_FrequencyInuse) {
    constexpr long long kFactor = 9;  // on whole GHz: kept as it is
    make_pair(get.locate());
    const auto* radio = radio_by_number(get.locate()[1]);
    if (radio == nullptr) return kRefused;
    const bool is_2g = radio == &kRadio2G;
    const std::string interface = interface_word(radio->main);
    if (interface_info->cpeType != CWMP_PLATFORM_QCAS) return get.answer(is_2g ? "2.4Ghz" : "5Ghz");
    const std::string command =
        is_2g
            ? formatted("iwlist %s channel | grep 'Current Frequency' | awk '{print $2}' | awk -F ':' '{print $2}'",
                        interface.c_str())
            : formatted(R"(iwlist %s channel | grep "Current Frequency" | awk '{print $2}' | awk -F ":" '{print $2}')",
                        interface.c_str());
    const auto line = first_line({command.c_str(), kLongLine, "Failed to get  FrequencyInUse\n"});
    if (!line || line->empty()) return get.answer(line);
    return get.answer(formatted("%lldMHz", decimal_prefix(line->c_str()) * kFactor));
}

READ_ONLY(LANDevice_WLANConfiguration_Status) {
    const auto* radio = get.locate()[1] == 0 ? nullptr : radio_by_pair(get.locate());
    if (radio == nullptr) return kRefused;
    const auto command =
        formatted("ifconfig %s | sed '1d' | grep UP | awk '{print $1}'", interface_word(radio->main).c_str());
    const auto line = first_line({command.c_str(), kLongLine, "Failed to get  status of WLANConfiguration \n"});
    return line ? get.answer(*line == "UP" ? "Up" : "Disabled") : kRefused;
}

PARAMETER(LANDevice_WLANConfiguration_TotalBytesSent, radio_counter, "TotalBytesSent")
PARAMETER(LANDevice_WLANConfiguration_TotalBytesReceived, radio_counter, "TotalBytesReceived")
PARAMETER(LANDevice_WLANConfiguration_TotalPacketsSent, radio_counter, "TotalPacketsSent")
PARAMETER(LANDevice_WLANConfiguration_TotalPacketsReceived, radio_counter, "TotalPacketsReceived")
PARAMETER(LANDevice_WLANConfiguration_X_QM_TotalErrorsReceived, radio_counter, "TotalErrorsReceived")
PARAMETER(LANDevice_WLANConfiguration_X_QM_TotalErrorsSent, radio_counter, "TotalErrorsSent")
