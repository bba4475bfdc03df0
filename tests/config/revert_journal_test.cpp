#include "cwmp/revert_journal.h"

#include <filesystem>

#include "router_test.h"

namespace {

constexpr const char* kJournal = "/tmp/ready_to_revert_item";

class RevertJournal : public RouterTest {
  protected:
    void staged(const std::string& change) { package("wifi", change, "/var/state"); }
};

TEST_F(RevertJournal, AppendsALineForEachRecord) {
    file(kJournal, "earlier##1##NULL\n");
    FROM_LIBRARY(add_revert_item)("macclone", "00-11-22-33-44-55", nullptr);
    FROM_LIBRARY(add_revert_item)("", "%s", "extra");
    EXPECT_EQ(text_of(kJournal), "earlier##1##NULL\nmacclone##00-11-22-33-44-55##NULL\n##%s##extra\n");
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(RevertJournal, CutsALongRecordButKeepsItsNewline) {
    const std::string value(4000, 'v');
    FROM_LIBRARY(add_revert_item)("name", value.c_str(), nullptr);
    EXPECT_EQ(text_of(kJournal), "name##" + std::string(248, 'v') + "\n");
    std::filesystem::remove(kJournal);
    // The longest that fits: 254 characters and the newline.
    FROM_LIBRARY(add_revert_item)("name", value.substr(0, 242).c_str(), nullptr);
    EXPECT_EQ(text_of(kJournal), "name##" + std::string(242, 'v') + "##NULL\n");
}

TEST_F(RevertJournal, LogsWhatCannotBeRecorded) {
    FROM_LIBRARY(add_revert_item)(nullptr, "value", nullptr);
    FROM_LIBRARY(add_revert_item)("name", nullptr, "extra");
    EXPECT_FALSE(exists(kJournal));
    std::filesystem::create_directory(kJournal);
    FROM_LIBRARY(add_revert_item)("name", "value", nullptr);
    EXPECT_THAT(console(), ElementsAre("add_revert_item: param is NULL, do nothing\n\n",
                                       "add_revert_item: param is NULL, do nothing\n\n",
                                       "add_revert_item: open file /tmp/ready_to_revert_item failed!\n\n"));
}

TEST_F(RevertJournal, RecordsTheWanTypeOfTheSynchronisedNetwork) {
    struct Row {
        const char* type;
        std::optional<std::string> record;
    };
    for (const Row& row :
         {Row{"dhcp", "wantype##dynamic_ip##NULL\n"}, Row{"static", "wantype##static_ip##NULL\n"},
          Row{"pppoe", "pppoe_enable##\"1\"##NULL\n"}, Row{"pppoeshare", std::nullopt},
          Row{"l2tp", std::nullopt}, Row{"", std::nullopt}}) {
        SCOPED_TRACE(row.type);
        std::filesystem::remove(kJournal);
        store("network.wan.wan_type", "pppoe");
        store("network_sync.wan.wan_type", row.type);
        FROM_LIBRARY(backup_revert_wan_type)();
        EXPECT_EQ(text_of(kJournal), row.record);
    }
}

TEST_F(RevertJournal, DiscardsOnlyTheStagedChangeThatItNames) {
    store("wifi.radio_2g.channel", "6");
    staged("wifi.radio_2g.channel='11'\nwifi.radio_2g.txpower='3'\nwifi.radio_5g.channel='36'\n");
    EXPECT_EQ(FROM_LIBRARY(uciRevert)("wifi.radio_2g.channel"), 0);
    EXPECT_EQ(text_of("/var/state/wifi"), "wifi.radio_2g.txpower='3'\nwifi.radio_5g.channel='36'\n");
    EXPECT_EQ(option("wifi.radio_2g.channel"), "6");
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(RevertJournal, RefusesToDiscardWhatItCannotFind) {
    EXPECT_EQ(FROM_LIBRARY(uciRevert)(nullptr), -1);
    EXPECT_EQ(FROM_LIBRARY(uciRevert)("absent.section.option"), -1);
    const std::string name(300, 'n');
    EXPECT_EQ(FROM_LIBRARY(uciRevert)(name.c_str()), -1);
    EXPECT_THAT(console(), ElementsAre("uciRevert: pUciTupleStr or pValue is null\n",
                                       "uciRevert: fail to get ptr absent.section.option \n",
                                       "uciRevert: fail to get ptr " + name.substr(0, 99) + " \n"));
}

}  // namespace
