#include "cwmp/handler.h"
#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

constexpr const char* kUpTime = "cat /proc/uptime | awk -F '.' '{print $1}' ";
constexpr const char* kProcesses = "ps | sed '1d' | sed -n '$='";
constexpr const char* kProcessor = "top -n1 | grep idle | grep irq | awk '{print $8}' | sed 's/%//g'";

constexpr const char* kTop = R"(Mem: 151640K used, 96360K free, 1024K shrd, 8192K buff, 40960K cached
CPU:   3% usr   1% sys   0% nic  88% idle   0% io   0% irq   8% sirq
Load average: 0.10 0.08 0.05 1/92 4711
  PID  PPID USER     STAT   VSZ %VSZ CPU %CPU COMMAND
)";

class DeviceInfo : public RouterTest {
  protected:
    void whole_world() {
        answer("fwinfo MODEL", "KX-AX3000\n");
        answer("fwinfo PRODUCT_ID", "0x10F\n");
        answer("fwinfo MAC", "00:1a:2B:3C:4D:5E\n");
        answer("fwinfo SOFTVERSION", "2.4.1 build 7\n");
        answer("fwinfo HARDVERSION", "1.0\n");
        answer("ps",
               "  PID USER       VSZ STAT COMMAND\n    1 root      1364 S    init\n   99 root      1360 R    "
               "ps\n");
        answer("top -n1", kTop);
        file("/proc/uptime", "86400.55 120000.11\n");
        file("/proc/meminfo",
             "MemTotal:         248000 kB\nMemFree:           96360 kB\nMemAvailable:  1 kB\nSwapTotal: 2 "
             "kB\n");
        store("custom.DeviceInfo.ProvisioningCode", "code-1");
        store("systime.ntptime.firsttime", "2024-02-29T08:00:00Z");
    }
};

TEST_F(DeviceInfo, FullWorld) {
    whole_world();
    expect_answers({{"DeviceSummary", {}, "Device:1.1[](Baseline:1,EthernetLAN:1)"},
                    {"LANDeviceNumberOfEntries", {}, "1"},
                    {"WANDeviceNumberOfEntries", {}, "1"},
                    {"RootDataModelVersion", {}, "2.12"},
                    {"DeviceInfo_Manufacturer", {}, "KORVANEX"},
                    {"DeviceInfo_ManufacturerOUI", {}, "001a2B"},
                    {"DeviceInfo_ModelName", {}, "KX-AX3000"},
                    {"DeviceInfo_Description", {}, "KX-AX3000"},
                    {"DeviceInfo_ProductClass", {}, "KX-AX3000"},
                    {"DeviceInfo_X_QM_DevName", {}, "KX-AX3000"},
                    {"DeviceInfo_X_QM_ProductID", {}, "271"},
                    {"DeviceInfo_SerialNumber", {}, "001a2B3C4D5E"},
                    {"DeviceInfo_HardwareVersion", {}, "1.0"},
                    {"DeviceInfo_SoftwareVersion", {}, "2.4.1 build 7"},
                    {"DeviceInfo_ModemFirmwareVersion", {}, "2.4.1 build 7"},
                    {"DeviceInfo_AdditionalHardwareVersion", {}, ""},
                    {"DeviceInfo_AdditionalSoftwareVersion", {}, ""},
                    {"DeviceInfo_SpecVersion", {}, "1.0"},
                    {"DeviceInfo_ProvisioningCode", {}, "code-1"},
                    {"DeviceInfo_FirstUseDate", {}, "2024-02-29T08:00:00Z"},
                    {"DeviceInfo_DeviceLog", {}, ""},
                    {"DeviceInfo_UpTime", {}, "86400"},
                    {"DeviceInfo_MemoryStatus_Total", {}, "248000"},
                    {"DeviceInfo_MemoryStatus_Free", {}, "96360"},
                    {"DeviceInfo_ProcessStatus_ProcessNumberOfEntries", {}, "2"},
                    {"DeviceInfo_ProcessStatus_CPUUsage", {}, "12"}});
    EXPECT_THAT(console(), IsEmpty());
    EXPECT_THAT(commands(),
                ElementsAre("fwinfo MAC", "fwinfo MODEL", "fwinfo MODEL", "fwinfo MODEL", "fwinfo MODEL",
                            "fwinfo PRODUCT_ID", "fwinfo MAC", "fwinfo  HARDVERSION", "fwinfo SOFTVERSION",
                            "fwinfo SOFTVERSION", kUpTime, "cat /proc/meminfo", "cat /proc/meminfo",
                            kProcesses, kProcessor));
}

