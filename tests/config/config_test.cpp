// What rows cannot say of the store: any text, a store in somebody's hands.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "cwmp/logging.h"
#include "cwmp/transaction.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

class Config : public RouterTest {};

TEST_F(Config, AnyTextComesBackWhole) {
    std::string bytes;
    for (int byte = 32; byte < 256; ++byte) bytes += static_cast<char>(byte);
    FROM_LIBRARY(l_dbglvl) = 0;  // a console line would show the value to a shell
    for (const std::string& value :
         {std::string(" a  b "), std::string("it's \"quoted\" \\ back"), std::string("\ttwo\nlines\r\n"),
          std::string("%s%n # $(reboot) `x` ; | &"), bytes, std::string(60000, '\'')}) {
        std::vector<char> out(65536);
        for (const char* other : {"1", "2"}) {  // after another write, too
            EXPECT_EQ(FROM_LIBRARY(uciRawSetValue_tr069_config)("any", "box", "name", value.c_str()), 0);
            EXPECT_EQ(FROM_LIBRARY(uciRawSetValue_tr069_config)("any", "box", "other", other), 0);
            EXPECT_EQ(option("tr069/any.box.name"), value);
            EXPECT_EQ(FROM_LIBRARY(uciRawGetValue_tr069_config)("any", "box", "name", out.data()), 0);
            EXPECT_EQ(out.data(), value);
        }
    }
}

TEST_F(Config, ATransactionOfSomebodyElseIsWaitedForAsLongAsAsked) {
    EXPECT_EQ(told("call cwmp_transaction_begin 0"), "0 | /tmp/tr069/.transaction=cwmp-transaction 1\\n");
    told("call cwmp_transaction_end 1 null");
    const int held = open(CWMP_TRANSACTION_NOTES, O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(told("call cwmp_transaction_begin 100"), "-1");
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GT(waited, std::chrono::milliseconds(90));
    EXPECT_LT(waited, std::chrono::seconds(20));
    world("custom.box.name=old | nat.nat:nat");
    std::thread later([this] {
        usleep(100'000);
        world("later 31");
    });
    EXPECT_THAT(told("add NAT_PortMapping"), testing::StartsWith("1 | ! WANDevice"))
        << "nor is an instance added meanwhile";
    later.join();
    close(held);
}

}  // namespace
