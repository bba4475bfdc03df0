#include <vector>

#include "cwmp/logging.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

constexpr const char* kPackage = R"(
config DeviceInfo 'box'
    option name 'value'
    list names 'one'
    list names 'two'
)";

class UciRead : public RouterTest {
  protected:
    struct Answer {
        int code;
        std::string text;
        bool operator==(const Answer&) const = default;
    };

    Answer read(const char* package_name, const char* section, const char* option_name,
                const char* directory = kLive) {
        std::vector<char> out(65536);
        std::string(kUntouched).copy(out.data(), out.size());
        const int code =
            FROM_LIBRARY(uciRawGetValueBypath)(package_name, section, option_name, out.data(), directory);
        return {code, out.data()};
    }
};

TEST_F(UciRead, EachCallReadsItsOwnDirectory) {
    for (const char* directory : {kLive, kScratch, kProfile})
        package("custom", "config a 'box'\n\toption name '" + std::string(directory) + "'\n", directory);
    char out[64] = "";
    EXPECT_EQ(FROM_LIBRARY(uciRawGetValue)("custom", "box", "name", out), 0);
    EXPECT_STREQ(out, kLive);
    EXPECT_EQ(FROM_LIBRARY(uciRawGetValue_tr069_config)("custom", "box", "name", out), 0);
    EXPECT_STREQ(out, kScratch);
    EXPECT_EQ(FROM_LIBRARY(uciRawGetValueBypath)("custom", "box", "name", out, kProfile), 0);
    EXPECT_STREQ(out, kProfile);
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(UciRead, RefusalsLeaveTheBufferAndSayWhatIsMissing) {
    package("custom", kPackage);
    package("broken", "config a 'box'\n\toption 'name\n\toption x\nnonsense here\n");
    const Texts nothing;
    const Texts no_package = {"uciRawGetValueBypath: Fail to load uci package.\n\n"};
    const Texts no_section = {"uciRawGetValueBypath: Can't find specified section by name(ap).\n\n"};
    struct Row {
        const char *package, *section, *option, *directory;
        Texts events;
    };
    const std::vector<Row> rows = {
        {"custom", "box", "names", kLive, nothing},  // a list
        {"custom", "box", "other", kLive, nothing},   {"custom", "other", "name", kLive, no_section},
        {"custom", "", "name", kLive, no_section},    {"missing", "box", "name", kLive, no_package},
        {"broken", "box", "name", kLive, no_package}, {"custom", "box", "name", kScratch, no_package},
        {"", "box", "name", kLive, no_package},       {"../custom", "box", "name", kProfile, no_package},
        {nullptr, "box", "name", kLive, nothing},     {"custom", nullptr, "name", kLive, nothing},
        {"custom", "box", nullptr, kLive, nothing}};
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.package) + " " + ::testing::PrintToString(row.section));
        forget();
        EXPECT_EQ(read(row.package, row.section, row.option, row.directory), (Answer{-1, kUntouched}));
        EXPECT_EQ(console(), row.events);
    }
    EXPECT_EQ(FROM_LIBRARY(uciRawGetValue)("custom", "box", "name", nullptr), -1);
    EXPECT_EQ(read("custom", "box", "name"), (Answer{0, "value"}));
}

TEST_F(UciRead, AnyTextComesBackWhole) {
    std::string bytes;
    for (int byte = 32; byte < 256; ++byte) bytes += static_cast<char>(byte);
    FROM_LIBRARY(l_dbglvl) = 0;  // a console line would show the value to a shell
    for (const std::string& value :
         {std::string("plain"), std::string(" a  b "), std::string("it's \"quoted\" \\ back"),
          std::string("two\nlines\n"), std::string("\t\r\x7f"), std::string("Z\xC3\xBCrich \xE2\x82\xAC"),
          std::string("%s%n%d"), std::string("# $(reboot) `x` ; | &"), bytes, std::string(5000, 'v'),
          std::string(60000, '\'')}) {
        SCOPED_TRACE(value.substr(0, 40));
        EXPECT_EQ(FROM_LIBRARY(uciRawSetValueByPath)("any", "box", "name", value.c_str(), kScratch), 0);
        EXPECT_EQ(option("any.box.name", kScratch), value);
        EXPECT_EQ(read("any", "box", "name", kScratch), (Answer{0, value}));
        EXPECT_EQ(FROM_LIBRARY(uciRawSetValueByPath)("any", "box", "other", "1", kScratch), 0);
        EXPECT_EQ(read("any", "box", "name", kScratch), (Answer{0, value})) << "after another write";
    }
}

}  // namespace