TEST_F(DeviceInfo, EmptyWorld) {
    file("/proc/uptime", "");
    file("/proc/meminfo", "");
    answer("ps", "");
    answer("top -n1", "");
    expect_answers({{"DeviceInfo_ManufacturerOUI", {}, ""},
                    {"DeviceInfo_ModelName", {}, ""},
                    {"DeviceInfo_Description", {}, ""},
                    {"DeviceInfo_ProductClass", {}, ""},
                    {"DeviceInfo_X_QM_DevName", {}, ""},
                    {"DeviceInfo_X_QM_ProductID", {}, "0"},
                    {"DeviceInfo_SerialNumber", {}, ""},
                    {"DeviceInfo_HardwareVersion", {}, ""},
                    {"DeviceInfo_SoftwareVersion", {}, ""},
                    {"DeviceInfo_ModemFirmwareVersion", {}, ""},
                    {"DeviceInfo_ProvisioningCode", {}, ""},
                    {"DeviceInfo_FirstUseDate", {}, "0001-01-01T00:00:00Z"},
                    {"DeviceInfo_UpTime", {}, ""},
                    {"DeviceInfo_MemoryStatus_Total", {}, ""},
                    {"DeviceInfo_MemoryStatus_Free", {}, ""},
                    {"DeviceInfo_ProcessStatus_ProcessNumberOfEntries", {}, ""},
                    {"DeviceInfo_ProcessStatus_CPUUsage", {}, "5"}});
}

TEST_F(DeviceInfo, ReadOnly) {
    expect_read_only({"DeviceSummary",
                      "LANDeviceNumberOfEntries",
                      "WANDeviceNumberOfEntries",
                      "RootDataModelVersion",
                      "DeviceInfo_Manufacturer",
                      "DeviceInfo_ManufacturerOUI",
                      "DeviceInfo_ModelName",
                      "DeviceInfo_Description",
                      "DeviceInfo_ProductClass",
                      "DeviceInfo_X_QM_DevName",
                      "DeviceInfo_X_QM_ProductID",
                      "DeviceInfo_SerialNumber",
                      "DeviceInfo_HardwareVersion",
                      "DeviceInfo_SoftwareVersion",
                      "DeviceInfo_ModemFirmwareVersion",
                      "DeviceInfo_AdditionalHardwareVersion",
                      "DeviceInfo_AdditionalSoftwareVersion",
                      "DeviceInfo_SpecVersion",
                      "DeviceInfo_UpTime",
                      "DeviceInfo_MemoryStatus_Total",
                      "DeviceInfo_MemoryStatus_Free",
                      "DeviceInfo_ProcessStatus_ProcessNumberOfEntries",
                      "DeviceInfo_ProcessStatus_CPUUsage"});
    for (const char* name : {"DeviceInfo_FirstUseDate", "DeviceInfo_DeviceLog"})
        EXPECT_THAT(set_in_passes(name, {}, "x"), ElementsAre(-1, -1, -1));
    Texts events(3, "DeviceInfo_FirstUseDate: Get FirstUseDate error\n");
    events.insert(events.end(), 3, "DeviceInfo_DeviceLog: Get DeviceLog error\n");
    EXPECT_EQ(console(), events);
}

TEST_F(DeviceInfo, ProvisioningCodeIsWrittenOnEveryPassAndRaisesNoFlag) {
    package("custom", "config DeviceInfo 'DeviceInfo'\n");
    expect_stored(
        {{"DeviceInfo_ProvisioningCode", {}, "a b'c", "custom.DeviceInfo.ProvisioningCode", "a b'c", 0},
         {"DeviceInfo_ProvisioningCode", {}, "other", "custom.DeviceInfo.ProvisioningCode", "other", 0}});
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        const std::string value = "pass " + std::to_string(op);
        EXPECT_EQ(set("DeviceInfo_ProvisioningCode", {}, value, op).code, 0);
        EXPECT_EQ(option("custom.DeviceInfo.ProvisioningCode"), value);
    }
    EXPECT_EQ(set("DeviceInfo_ProvisioningCode", {}, "").code, 0);
    EXPECT_EQ(option("custom.DeviceInfo.ProvisioningCode"), std::nullopt);
}

