#include <filesystem>

#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

constexpr const char* kOpenCopy = "/tmp/cwmp-config";
constexpr const char* kProtectedCopy = "/tmp/cwmp-config-force";
constexpr const char* kList = "/etc/profile.d/cwmp-config-force";

class Mirror : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        package("cwmp", "config info 'info'\n\toption url 'old'\n");
        package("network", "config interface 'lan'\n");
        profile("cwmp_settings.isp_reset", "yes");
    }
    void protect(const std::string& lines) { file(kList, "config cwmp\n" + lines); }

    static bool in_copy(const std::string& directory) { return exists(directory + "/cwmp"); }
};

TEST_F(Mirror, GoesToTheCopyThatTheProtectedListNames) {
    struct Row {
        std::string entry;
        bool is_protected;
    };
    for (const Row& row : {Row{"cwmp", true}, Row{"cwmp.info", true}, Row{"cwmp.info.url", true},
                           Row{"cwmp.info.user", false}, Row{"cwmp.other", false}, Row{"cwm", false},
                           Row{"cwmp.info.url.x", false}, Row{"network", false}, Row{"info", false}}) {
        SCOPED_TRACE(row.entry);
        std::filesystem::remove_all(kOpenCopy);
        std::filesystem::remove_all(kProtectedCopy);
        protect("    list cfg '" + row.entry + "'\n");
        EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("cwmp", "info", "url", "new"), 0);
        EXPECT_EQ(option("cwmp.info.url"), "new");
        EXPECT_EQ(option("cwmp.info.url", row.is_protected ? kProtectedCopy : kOpenCopy), "new");
        EXPECT_FALSE(in_copy(row.is_protected ? kOpenCopy : kProtectedCopy));
    }
}

TEST_F(Mirror, RepeatsAddsAndDeletesUnderTheirType) {
    protect("    list cfg 'cwmp.box.typed'\n");
    EXPECT_EQ(FROM_LIBRARY(uciRawAddSection)("cwmp", "box", "typed"), 0);
    EXPECT_EQ(FROM_LIBRARY(uciRawAddSection)("cwmp", "free", "typed"), 0);
    EXPECT_EQ(section_type("cwmp.box"), "typed");
    EXPECT_EQ(section_type("cwmp.box", kProtectedCopy), "typed");
    EXPECT_EQ(section_type("cwmp.free", kOpenCopy), "typed");
    EXPECT_EQ(section_type("cwmp.free", kProtectedCopy), std::nullopt);
    EXPECT_EQ(FROM_LIBRARY(uciRawDelSection)("cwmp", "box", "typed"), 0);
    EXPECT_EQ(section_type("cwmp.box"), std::nullopt);
    EXPECT_EQ(section_type("cwmp.box", kProtectedCopy), std::nullopt);
    EXPECT_EQ(section_type("cwmp.free", kOpenCopy), "typed");
}

TEST_F(Mirror, SaysWhatItDoes) {
    protect("    list cfg 'cwmp.info'\n");
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("cwmp", "info", "url", "x"), 0);
    EXPECT_THAT(console(),
                ElementsAre("uciRawSetValue: set userconfig first\n\n",
                            "uciRawSetValueByPath: uci set By path cwmp.info.url=x.\n\n",
                            "uciRawSetValueByPath: Do not set the path.\n\n",
                            "uciRawSetValue: save set to backup field\n\n",
                            "IsOptionAllowToChange: match cfg[cwmp.info]\n\n",
                            "uciRawSetValue: !!!!!!!! cwmp config, save to config\n\n",
                            "uciRawSetValue: allow chage:0\n\n",
                            "uciRawSetValueByPath: uci set By path cwmp.info.url=x.\n\n",
                            "uciRawSetValueByPath: file name is :/tmp/cwmp-config-force/cwmp\n\n",
                            "uciRawSetValueByPath: path /tmp/cwmp-config-force is not exsit,make new one.\n",
                            "uciRawSetValueByPath: file is not exist,crate one!\n\n",
                            "uciRawSetValueByPath: set fail, try to add section\n"));
    forget();
    EXPECT_EQ(FROM_LIBRARY(uciRawDelSection)("network", "lan", "interface"), 0);
    EXPECT_THAT(console(),
                ElementsAre("uciRawDelSection: set userconfig first\n\n",
                            "uciRawDelSection: save set to backup field\n\n",
                            "uciRawDelSection: !!!!!!!! not the cwmp config, do not save to config\n\n"));
    forget();
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("missing", "a", "b", "c"), -1);
    EXPECT_EQ(console().back(), "uciRawSetValue: set usrconfig failed\n\n");
}

TEST_F(Mirror, OtherPackagesAndOtherProfilesWriteTheLiveStoreOnly) {
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("network", "lan", "mtu", "1400"), 0);
    EXPECT_EQ(option("network.lan.mtu"), "1400");
    profile("cwmp_settings.isp_reset", "no");
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("cwmp", "info", "url", "new"), 0);
    EXPECT_EQ(FROM_LIBRARY(uciRawAddSection)("cwmp", "box", "typed"), 0);
    EXPECT_EQ(FROM_LIBRARY(uciRawDelSection)("cwmp", "box", "typed"), 0);
    EXPECT_EQ(option("cwmp.info.url"), "new");
    EXPECT_FALSE(exists(kOpenCopy));
    EXPECT_FALSE(exists(kProtectedCopy));
    EXPECT_EQ(FROM_LIBRARY(save_to_cwmp_config)(), 0);
}

