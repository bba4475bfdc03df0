#include "cwmp/platform.h"

#include <climits>

#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

constexpr const char* kDevices =
    R"(Inter-|   Receive                                                |  Transmit
 face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop fifo colls carrier compressed
  eth0: 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115 116
  ath0: 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215 216
ath0.1: 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315 316
  ath1: 18446744073709551 402 -3 4x4 405 406 407 408 409 410 411 412 413 414 415 416
pppoe-internet: 501 502 503 504 505 506 507 508 509 510 511 512 513 514 515 516
  eth2: 601 602
)";

class TrafficCounters : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        file("/proc/net/dev", kDevices);
    }

    Result count(const char* const (&names)[3], Locate locate, const char* counter, int op = CWMP_OP_GET) {
        std::string buffer(64, '\0');
        buffer.replace(0, std::string(kUntouched).size(), kUntouched);
        Result result;
        result.code = dispatch(&FROM_LIBRARY(get_TotalBytesAndPackets_by_name), op, names, counter,
                               locate.data(), buffer.data());
        result.value = buffer.c_str();
        return result;
    }
    std::string bytes_of(const char* name) {
        const char* const names[3] = {name, "", ""};
        return count(names, {1, 0}, "TotalBytesReceived").value;
    }

  private:
    static int dispatch(decltype(::get_TotalBytesAndPackets_by_name)* probe, int op,
                        const char* const (&names)[3], const char* counter, ...) {
        va_list args;
        va_start(args, counter);
        const int code = probe(op, args, names, counter);
        va_end(args);
        return code;
    }
};

TEST_F(TrafficCounters, EachNameIsOneColumn) {
    struct Row {
        const char *counter, *eth0, *pppoe;
    };
    const char* const names[3] = {"eth0", "pppoe-internet", "eth2"};
    for (const Row& row :
         {Row{"TotalBytesReceived", "101", "501"}, Row{"TotalPacketsReceived", "102", "502"},
          Row{"TotalErrorsReceived", "103", "503"}, Row{"DiscardPacketsReceived", "104", "504"},
          Row{"TotalBytesSent", "109", "509"}, Row{"TotalPacketsSent", "110", "510"},
          Row{"TotalErrorsSent", "111", "511"}, Row{"DiscardPacketsSent", "112", "512"}}) {
        SCOPED_TRACE(row.counter);
        EXPECT_EQ(count(names, {1, 1}, row.counter).value, row.eth0);
        EXPECT_EQ(count(names, {1, 2}, row.counter).value, row.pppoe);
        EXPECT_EQ(count(names, {1, 3}, row.counter).code, 0);
    }
    EXPECT_EQ(count(names, {1, 3}, "TotalPacketsReceived").value, "602");
    EXPECT_EQ(count(names, {1, 3}, "TotalErrorsReceived").value, "0");
}

TEST_F(TrafficCounters, InstanceNumbersChooseTheInterface) {
    const char* const names[3] = {"eth0", "ath1", nullptr};
    struct Row {
        Locate locate;
        const char* packets;
    };
    for (const Row& row : {Row{{1, 1}, "102"}, Row{{1, 2}, "402"}, Row{{1, 3}, "0"}, Row{{1, 0}, "102"},
                           Row{{2, 0}, "402"}, Row{{3, 0}, "0"}, Row{{2, 1}, "0"}, Row{{0, 1}, "0"},
                           Row{{0, 0}, "0"}, Row{{4, 0}, "0"}, Row{{1, 4}, "0"}, Row{{1, -1}, "0"},
                           Row{{-1, 0}, "0"}, Row{{INT_MAX, 0}, "0"}, Row{{1, INT_MIN}, "0"}}) {
        SCOPED_TRACE(::testing::PrintToString(row.locate));
        const Result result = count(names, row.locate, "TotalPacketsReceived");
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.value, row.packets);
    }
}

TEST_F(TrafficCounters, RadiosHaveTheProfilesNamesAndNotTheirSubInterfaces) {
    EXPECT_EQ(bytes_of("wifi0"), "201");
    EXPECT_EQ(bytes_of("ath0"), "301") << "the last line with the name counts";
    EXPECT_EQ(bytes_of("wifi1"), "18446744073709551");
    profile("interfaceinfo.wifi_2_4G", "eth0");
    profile("interfaceinfo.wifi_5G", "ath0");
    EXPECT_EQ(bytes_of("wifi0"), "101");
    EXPECT_EQ(bytes_of("wifi1"), "201");
}

TEST_F(TrafficCounters, AnythingButDigitsReadsZero) {
    const char* const names[3] = {"ath1", "none", ""};
    EXPECT_EQ(count(names, {1, 1}, "TotalErrorsReceived").value, "0");
    EXPECT_EQ(count(names, {1, 1}, "DiscardPacketsReceived").value, "0");
    EXPECT_EQ(count(names, {1, 2}, "TotalBytesReceived").value, "0");
    for (const std::string& text :
         {std::string(), std::string("eth0"), std::string("eth0:\n"), "eth0: " + std::string(5000, '9'),
          std::string("eth0: %s%n \xff\n"), std::string(400, 'x') + "eth0"}) {
        file("/proc/net/dev", text);
        EXPECT_THAT(bytes_of("eth0"), ::testing::MatchesRegex("[0-9]{1,19}")) << text.substr(0, 30);
    }
    EXPECT_EQ(count(names, {1, 1}, "TotalBytesReceived").value, "0");
}

TEST_F(TrafficCounters, Refusals) {
    const char* const names[3] = {"eth0", "", ""};
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY})
        EXPECT_EQ(count(names, {1, 1}, "TotalBytesReceived", op).code, -1);
    EXPECT_EQ(console(), Texts(3, "get_TotalBytesAndPackets_by_name: error set Bytes and Packets !\n"));
    EXPECT_THAT(commands(), IsEmpty());
    forget();
    const Result unknown = count(names, {1, 1}, "TotalBytes");
    EXPECT_EQ(unknown.code, -1);
    EXPECT_EQ(unknown.value, kUntouched);
    EXPECT_THAT(console(), ElementsAre("get_TotalBytesAndPackets_by_name: error get Bytes and Packets !\n"));
    EXPECT_THAT(commands(), ElementsAre("cat /proc/net/dev"));
    forget();
    {
        const NoFreeDescriptor none;
        EXPECT_EQ(count(names, {1, 1}, "TotalBytesReceived").code, -1);
    }
    EXPECT_THAT(console(),
                ElementsAre("get_TotalBytesAndPackets_by_name: Failed to get TotableBytesReceived\n"));
}

}  // namespace