TEST_F(DeviceInfo, ProvisioningCodeKeepsAnyText) {
    package("custom", "");
    level(0);  // a console line would show the value to a shell
    for (const std::string& value :
         {std::string("%s%n%d"), std::string("Z\xC3\xBCrich"),
          std::string("\"; reboot; $(reboot) `reboot` '"), std::string("a\n\toption ProvisioningCode 'b'\n"),
          std::string(65536, 'v')}) {
        expect_stored(
            {{"DeviceInfo_ProvisioningCode", {}, value, "custom.DeviceInfo.ProvisioningCode", value, 0}});
        expect_answers({{"DeviceInfo_ProvisioningCode", {}, value}});
    }
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(DeviceInfo, ProvisioningCodeIsDoneWhenTheStoreRefuses) {
    EXPECT_EQ(set("DeviceInfo_ProvisioningCode", {}, "x").code, 0);
    EXPECT_FALSE(exists("/etc/config/custom"));
    EXPECT_THAT(console(), Contains("uciRawSetValue: set usrconfig failed\n\n"));
    unsigned flags = 0;
    Locate locate{};
    EXPECT_EQ(call(handler("DeviceInfo_ProvisioningCode"), CWMP_OP_APPLY, locate.data(), nullptr, &flags),
              -1);
}

TEST_F(DeviceInfo, ToolOutputOfAnyKind) {
    struct Row {
        const char* handler;
        const char* command;
        std::string output, value;
    };
    const std::string long_line(5000, 'x');
    const std::vector<Row> rows = {
        {"DeviceInfo_ManufacturerOUI", "fwinfo MAC", "00-1A-2B-3C-4D-5E\n", "001A2B"},
        {"DeviceInfo_ManufacturerOUI", "fwinfo MAC", "00:1A\n", "001A"},
        {"DeviceInfo_ManufacturerOUI", "fwinfo MAC", "00:1A", "001A"},
        {"DeviceInfo_ManufacturerOUI", "fwinfo MAC", "::--::\n", ""},
        {"DeviceInfo_ManufacturerOUI", "fwinfo MAC", long_line, "xxxxxx"},
        {"DeviceInfo_X_QM_ProductID", "fwinfo PRODUCT_ID", "10F\n", "271"},
        {"DeviceInfo_X_QM_ProductID", "fwinfo PRODUCT_ID", "ff\n", "255"},
        {"DeviceInfo_X_QM_ProductID", "fwinfo PRODUCT_ID", "12 34\n", "18"},
        {"DeviceInfo_X_QM_ProductID", "fwinfo PRODUCT_ID", "none\n", "0"},
        {"DeviceInfo_X_QM_ProductID", "fwinfo PRODUCT_ID", "fffffffe\n", "-2"},
        {"DeviceInfo_ModelName", "fwinfo MODEL", "one\ntwo\n", "one"},
        {"DeviceInfo_ModelName", "fwinfo MODEL", "\n", ""},
        {"DeviceInfo_ModelName", "fwinfo MODEL", "%s%n \xff $(x)\n", "%s%n \xff $(x)"},
        {"DeviceInfo_ModelName", "fwinfo MODEL", long_line, std::string(99, 'x')},
        {"DeviceInfo_X_QM_DevName", "fwinfo MODEL", long_line, std::string(255, 'x')},
        {"DeviceInfo_SerialNumber", "fwinfo MAC", long_line, std::string(19, 'x')},
        {"DeviceInfo_ProcessStatus_CPUUsage", "top -n1", "CPU: 1% 2% 3% 4% 5% 6% 100% idle irq\n", "0"},
        {"DeviceInfo_ProcessStatus_CPUUsage", "top -n1", "CPU: 1 2 3 4 5 idle 37.9% irq\n", "63"},
        {"DeviceInfo_ProcessStatus_CPUUsage", "top -n1", "CPU: 1 2 3 4 5 idle x% irq\n", "5"},
        {"DeviceInfo_ProcessStatus_CPUUsage", "top -n1", "CPU: idle irq\n", "5"},
        {"DeviceInfo_ProcessStatus_ProcessNumberOfEntries", "ps", "PID\n", ""},
        {"DeviceInfo_ProcessStatus_ProcessNumberOfEntries", "ps", "PID\n1\n2\n3", "3"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.handler) + " " + row.output.substr(0, 40));
        answer(row.command, row.output);
        expect_answers({{row.handler, {}, row.value}});
    }
}

