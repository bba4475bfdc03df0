#include <sys/mount.h>
#include <sys/stat.h>

#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

class UciWrite : public RouterTest {
  protected:
    int write(const char* package_name, const char* section, const char* option_name, const char* value,
              const char* directory = nullptr) {
        return FROM_LIBRARY(uciRawSetValueByPath)(package_name, section, option_name, value, directory);
    }
    int add(const char* package_name, const char* section, const char* type,
            const char* directory = nullptr) {
        return FROM_LIBRARY(uciRawAddSectionBypath)(package_name, section, type, directory);
    }
    int remove(const char* package_name, const char* section, const char* directory = nullptr) {
        return FROM_LIBRARY(uciRawDelSectionBypath)(package_name, section, "type", directory);
    }
    static Texts named(const std::string& function, const Texts& events) {
        Texts lines;
        for (const auto& event : events) lines.push_back(function + ": " + event);
        return lines;
    }
    static mode_t mode_of(const std::string& path) {
        struct stat status = {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
};

TEST_F(UciWrite, CreatesDirectoryFileAndSection) {
    umask(077);
    EXPECT_EQ(FROM_LIBRARY(uciRawSetValue_tr069_config)("hosts", "host_1", "name", "x"), 0);
    EXPECT_EQ(option("hosts.host_1.name", kScratch), "x");
    EXPECT_EQ(section_type("hosts.host_1", kScratch), "host_1");
    EXPECT_EQ(mode_of(kScratch), 0775U);
    EXPECT_EQ(console(),
              named("uciRawSetValueByPath",
                    {"uci set By path hosts.host_1.name=x.\n\n", "file name is :/tmp/tr069/hosts\n\n",
                     "path /tmp/tr069 is not exsit,make new one.\n", "file is not exist,crate one!\n\n",
                     "set fail, try to add section\n"}));
    forget();
    EXPECT_EQ(write("hosts", "host_1", "name", "y", kScratch), 0);
    EXPECT_EQ(option("hosts.host_1.name", kScratch), "y");
    EXPECT_EQ(console(), named("uciRawSetValueByPath", {"uci set By path hosts.host_1.name=y.\n\n",
                                                        "file name is :/tmp/tr069/hosts\n\n"}));
}

TEST_F(UciWrite, LivePackagesMustExist) {
    EXPECT_EQ(write("custom", "box", "name", "x"), -1);
    EXPECT_FALSE(exists("/etc/config/custom"));
    EXPECT_EQ(console(), named("uciRawSetValueByPath", {"uci set By path custom.box.name=x.\n\n",
                                                        "Do not set the path.\n\n", "uci_load error!\n"}));
    package("custom", "");
    EXPECT_EQ(write("custom", "box", "name", "x"), 0);
    EXPECT_EQ(option("custom.box.name"), "x");
}

TEST_F(UciWrite, ChangesOneOptionAndKeepsTheRest) {
    package("custom",
            "config typed 'box'\n\toption name 'old'\n\tlist many 'a'\n\nconfig x\n\toption y 'z'\n");
    EXPECT_EQ(write("custom", "box", "name", "new"), 0);
    EXPECT_EQ(write("custom", "box", "many", "text"), 0);
    EXPECT_EQ(option("custom.box.name"), "new");
    EXPECT_EQ(option("custom.box.many"), "text");
    EXPECT_EQ(option("custom.@x[0].y"), "z");
    EXPECT_EQ(section_type("custom.box"), "typed");
}

TEST_F(UciWrite, EmptyValueDeletesTheOption) {
    package("custom", "config typed 'box'\n\toption name 'old'\n\toption other '1'\n");
    EXPECT_EQ(write("custom", "box", "name", ""), 0);
    EXPECT_EQ(option("custom.box.name"), std::nullopt);
    EXPECT_EQ(option("custom.box.other"), "1");
    const auto before = text_of("/etc/config/custom");
    EXPECT_EQ(write("custom", "box", "name", ""), 0);
    EXPECT_EQ(write("custom", "new_box", "name", ""), 0);
    EXPECT_EQ(text_of("/etc/config/custom"), before);
}

TEST_F(UciWrite, RefusesWhatTheStoreCannotHold) {
    package("custom", "config typed 'box'\n\toption name 'old'\n");
    package("broken", "config a 'box'\n\toption x\nnonsense here\n");
    file("/tmp/plain", "no directory");
    const auto custom = text_of("/etc/config/custom");
    const auto broken = text_of("/etc/config/broken");
    struct Row {
        const char *package, *section, *option, *directory;
        std::string last_event;
    };
    const std::vector<Row> rows = {
        {nullptr, "box", "name", nullptr, "uci set By path Invalid parameter.\n\n"},
        {"custom", nullptr, "name", nullptr, "uci set By path Invalid parameter.\n\n"},
        {"custom", "box", nullptr, nullptr, "uci set By path Invalid parameter.\n\n"},
        {"broken", "box", "name", nullptr, "uci_load error!\n"},
        {"custom", "a.b", "name", nullptr, "fail to add section  custom.a.b, ret:2 \n\n"},
        {"custom", "a b", "name", nullptr, "fail to add section  custom.a b, ret:2 \n\n"},
        {"custom", "", "name", nullptr, "fail to add section  custom., ret:2 \n\n"},
        {"custom", "new", "a b", nullptr, "fail to set ptr custom.new.a b=v (ret:2)\n\n"},
        {"custom", "box", "name", "/tmp/a/b", "path /tmp/a/b is not exsit,make falied\n"},
        {"custom", "box", "name", "/tmp/plain", "create file /tmp/plain/custom failed!\n\n"},
        {"../custom", "box", "name", kScratch, "uci_load error!\n"},
        {"", "box", "name", kScratch, "uci_load error!\n"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.last_event);
        forget();
        EXPECT_EQ(write(row.package, row.section, row.option, "v", row.directory), -1);
        ASSERT_FALSE(console().empty());
        EXPECT_EQ(console().back(), "uciRawSetValueByPath: " + row.last_event);
        EXPECT_EQ(text_of("/etc/config/custom"), custom);
        EXPECT_EQ(text_of("/etc/config/broken"), broken);
    }
    EXPECT_FALSE(exists(kScratch));
    EXPECT_EQ(write("custom", "box", "name", nullptr), -1);
    EXPECT_EQ(write("custom", "box", "name", "\x01"), -1);
    EXPECT_EQ(console().back(), "uciRawSetValueByPath: fail to set ptr custom.box.name=\x01 (ret:2)\n\n");
    EXPECT_EQ(text_of("/etc/config/custom"), custom);
}

TEST_F(UciWrite, AddsSections) {
    EXPECT_EQ(add("nat", "rule_1", "rule"), 0);
    EXPECT_EQ(section_type("nat.rule_1"), "rule");
    EXPECT_EQ(console(), named("uciRawAddSectionBypath",
                               {"file name is :/etc/config/nat\n\n", "file is not exist,crate one!\n\n"}));
    store("nat.rule_1.port", "80");
    EXPECT_EQ(add("nat", "rule_1", "other"), 0);
    EXPECT_EQ(section_type("nat.rule_1"), "other");
    EXPECT_EQ(option("nat.rule_1.port"), "80");
    EXPECT_EQ(add("nat", "rule_2", "rule", "/tmp/fresh"), 0);
    EXPECT_EQ(section_type("nat.rule_2", "/tmp/fresh"), "rule");
    EXPECT_EQ(mode_of("/tmp/fresh"), 0775U);
    EXPECT_EQ(section_type("nat.rule_2"), std::nullopt);

    package("broken", "config a 'box'\n\toption x\nnonsense here\n");
    forget();
    EXPECT_EQ(add(nullptr, "a", "b"), -1);
    EXPECT_EQ(add("nat", nullptr, "b"), -1);
    EXPECT_EQ(add("nat", "a", nullptr), -1);
    EXPECT_EQ(console(), Texts(3, "uciRawAddSectionBypath: Invalid parameter.\n\n"));
    EXPECT_EQ(add("broken", "a", "b"), -1);
    EXPECT_EQ(console().back(), "uciRawAddSectionBypath: uci_load error!\n");
    EXPECT_EQ(add("nat", "a b", "rule"), -1);
    EXPECT_EQ(console().back(), "uciRawAddSectionBypath: fail to set ptr nat.a b.rule (ret:2)\n\n");
    EXPECT_EQ(add("nat", "c", "a b"), -1);
    EXPECT_EQ(add("nat", "c", "a\nconfig b"), -1);
    EXPECT_EQ(section_type("nat.rule_1"), "other");
    EXPECT_EQ(add("nat", "c", "rule", "/tmp/a/b"), -1);
    EXPECT_EQ(console().back(), "uciRawAddSectionBypath: path /tmp/a/b is not exsit,make falied\n");
}

TEST_F(UciWrite, DeletesSectionsAndIsDoneWhenThereIsNone) {
    package("nat", "config rule 'rule_1'\n\toption port '80'\n\nconfig rule 'rule_2'\n");
    EXPECT_EQ(remove("nat", "rule_1"), 0);
    EXPECT_EQ(section_type("nat.rule_1"), std::nullopt);
    EXPECT_EQ(section_type("nat.rule_2"), "rule");
    EXPECT_THAT(console(), IsEmpty());

    EXPECT_EQ(remove("nat", "rule_1"), 0);
    EXPECT_EQ(console().back(),
              "uciRawDelSectionBypath: (nat.type.rule_1) is not existed, section will not be deleted\n");
    EXPECT_EQ(remove("gone", "rule_1", kScratch), 0);
    EXPECT_EQ(console().back(),
              "uciRawDelSectionBypath: (/tmp/tr069/gone) is not existed, section will not be deleted\n");
    EXPECT_FALSE(exists(kScratch));

    package("broken", "config a 'box'\n\toption x\nnonsense here\n");
    EXPECT_EQ(remove("broken", "box"), -1);
    EXPECT_EQ(console().back(), "uciRawDelSectionBypath: uci_load error!\n");
    forget();
    EXPECT_EQ(remove(nullptr, "a"), -1);
    EXPECT_EQ(remove("nat", nullptr), -1);
    EXPECT_EQ(FROM_LIBRARY(uciRawDelSectionBypath)("nat", "rule_2", nullptr, kLive), -1);
    EXPECT_EQ(console(), Texts(3, "uciRawDelSectionBypath: Invalid parameter.\n\n"));
    EXPECT_EQ(section_type("nat.rule_2"), "rule");
}

TEST_F(UciWrite, ReadOnlyStoreLosesNothing) {
    if (mount("none", kLive, "tmpfs", 0, nullptr) != 0) GTEST_SKIP() << "this host allows no mount";
    package("custom", "config typed 'box'\n\toption name 'old'\n");
    const auto before = text_of("/etc/config/custom");
    ASSERT_EQ(mount("none", kLive, "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(write("custom", "box", "name", "new"), 0);  // the commit's result is not looked at
    EXPECT_EQ(remove("custom", "box"), 0);
    EXPECT_EQ(add("custom", "box_2", "typed"), 0);
    EXPECT_EQ(add("other", "box", "typed"), -1);
    EXPECT_EQ(set("DeviceInfo_ProvisioningCode", {}, "x").code, 0);
    EXPECT_EQ(text_of("/etc/config/custom"), before);
    ASSERT_EQ(umount(kLive), 0);
    EXPECT_FALSE(exists("/tmp/.uci/custom")) << "a refused change must not be staged";
}

}  // namespace
