// What becomes of the store when its file system is full, and beside other writers.
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "cwmp/revert_journal.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kPackage = "/etc/config/custom";
constexpr const char* kJournal = "/tmp/ready_to_revert_item";

class StoreSafety : public RouterTest {
  protected:
    int write(const char* option_name, const std::string& value, const char* section = "box") {
        return FROM_LIBRARY(uciRawSetValueByPath)("custom", section, option_name, value.c_str(), nullptr);
    }
    static Texts hidden_files(const std::string& directory) {
        Texts names;
        for (const auto& entry : fs::directory_iterator(directory)) {
            const std::string name = entry.path().filename();
            if (name[0] == '.') names.push_back(name);
        }
        return names;
    }
};

// holds P1: a package is the old text or the whole new one, however little room there is.
TEST_F(StoreSafety, AFullStoreKeepsTheOldText) {
    for (int pages = 1; pages <= 4; ++pages) {
        SCOPED_TRACE(pages);
        const std::string size = "size=" + std::to_string(pages * getpagesize());
        if (mount("tmpfs", "/etc/config", "tmpfs", 0, size.c_str()) != 0) GTEST_SKIP() << "no mounts here";
        package("custom", "config typed 'box'\n\toption name '" + std::string(3000, 'x') + "'\n");
        const auto before = text_of(kPackage);
        forget();
        EXPECT_EQ(write("other", std::string(5000, 'y')), 0);
        const bool stored = option("custom.box.other").has_value();
        if (!stored) {
            EXPECT_EQ(text_of(kPackage), before);
            EXPECT_EQ(console().back(),
                      "uciRawSetValueByPath: package custom cannot be stored, it stays as it was\n\n");
        }
        EXPECT_EQ(stored, pages >= 3);
        EXPECT_THAT(hidden_files("/etc/config"), IsEmpty());
        umount("/etc/config");
    }
}

// holds P2: staged changes that were cut off are taken away, those that are whole are stored.
TEST_F(StoreSafety, CutStagedChangesDoNotStopLaterOnes) {
    for (const std::string staged : {"custom.box.staged='1'\n", "custom.box.staged='1'\ncustom.box.cut='ab",
                                     "custom.box.cut='ab", "custom.box.cut='abcustom.box.next='1'\n"}) {
        SCOPED_TRACE(staged);
        package("custom", "config typed 'box'\n\toption name 'old'\n");
        package("custom", staged, "/tmp/.uci");
        forget();
        EXPECT_EQ(write("name", "new"), 0);
        EXPECT_EQ(option("custom.box.name"), "new");
        EXPECT_EQ(option("custom.box.staged").has_value(), staged.find("staged") != std::string::npos);
        EXPECT_EQ(text_of("/tmp/.uci/custom"), "");
        EXPECT_EQ(console().back() ==
                      "uciRawSetValueByPath: staged changes of package custom are broken, they "
                      "are dropped\n\n",
                  staged.find("cut") != std::string::npos);
    }
}

// holds P3: no update of another writer of this library is lost.
TEST_F(StoreSafety, TwoWritersLoseNothing) {
    constexpr int kRounds = 100;
    package("custom", "config typed 'box'\n\toption one '0'\n\toption two '0'\n");
    level(-1);
    const auto count_up = [&](const char* name) {
        for (int round = 1; round <= kRounds; ++round) write(name, std::to_string(round));
    };
    const pid_t other = fork();
    if (other == 0) {
        count_up("two");
        _exit(0);
    }
    for (int round = 1; round <= kRounds; ++round) {
        write("one", std::to_string(round));
        ASSERT_EQ(option("custom.box.one"), std::to_string(round));
    }
    waitpid(other, nullptr, 0);
    EXPECT_EQ(option("custom.box.two"), std::to_string(kRounds));
}

// holds P4: temporary files of killed commits do not stay; those of a commit that runs do.
TEST_F(StoreSafety, SweepsWhatKilledCommitsLeft) {
    package("custom", "config typed 'box'\n");
    for (const char* name : {".custom.uci-abcdef", ".network.uci-123456", ".custom.uci-inwork", ".keep"})
        file(std::string("/etc/config/") + name, "x");
    for (const char* name : {".custom.uci-abcdef", ".network.uci-123456", ".keep"})
        fs::last_write_time(std::string("/etc/config/") + name,
                            fs::file_time_type::clock::now() - std::chrono::hours(1));
    write("name", "new");
    EXPECT_THAT(hidden_files("/etc/config"), ::testing::UnorderedElementsAre(".custom.uci-inwork", ".keep"));
}

// holds P5: a name in /tmp that somebody else has made is not used, and nothing waits for it.
TEST_F(StoreSafety, StrangersNamesAreNotUsed) {
    fs::create_directories("/tmp/elsewhere");
    package("hosts", "config host 'one'\n\toption name 'x'\n", "/tmp/elsewhere");
    const auto set_scratch = [&] {
        return FROM_LIBRARY(uciRawSetValue_tr069_config)("hosts", "one", "name", "y");
    };
    char value[64] = "";
    const auto get_scratch = [&] {
        return FROM_LIBRARY(uciRawGetValue_tr069_config)("hosts", "one", "name", value);
    };
    fs::create_directory_symlink("/tmp/elsewhere", kScratch);
    EXPECT_EQ(set_scratch(), -1);
    EXPECT_EQ(console().back(), "uciRawSetValueByPath: path /tmp/tr069 is not exsit,make falied\n");
    EXPECT_EQ(get_scratch(), -1);
    fs::remove(kScratch);
    fs::rename("/tmp/elsewhere", kScratch);
    ASSERT_EQ(chown(kScratch, 1, 1), 0);
    EXPECT_EQ(set_scratch(), -1);
    EXPECT_EQ(get_scratch(), -1);
    ASSERT_EQ(chown(kScratch, 0, 0), 0);
    EXPECT_EQ(set_scratch(), 0);
    EXPECT_EQ(get_scratch(), 0);

    FROM_LIBRARY(add_revert_item)("a", "b", nullptr);
    EXPECT_EQ(fs::status(kJournal).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    fs::remove(kJournal);
    const std::string refusal = std::string("add_revert_item: open file ") + kJournal + " failed!\n\n";
    file("/tmp/victim", "kept");
    for (const auto& occupy : std::initializer_list<void (*)()>{
             [] { mkfifo(kJournal, 0600); }, [] { fs::create_directory(kJournal); },
             [] { fs::create_symlink("/tmp/victim", kJournal); },
             [] { fs::create_hard_link("/tmp/victim", kJournal); }}) {
        occupy();
        FROM_LIBRARY(add_revert_item)("a", "b", nullptr);
        EXPECT_EQ(console().back(), refusal);
        fs::remove(kJournal);
    }
    EXPECT_EQ(text_of("/tmp/victim"), "kept");
    ASSERT_EQ(mkfifo("/tmp/is_binded", 0600), 0);
    EXPECT_EQ(get("X_QM_Onboarding_Enable").value, "0");
}

}  // namespace
