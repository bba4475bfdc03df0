#include "cwmp/value_checks.h"

#include <arpa/inet.h>

#include "router_test.h"
#include "rows.h"

namespace {

class ValueChecks : public RouterTest {};

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

TEST_F(ValueChecks, AddressesAreAsTheSystemReadsThem) {
    auto& canonical = FROM_LIBRARY(checkValidIP);
    auto& dotted = FROM_LIBRARY(libutil_netChkDotIpAddr);
    for_each_text({"0", "1", "255", "256", "01", ".", " "}, 7, [&](const std::string& text) {
        ASSERT_EQ(canonical(text.c_str()), is_canonical(text)) << text;
        ASSERT_EQ(dotted(text.c_str()), is_four_small_numbers(text)) << text;
    });
    for (const char* text : {"1.2.3.-1", "1.2.3.a", "1.2.3.99999999999", "1.2.3.4294967297", "1.2.3.+1"}) {
        EXPECT_EQ(canonical(text), 0) << text;
        EXPECT_EQ(dotted(text), 0) << text;
    }
}

TEST_F(ValueChecks, AssertionsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "fast");
    for (const char* call : {"call libutil_netChkDotIpAddr null", "call libutil_netChkStrMacAddr null",
                             "call libutil_netChkLegalMacAddr null"})
        EXPECT_DEATH(told(call), "libutil") << call;
    EXPECT_DEATH(told("call libutil_netChkSameSubnet '1.1.1.1' null '1.1.1.1' null"),
                 "\\(pStrTestIp != NULL\\) && \\(pStrIp != NULL\\) && \\(pStrMask != NULL\\)");
    EXPECT_DEATH(told("text libutil_strncpy null 'x' 4"), "\\(dst != NULL\\) && \\(src != NULL\\)");
    EXPECT_DEATH(told("text libutil_strncpy ?4 'x' 0"), "n > 0");
}

}  // namespace
