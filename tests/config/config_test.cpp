// What rows cannot say of the store: lists of numbers, modes, a store that is read-only, any text.
#include <sys/mount.h>
#include <sys/stat.h>

#include "cwmp/instances.h"
#include "cwmp/logging.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

class Config : public RouterTest {
  protected:
    // A package with one rule for each number, among sections of another type; an empty one has no number.
    void rules(const Texts& numbers) {
        std::string text = "config other\n\toption id '5'\n";
        for (const auto& number : numbers)
            text +=
                "config rule\n" + (number.empty() ? "" : "\toption id '" + number + "'\n") + "config other\n";
        package("nat", text);
    }
    std::vector<int32_t> list(std::vector<int32_t> numbers) {
        FROM_LIBRARY(__getInstanceList)("nat", "rule", "id", numbers.data());
        return numbers;
    }
};

TEST_F(Config, InstanceNumbersAreListedInOrder) {
    EXPECT_THAT(list({99}), ElementsAre(99)) << "a missing package";
    EXPECT_EQ(told("call __getInstanceMax 'nat' 'rule'"), "0");
    rules({"7", "2", "-1", "12x", "2", "many"});
    EXPECT_THAT(list({9, 9, 9, 9, 9, 9, 99}), ElementsAre(-1, 0, 2, 2, 7, 12, 99));
    EXPECT_EQ(told("call __getInstanceMax 'nat' 'rule'"), "6");
    rules({"7", "", "3"});
    EXPECT_THAT(list({0, 5, 0}), ElementsAre(3, 5, 7)) << "a section without number leaves its entry";
}

// Any printable character may stand in a type, but for those that would end it in the file.
TEST_F(Config, TypesOfSections) {
    std::string refused;
    for (int c = 1; c < 256; ++c) {
        const std::string type = std::string("a") + static_cast<char>(c) + 'b';
        package("nat", "config kept 'kept'\n");
        if (FROM_LIBRARY(uciRawAddSectionBypath)("nat", "box", type.c_str(), nullptr) == 0) {
            EXPECT_EQ(option("nat.box"), type);
        } else if (c > ' ' && c <= '~') {
            refused += static_cast<char>(c);
        }
        EXPECT_EQ(option("nat.kept"), "kept") << type;
    }
    EXPECT_EQ(refused, "\"#';\\");
}

TEST_F(Config, TheLowestFreeNumberIsNext) {
    struct Row {
        Texts numbers;
        int capacity, next;
    };
    for (const Row& row : std::vector<Row>{{{}, 10, 1},
                                           {{"2", "3"}, 10, 1},
                                           {{"4", "1", "2"}, 10, 3},
                                           {{"1", "2", "3"}, 4, 4},
                                           {{"1", "2", "3"}, 3, 4},
                                           {{"1", "1"}, 10, 2},
                                           {{"1", "1", "2"}, 10, 3},
                                           {{"1", "", "2"}, 10, 1},
                                           {{"1", "2147483647"}, 10, 2},
                                           {{"0"}, 10, 1},
                                           {{"1"}, 0, 2},
                                           {{"1"}, -5, 2}}) {
        rules(row.numbers);
        EXPECT_EQ(FROM_LIBRARY(__getInstanceNext)("nat", "rule", "id", row.capacity), row.next)
            << ::testing::PrintToString(row.numbers) << " of " << row.capacity;
    }
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
            EXPECT_EQ(option("any.box.name", kScratch), value);
            EXPECT_EQ(FROM_LIBRARY(uciRawGetValue_tr069_config)("any", "box", "name", out.data()), 0);
            EXPECT_EQ(out.data(), value);
        }
    }
}

TEST_F(Config, AReadOnlyStoreLosesNothing) {
    if (mount("none", kLive, "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "this host allows no mount";
    world("custom.box:typed | custom.box.name=old");
    ASSERT_EQ(mount("none", kLive, "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    // The commit's result is not looked at.
    EXPECT_EQ(told("call uciRawSetValueByPath 'custom' 'box' 'name' 'new' null"), "0");
    EXPECT_EQ(told("call uciRawDelSectionBypath 'custom' 'box' 'type' null"), "0");
    EXPECT_EQ(told("call uciRawAddSectionBypath 'custom' 'box_2' 'typed' null"), "0");
    EXPECT_EQ(told("call uciRawAddSectionBypath 'other' 'box' 'typed' null"), "-1");
    EXPECT_EQ(told("set DeviceInfo_ProvisioningCode = x"), "nothing");
    ASSERT_EQ(umount(kLive), 0);
}

}  // namespace