TEST_F(Mirror, ACopyThatCannotBeWrittenFailsTheCall) {
    file(kOpenCopy, "no directory");
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("cwmp", "info", "url", "new"), -1);
    EXPECT_EQ(option("cwmp.info.url"), "new");
}

TEST_F(Mirror, ProfileSwitch) {
    struct Row {
        std::string text;
        int on;
        Texts events;
    };
    const std::string section = "config a 'cwmp_settings'\n";
    const std::vector<Row> rows = {
        {section + "\toption isp_reset 'yes'\n", 1, {}},
        {section + "\toption isp_reset 'yesterday'\n", 1, {}},
        {section + "\toption isp_reset 'ye'\n", 0, {}},
        {section + "\toption isp_reset 'Yes'\n", 0, {}},
        {section + "\toption isp_reset 'no'\n", 0, {}},
        {section + "\tlist isp_reset 'yes'\n", 0, {}},
        {section, 0, {}},
        {"config a 'other'\n", 0, {"is_support_isp_reset: Fail to uci_lookup_ptr.\n"}},
        {"nonsense 'a\n", 0, {"is_support_isp_reset: Fail to uci_load.\n"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        forget();
        package("profile", row.text, kProfile);
        EXPECT_EQ(FROM_LIBRARY(is_support_isp_reset)(), row.on);
        EXPECT_EQ(console(), row.events);
    }
    std::filesystem::remove("/etc/profile.d/profile");
    EXPECT_EQ(FROM_LIBRARY(is_support_isp_reset)(), 0);
}

TEST_F(Mirror, OnlyLinesOfFourBlanksAndAQuotedEntryProtect) {
    auto& allowed = FROM_LIBRARY(IsOptionAllowToChange);
    EXPECT_EQ(allowed("cwmp", "info", "url"), 1);
    EXPECT_THAT(console(),
                ElementsAre("IsOptionAllowToChange: open /etc/profile.d/cwmp-config-force fail\n\n"));
    struct Row {
        std::string lines;
        int allowed;
    };
    const std::string word(100, 'w');
    const std::vector<Row> rows = {{"    list cfg 'cwmp.info'\n", 0},
                                   {"    list cfg 'cwmp.info'", 0},
                                   {"    list cfg   'cwmp.info' # why\n", 0},
                                   {"    list cfg 'a'\n    list cfg 'b'\n    list cfg 'cwmp'\n", 0},
                                   {"\tlist cfg 'cwmp.info'\n", 1},
                                   {"   list cfg 'cwmp.info'\n", 1},
                                   {"     list cfg 'cwmp.info'\n", 1},
                                   {"list cfg 'cwmp.info'\n", 1},
                                   {"    option cfg 'cwmp.info'\n", 1},
                                   {"    list cfg cwmp.info\n", 1},
                                   {"    list cfg \"cwmp.info\"\n", 1},
                                   {"    list cfg 'cwmp.info\n", 1},
                                   {"    list cfg ''\n", 1},
                                   {"    list cfg 'x' 'cwmp.info'\n", 1},
                                   {std::string(5000, ' ') + "\n    list cfg 'cwmp.info'\n", 0},
                                   {"", 1}};
    for (const Row& row : rows) {
        protect(row.lines);
        EXPECT_EQ(allowed("cwmp", "info", "url"), row.allowed) << row.lines;
    }
    protect("    list cfg 'cwmp." + word + "'\n");
    EXPECT_EQ(allowed("cwmp", word.c_str(), "url"), 0);
    EXPECT_EQ(allowed("cwmp", std::string(5000, 'x').c_str(), "url"), 1);
    EXPECT_EQ(allowed(nullptr, "info", "url"), 1);
    EXPECT_EQ(allowed("cwmp", nullptr, "url"), 1);
    EXPECT_EQ(allowed("cwmp", "info", nullptr), 1);
}

TEST_F(Mirror, AStagedLiveChangeStaysOutOfTheSideCopies) {
    package("cwmp", "config info 'info'\n", kOpenCopy);
    package("cwmp", "cwmp.info.staged='by somebody else'\n", "/tmp/.uci");
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValueByPath)("cwmp", "info", "url", "x", kOpenCopy), 0);
    EXPECT_EQ(option("cwmp.info.url", kOpenCopy), "x");
    EXPECT_EQ(option("cwmp.info.staged", kOpenCopy), std::nullopt);
    EXPECT_TRUE(exists("/tmp/.uci/cwmp")) << "the live package's change is still staged";
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue)("cwmp", "info", "url", "y"), 0);
    EXPECT_EQ(option("cwmp.info.staged"), "by somebody else");
    EXPECT_EQ(option("cwmp.info.staged", kOpenCopy), std::nullopt);
}

}  // namespace
