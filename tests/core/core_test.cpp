// What rows cannot say: a listener, assertions, and checks against an oracle.
#include <arpa/inet.h>

#include <algorithm>

#include "cwmp/logging.h"
#include "cwmp/value_checks.h"
#include "router_test.h"
#include "rows.h"

namespace {

using Core = RouterTest;

TEST_F(Core, AListenerIsToldEveryEvent) {
    static std::string heard;
    level(-1);
    const auto listen = FROM_LIBRARY(cwmp_listen);
    listen([](int, const char* line) { heard += line; });
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "7");
    listen(nullptr);
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "8");
    EXPECT_THAT(heard, testing::EndsWith("]  txpower value is not valid\n"));
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(Core, ACallThatChangesSomethingEndsABulkRead) {
    world("+nat. | +custom.");
    for (const char* change :
         {"set DeviceInfo_ProvisioningCode = x", "stage IP_Interface_IPv4Address_IPAddress 1.1 = 192.168.1.1",
          "check XMPP_Connection_Password 1 = x", "add NAT_PortMapping", "delete NAT_PortMapping = 1",
          "apply func_obj_revert", "call lan_check", "do libdiagnostics_startTraceRoute",
          "call uciRawSetValue 'custom' 'DeviceInfo' 'ProvisioningCode' 'y'", "call uciRevert 'custom'"}) {
        told("do cwmp_bulk_read_begin");
        told("get DeviceInfo_ModelName");
        told(change);
        EXPECT_THAT(told("get DeviceInfo_ModelName"), HasSubstr("$ fwinfo MODEL")) << change;
    }
}

// Every text of up to count tokens.
void for_each_text(const Texts& tokens, int count, const std::function<void(const std::string&)>& check,
                   const std::string& start = "") {
    check(start);
    for (const auto& token : tokens)
        if (count > 0) for_each_text(tokens, count - 1, check, start + token);
}

// The system writes a number without leading zeros and reads it so.
bool is_canonical(const std::string& text) {
    in_addr address = {};
    return inet_pton(AF_INET, text.c_str(), &address) == 1 && text == inet_ntoa(address);
}

bool is_four_small_numbers(const std::string& text) {
    const Texts parts = rows::split(text + ".", ".");
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
               return !part.empty() && part.find_first_not_of("0123456789") == part.npos &&
                      std::stol("0" + part.substr(0, 9)) <= 255;
           });
}

TEST_F(Core, AddressesAreAsTheSystemReadsThem) {
    auto& canonical = FROM_LIBRARY(checkValidIP);
    auto& dotted = FROM_LIBRARY(libutil_netChkDotIpAddr);
    const auto check = [&](const std::string& text) {
        ASSERT_EQ(canonical(text.c_str()), is_canonical(text)) << text;
        ASSERT_EQ(dotted(text.c_str()), is_four_small_numbers(text)) << text;
    };
    for_each_text({"0", "1", "255", "256", "01", ".", " "}, 7, check);
    for (const char* end : {"-1", "a", "99999999999", "4294967297", "+1"}) check(std::string("1.2.3.") + end);
}

TEST_F(Core, WhatACallerMustNotPassEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "fast");
    for (const auto& [call, assertion] :
         {std::pair{"call libutil_netChkDotIpAddr null", "libutil"},
          {"call libutil_netChkStrMacAddr null", "libutil"},
          {"call libutil_netChkLegalMacAddr null", "libutil"},
          {"call libutil_netChkSameSubnet '1.1.1.1' null '1.1.1.1' null",
           "\\(pStrTestIp != NULL\\) && \\(pStrIp != NULL\\) && \\(pStrMask != NULL\\)"},
          {"text libutil_strncpy null 'x' 4", "\\(dst != NULL\\) && \\(src != NULL\\)"},
          {"text libutil_strncpy ?4 'x' 0", "n > 0"},
          {"call msg_init null", "os_msgLinux: .*pMsgFd != NULL"},
          {"call msg_send ?300 null", "\\(pMsgFd != NULL\\) && \\(pMsgBuff != NULL\\)"}})
        EXPECT_DEATH(told(call), assertion) << call;
}

}  // namespace
