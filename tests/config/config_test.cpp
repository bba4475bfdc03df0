// What rows cannot say of the store: lists of numbers, any text, a store that is read-only or in somebody's hands.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "cwmp/instances.h"
#include "cwmp/logging.h"
#include "cwmp/revert_journal.h"
#include "cwmp/transaction.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

using ::testing::StartsWith;

namespace {

namespace fs = std::filesystem;

class Config : public RouterTest {
  protected:
    std::vector<int32_t> list(std::vector<int32_t> numbers) {
        FROM_LIBRARY(__getInstanceList)("nat", "rule", "id", numbers.data());
        return numbers;
    }
};

TEST_F(Config, InstanceNumbersAreListedInOrder) {
    EXPECT_THAT(list({99}), ElementsAre(99)) << "a missing package";
    world("nat.{a,b,c,d,e,f}:rule | nat.z:other | nat.z.id=5 | nat.{c,f}.id=2");
    world("nat.a.id=7 | nat.b.id=many | nat.d.id=12x | nat.e.id=-1");
    EXPECT_THAT(list({9, 9, 9, 9, 9, 9, 99}), ElementsAre(-1, 0, 2, 2, 7, 12, 99));
    EXPECT_EQ(told("call __getInstanceMax 'nat' 'rule'"), "6");
    world("-nat.a | -nat.d | -nat.e | -nat.b.id");
    EXPECT_THAT(list({8, 1, 1}), ElementsAre(2, 2, 8)) << "a section without number leaves its entry";
}

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

// The commit's result is not looked at.
TEST_F(Config, AReadOnlyStoreLosesNothing) {
    if (mount("none", kLive, "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "this host allows no mount";
    world("custom.box.name=old | nat.nat:nat");
    world("hear cannot");
    ASSERT_EQ(mount("none", kLive, "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(told("call uciRawSetValueByPath 'custom' 'box' 'name' 'new' null"),
              "0 | ! package custom cannot be stored, it stays as it was");
    EXPECT_EQ(told("call uciRawAddSectionBypath 'other' 'box' 'typed' null"), "-1");
    EXPECT_THAT(told("add NAT_PortMapping"), StartsWith("1 | ! WANDevice")) << "changes that belong together";
    ASSERT_EQ(umount(kLive), 0);
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
    EXPECT_THAT(told("add NAT_PortMapping"), StartsWith("1 | ! WANDevice")) << "nor is an instance added meanwhile";
    later.join();
    close(held);
}

}  // namespace