TEST_F(DeviceInfo, MemoryIsTheSecondWordOfTheLastLineWithTheName) {
    struct Row {
        std::string text, total, free;
    };
    for (const Row& row :
         {Row{"MemFree: 5 kB\nMemTotal: 7 kB\n", "7", "5"}, Row{"MemTotal: 7\nxMemTotal:\t8 9\n", "8", ""},
          Row{"MemTotal:\nMemFree:", "", ""}, Row{"  MemTotal 7", "7", ""},
          Row{"MemFree: " + std::string(5000, '1'), "", std::string(246, '1')}}) {
        SCOPED_TRACE(row.text.substr(0, 40));
        file("/proc/meminfo", row.text);
        expect_answers({{"DeviceInfo_MemoryStatus_Total", {}, row.total},
                        {"DeviceInfo_MemoryStatus_Free", {}, row.free}});
    }
}

TEST_F(DeviceInfo, AToolThatCannotStartIsAFailure) {
    struct Row {
        const char *handler, *event;
    };
    const std::vector<Row> rows = {
        {"DeviceInfo_ManufacturerOUI", "DeviceInfo_ManufacturerOUI: Failed to get MODEL\n"},
        {"DeviceInfo_ModelName", "FwinfoDeviceInfo: Failed to use fwinfo to get  DeviceInfo \n"},
        {"DeviceInfo_HardwareVersion", "FwinfoDeviceInfo: Failed to use fwinfo to get  DeviceInfo \n"},
        {"DeviceInfo_X_QM_DevName", "DeviceInfo_X_QM_DevName: Failed to use fwinfo to get  DeviceName \n"},
        {"DeviceInfo_X_QM_ProductID",
         "DeviceInfo_X_QM_ProductID: Failed to use fwinfo to get  fwinfo PRODUCT_ID\n"},
        {"DeviceInfo_UpTime", "DeviceInfo_UpTime: Failed to get  uptime\n"},
        {"DeviceInfo_MemoryStatus_Total", "DeviceInfo_MemoryStatus_Total: Failed to open MemFree info\n"},
        {"DeviceInfo_MemoryStatus_Free", "DeviceInfo_MemoryStatus_Free: Failed to open MemFree info\n"},
        {"DeviceInfo_ProcessStatus_ProcessNumberOfEntries",
         "DeviceInfo_ProcessStatus_ProcessNumberOfEntries: Failed to get  ProcessNumberOfEntries\n"},
        {"DeviceInfo_ProcessStatus_CPUUsage",
         "DeviceInfo_ProcessStatus_CPUUsage: Failed to get  CPUUsage\n"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.handler);
        forget();
        const NoFreeDescriptor none;
        const Result result = get(row.handler);
        EXPECT_EQ(result.code, -1);
        EXPECT_EQ(result.value, kUntouched);
        EXPECT_THAT(console(), ElementsAre(row.event));
    }
    const NoFreeDescriptor none;
    EXPECT_EQ(get("DeviceInfo_ProductClass").code, 0);
    EXPECT_EQ(get("DeviceInfo_SerialNumber").value, "");
}

TEST_F(DeviceInfo, AStoredTextOfAnyLengthFitsTheBuffer) {
    store("custom.DeviceInfo.ProvisioningCode", std::string(5000, 'p'));
    EXPECT_EQ(get("DeviceInfo_ProvisioningCode").value, std::string(5000, 'p'));
    store("systime.ntptime.firsttime", std::string(200000, 'd'));
    EXPECT_EQ(get("DeviceInfo_FirstUseDate").value, std::string(CWMP_VALUE_SIZE - 1, 'd'));
}

}  // namespace
