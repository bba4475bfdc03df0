#include <gtest/gtest.h>
#include <json-c/json.h>

#include "sandbox.h"

namespace {

constexpr const char* kModel = R"(# comment
Device.Box.Name                W string secret inform notify=canDeny group=lan reboot differs=kept:int
Device.Box.Text                R string
Device.Box.Late                W string  passes=apply   # UDP echo is like this
Device.Box.PortNumberOfEntries R unsignedInt
Device.Box.Port.{i}.           -  count=Device.Box.PortNumberOfEntries
Device.Box.Port.{i}.Speed      W string
Device.Box.Port.{i}.Queue.{i}. -  instances=2
Device.Box.Port.{i}.Queue.{i}.Weight W list(unsignedInt[1:9]) locate=2,1 handler=Queue_Weight only=2:1,2
Device.Box.Port.{i}.Map.{i}.   AD locate=none
Device.Box.Port.{i}.Map.{i}.Name R string locate=2
)";

constexpr const char* kSecondFile = R"(Device.Box.Rule.{i}.      AD
Device.Box.Rule.{i}.Name  W string
Device.Odd.Count          R string handler=Box_Count
Device.Faulty.Broken      R string handler=Box_Broken
Device.Faulty.Absent      W string
Device.Lan.Address        W string
Device.Lan.Mask           W string
Device.Pool.Start         W string
Device.Typed.Switch       W boolean      handler=Box_Name
Device.Typed.Number       W int[-3:9]    handler=Box_Name
Device.Typed.Counter      W unsignedInt? handler=Box_Name
Device.Typed.Word         W string{a|b}  handler=Box_Name
Device.Typed.Text         W string(2:3)  handler=Box_Name
Device.Typed.Address      W IPv4Address  handler=Box_Name
Device.Typed.Card         W MACAddress   handler=Box_Name
Device.Typed.Time         W dateTime     handler=Box_Name
)";

class Dm : public testing::Test {
  protected:
    Dm() {
        sandbox.write("model/10-box.txt", kModel);
        sandbox.write("model/20-rules.txt", kSecondFile);
    }

    Sandbox sandbox;
};

// The output in one line, or the text of a parse error.
std::string compact(const std::string& json) {
    json_tokener_error error;
    json_object* object = json_tokener_parse_verbose(json.c_str(), &error);
    if (!object) return json_tokener_error_desc(error);
    std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

TEST_F(Dm, ReadsAParameterAndKeepsTheLibrarysLinesOffStandardOutput) {
    const auto result = sandbox.run("get Device.Box.Name Device.Box.Port.2.Speed");
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.out, "Device.Box.Name          box\nDevice.Box.Port.2.Speed  100\n");
    EXPECT_NE(result.err.find("noise of Box_Name"), std::string::npos);
}

struct CallsRow {
    const char* arguments;
    const char* calls;
    const char* environment = "";
};

TEST_F(Dm, CallsHandlersWithFreshInstanceNumbersInTheAgentsOrder) {
    const CallsRow rows[] = {
        {"get Device.Box.Port.2.",
         "bulk\nBox_PortNumberOfEntries 0 [00000000]\nBox_Port_Speed 0 [20000000]\n"
         "Queue_Weight 0 [12000000]\nQueue_Weight 0 [22000000]\nBox_Port_Map 6 [00000000]\n"
         "Box_Port_Map_Name 0 [20000000]\nBox_Port_Map_Name 0 [30000000]\n"
         "Box_Port_Map_Name 0 [700000000]\nbulk end\n"},
        {"set Device.Box.Late=1 Device.Box.Name=a=b Device.Box.Port.1.Queue.2.Weight=",
         "Box_PortNumberOfEntries 0 [00000000]\nbegin\nBox_Name 2 [00000000] a=b\n"
         "Queue_Weight 2 [21000000]\nBox_Name 3 [00000000] a=b\nQueue_Weight 3 [21000000]\n"
         "Box_Late 1 [00000000] 1\nBox_Name 1 [00000000] a=b\nQueue_Weight 1 [21000000]\nkeep\n"},
        {"set Device.Box.Name=x Device.Box.Port.1.Speed=refuse2",
         "Box_PortNumberOfEntries 0 [00000000]\nbegin\nBox_Name 2 [00000000] x\n"
         "Box_Port_Speed 2 [10000000] refuse2\nundo\n"},
        {"set Device.Box.Name=refuse3 Device.Box.Late=1",
         "begin\nBox_Name 2 [00000000] refuse3\nBox_Name 3 [00000000] refuse3\nundo\n"},
        {"set Device.Box.Late=refuse1 Device.Box.Name=x",
         "begin\nBox_Name 2 [00000000] x\nBox_Name 3 [00000000] x\nBox_Late 1 [00000000] refuse1\n"
         "undo\n"},
        {"add Device.Box.Rule.", "begin\nBox_Rule 4 [00000000]\nkeep\n"},
        {"del Device.Box.Rule.70.", "Box_Rule 6 [00000000]\nbegin\nBox_Rule 5 [00000000] 70\nkeep\n"},
        {"add Device.Box.Port.2.Map.",
         "Box_PortNumberOfEntries 0 [00000000]\nbegin\nBox_Port_Map 4 [00000000]\nkeep\n"},
        {"list Device.Box.Rule.", "Box_Rule 6 [00000000]\n"},
        {"get Device.Box.Port.2.Speed Device.Box.Port.1.Speed",
         "bulk\nBox_PortNumberOfEntries 0 [00000000]\nBox_Port_Speed 0 [20000000]\n"
         "Box_Port_Speed 0 [10000000]\nbulk end\n"},
        {"get Device.Box.Port.*.Speed Device.Box.Rule.*.",
         "bulk\nBox_PortNumberOfEntries 0 [00000000]\nBox_Port_Speed 0 [10000000]\n"
         "Box_Port_Speed 0 [20000000]\nBox_Rule 6 [00000000]\nBox_Rule_Name 0 [20000000]\n"
         "Box_Rule_Name 0 [30000000]\nBox_Rule_Name 0 [700000000]\nbulk end\n"},
        {"del Device.Box.Rule.70. Device.Box.Rule.2.",
         "Box_Rule 6 [00000000]\nbegin\nBox_Rule 5 [00000000] 70\nBox_Rule 5 [00000000] 2\nkeep\n"},
        {"del Device.Box.Rule.70. Device.Box.Rule.4.", "Box_Rule 6 [00000000]\n"},
        {"add Device.Box.Rule. Name=refuse3",
         "begin\nBox_Rule 4 [00000000]\nBox_Rule 6 [00000000]\nBox_Rule_Name 2 [700000000] refuse3\n"
         "Box_Rule_Name 3 [700000000] refuse3\nundo\n",
         "AGENT_ADDED=70"},
        {"get --live Device.Box.Name", "Box_Name 0 [00000000]\n"},
        {"set --dry-run Device.Box.Name=x Device.Box.Late=1",
         "begin\nBox_Name 2 [00000000] x\nBox_Name 3 [00000000] x\nundo\n"},
        {"add Device.Box.Rule. Name=x Colour=red", ""},
        {"set Device.Box.Port.1.Speed=z - <values",
         "Box_PortNumberOfEntries 0 [00000000]\nbegin\nBox_Port_Speed 2 [10000000] z\n"
         "Box_Name 2 [00000000] box\nBox_Port_Speed 3 [10000000] z\nBox_Name 3 [00000000] box\n"
         "Box_Port_Speed 1 [10000000] z\nBox_Name 1 [00000000] box\nBox_Late 1 [00000000] a\\b\nkeep\n"},
        {"import values",
         "Box_Name 0 [00000000]\nBox_Late 0 [00000000]\nbegin\nBox_Late 1 [00000000] a\\b\nkeep\n"},
        {"set Device.Box.Name=1 Device.Box.Text=2", ""},
        {"names", ""},
    };
    sandbox.write("values", "# as exported\n\nDevice.Box.Name=box\r\nDevice.Box.Late=a\\\\b\n");
    for (const CallsRow& row : rows) {
        EXPECT_EQ(sandbox.run(row.arguments, row.environment).calls, row.calls) << row.arguments;
    }
}

struct OutputRow {
    const char* arguments;
    int exit;
    const char* out;
    const char* environment = "";
};

TEST_F(Dm, PrintsTables) {
    const OutputRow rows[] = {
        {"get Device.Box.Text", 0, "Device.Box.Text  a\\x1b[2J\\n\\xff\\xc2\\x9b\\xe2\\x80\\xaez\xc3\xa9\n"},
        {"set Device.Box.Name=x Device.Box.Late=", 0,
         "Device.Box.Name  stage,check,apply  x\nDevice.Box.Late  apply\napply flags 0x4030: WAN, LAN, UDP "
         "echo\n"},
        {"set Device.Box.Port.1.Queue.1.Weight=7", 0,
         "Device.Box.Port.1.Queue.1.Weight  stage,check,apply  7\napply flags 0x10008: unknown 0x10008\n"},
        {"set Device.Box.Late=refuse1", 1,
         "the transaction was reverted: Device.Box.Late: the value was refused in the apply pass\n"
         "apply flags 0x0040: IPTV\n"},
        {"set Device.Box.Late=refuse1", 1,
         "not everything could be undone: Device.Box.Late: the value was refused in the apply pass\n"
         "apply flags 0x0040: IPTV\n",
         "AGENT_END=-1"},
        {"recover", 0, "a change that was cut off is undone\napply flags 0x0040: IPTV\n"},
        {"recover", 0, "no change was cut off\napply flags 0x0040: IPTV\n", "AGENT_END=0"},
        {"add Device.Box.Rule.", 0, "Device.Box.Rule.4.\napply flags 0x0080: NAT\n"},
        {"del Device.Box.Rule.3.", 0, "Device.Box.Rule.3.\napply flags 0x0080: NAT\n"},
        {"list Device.Box.Rule.", 0, "Device.Box.Rule.2.\nDevice.Box.Rule.3.\nDevice.Box.Rule.70.\n"},
        {"list Device.Box.Port.", 0, "Device.Box.Port.1.\nDevice.Box.Port.2.\n"},
        {"names Device.Box.Rule.", 0, "Device.Box.Rule.{i}.      AD\nDevice.Box.Rule.{i}.Name  W   string\n"},
        {"names --level 1 Device.Box.Port.*. Device.Odd.", 0,
         "Device.Box.Port.{i}.Speed   W  string\nDevice.Box.Port.{i}.Queue.  -\nDevice.Box.Port.{i}.Map.    "
         "-\n"
         "Device.Odd.Count            R  string\n"},
        {"find QUEUE weight --plain", 0, "Device.Box.Port.{i}.Queue.{i}.Weight\n"},
        {"list Device.Box.Port.*.Queue.", 0,
         "Device.Box.Port.1.Queue.1.\nDevice.Box.Port.1.Queue.2.\nDevice.Box.Port.2.Queue.1.\n"
         "Device.Box.Port.2.Queue.2.\n"},
        {"get Device.Box.Text --plain", 0,
         "Device.Box.Text=a\\x1b[2J\\n\\xff\\xc2\\x9b\\xe2\\x80\\xaez\xc3\xa9\n"},
        {"export Device.Box.Port.2. Device.Box.Late Device.Box.Name", 0,
         "Device.Box.Port.2.Speed=100\nDevice.Box.Port.2.Queue.1.Weight=5\nDevice.Box.Port.2.Queue.2.Weight="
         "5\n# secret: Device.Box.Name\n"},
        {"get Device.Box.Name Device.Box.Text --table", 0,
         "Device.Box.Name  box\nDevice.Box.Text  a\\x1b[2J\\n\\xff\\xc2\\x9b\\xe2\n                 "
         "\\x80\\xaez\xc3\xa9\n",
         "COLUMNS=43"},
        {"watch Device.Odd. Device.Box.Name --plain", 0, "Device.Odd.Count=2\n",
         "timeout --preserve-status 1.5"},
        {"complete -- wa", 0, "wait-diagnostics\nwatch\n"},
        {"complete -- diagnose traceroute --h", 0, "--help\n--hops\n"},
        {"complete -- get Device.Box.P", 0, "Device.Box.PortNumberOfEntries\nDevice.Box.Port.\n"},
        {"complete -- --plain set Device.Box.Rule.7", 0, "Device.Box.Rule.70.\n"},
        {"complete -- set Device.Box.Port.2.S", 0, "Device.Box.Port.2.Speed=\n"},
        {"names Device.Box.Port.{i}.Queue.8.", 0,
         "Device.Box.Port.{i}.Queue.{i}.        -\nDevice.Box.Port.{i}.Queue.{i}.Weight  W  "
         "list(unsignedInt[1:9])\n"},
        {"get Device.Faulty. Device.Box.Name", 4, "Device.Box.Name  box\n"},
    };
    for (const OutputRow& row : rows) {
        const auto result = sandbox.run(row.arguments, row.environment);
        EXPECT_EQ(result.exit, row.exit) << row.arguments << result.err;
        EXPECT_EQ(result.out, row.out) << row.arguments;
    }
}

TEST_F(Dm, PrintsNothingButJsonWhenAsked) {
    const OutputRow rows[] = {
        {"get Device.Box.Text Device.Faulty.Broken", 1,
         R"({"parameters":[{"path":"Device.Box.Text","value":"a\u001b[2J\n)"
         "\xEF\xBF\xBD\xc2\x9b\xe2\x80\xaez\xc3\xa9"
         R"(","type":"string"}],"errors":[{"path":"Device.Faulty.Broken","fault":9002,"message":"the value cannot be read"}]})"},
        {"set Device.Box.Name=refuse3", 1,
         R"({"parameters":[{"path":"Device.Box.Name","value":"refuse3","type":"string","passes":["stage"]}],"reverted":true,)"
         R"("applyFlags":64,"services":["IPTV"],"errors":[{"path":"Device.Box.Name","fault":9007,)"
         R"("message":"the value was refused in the check pass","pass":"check"}]})"},
        {"list Device.Box.Rule.", 0,
         R"({"parameters":[],"instances":["Device.Box.Rule.2.","Device.Box.Rule.3.","Device.Box.Rule.70."],)"
         R"("errors":[]})"},
        {"names Device.Box.Name", 0,
         R"({"parameters":[],"names":[{"path":"Device.Box.Name","access":"W",)"
         R"("type":{"text":"string","wire":"string","base":"string","list":false,"empty":false},)"
         R"("secret":true,"inform":true,"notify":"canDeny","groups":["lan"],"reboot":true,"passes":"all",)"
         R"("differs":[{"reason":"kept","published":"int"}],"handler":"Box_Name"}],"errors":[]})"},
        {"names Device.Box.Port.{i}.Queue.{i}.", 0,
         R"({"parameters":[],"names":[{"path":"Device.Box.Port.{i}.Queue.{i}.","access":"-","instances":2},)"
         R"json({"path":"Device.Box.Port.{i}.Queue.{i}.Weight","access":"W","type":{"text":"list(unsignedInt[1:9])",)json"
         R"("wire":"string","base":"unsignedInt","list":true,"empty":true,"minimum":1,"maximum":9},"secret":false,)"
         R"("inform":false,"reboot":false,"passes":"all","differs":[],"handler":"Queue_Weight","locate":[2,1],)"
         R"("only":{"position":2,"values":[1,2]}}],"errors":[]})"},
        {"gett", 2,
         R"({"parameters":[],"errors":[{"path":"gett","message":"no such command; did you mean get?"}]})"},
    };
    for (const OutputRow& row : rows) {
        const auto result = sandbox.run(std::string("--json --log 7 ") + row.arguments);
        EXPECT_EQ(result.exit, row.exit) << row.arguments;
        EXPECT_EQ(compact(result.out), row.out) << row.arguments;
    }
}

TEST_F(Dm, NamesTheServiceOfEachApplyFlag) {
    EXPECT_EQ(sandbox.run("set Device.Box.Late=", "AGENT_FLAGS=0xfff7").out,
              "Device.Box.Late  apply\napply flags 0xfff7: wireless, management server, DHCP server, WAN, "
              "LAN, IPTV, "
              "NAT, XMPP, download diagnostics, upload diagnostics, STUN, IP ping diagnostics, "
              "trace-route diagnostics, UDP echo, wireless mode\n");
}

TEST_F(Dm, TellsWhatBecameOfEachGroup) {
    const std::string apply_refused = "the value was refused in the apply pass\napply flags 0x0040: IPTV\n";
    const std::string check_refused = "the value was refused in the check pass\napply flags 0x0040: IPTV\n";
    const std::pair<const char*, std::string> rows[] = {
        {"set Device.Lan.Address=a Device.Lan.Mask=m",
         "Device.Lan.Address  stage,check,apply  a\nDevice.Lan.Mask     stage,check,apply  m\n"
         "group lan: staged, checked, applied\napply flags 0x0000: none\n"},
        {"set Device.Lan.Address=a Device.Pool.Start=refuse1",
         "Device.Lan.Address  stage,check,apply  a\nDevice.Pool.Start   stage,check        refuse1\n"
         "group dhcp: staged, checked, apply refused, reverted\n"
         "group lan: staged, checked, applied, reverted\n"
         "the transaction was reverted: Device.Pool.Start: " +
             apply_refused},
        {"set Device.Pool.Start=p Device.Lan.Mask=refuse3",
         "Device.Pool.Start  stage,check  p\nDevice.Lan.Mask    stage        refuse3\n"
         "group dhcp: staged, checked, reverted\ngroup lan: staged, check refused\n"
         "the transaction was reverted: Device.Lan.Mask: " +
             check_refused},
    };
    for (const auto& [arguments, out] : rows) EXPECT_EQ(sandbox.run(arguments).out, out) << arguments;
    EXPECT_NE(compact(sandbox.run("--json set Device.Lan.Mask=m").out)
                  .find(R"("groups":[{"name":"lan","steps":["staged","checked","applied"]}])"),
              std::string::npos);
}

TEST_F(Dm, HandsTheAgentsRecordOn) {
    sandbox.write("agent", "# comment\nacs-url http://acs/#x\n\n  host 192.0.2.1\nport 65535\npath /p\n");
    const char* record = "agent http://acs/#x http://192.0.2.1:65535/p";
    EXPECT_EQ(sandbox.run("--agent agent get --live Device.Box.Name").calls,
              std::string("Box_Name 0 [00000000] ") + record + "\n");
    EXPECT_EQ(sandbox.run("--agent agent set Device.Box.Late=").calls,
              std::string("begin\nBox_Late 1 [00000000] ") + record + "\nkeep\n");
    for (const std::string line :
         {"port 65536", "port -1", "port", "host 1192.1168.100.200", "host a b", "colour red"}) {
        sandbox.write("agent", line);
        const auto result = sandbox.run("--agent agent get Device.Box.Name");
        EXPECT_EQ(result.exit, 4) << line;
        EXPECT_EQ(result.err, "dm: agent: not understood: " + line + "\n");
    }
    EXPECT_EQ(sandbox.run("--agent nowhere get Device.Box.Name").err, "dm: nowhere: cannot be read\n");
}

TEST_F(Dm, HandsTheLogLevelOnOrShowsTheMessages) {
    EXPECT_EQ(sandbox.run("get Device.Box.Name --log 6").err, "level 6 syslog 0\nnoise of Box_Name\n");
    EXPECT_EQ(sandbox.run("get Device.Box.Name --why").err,
              "level -1 syslog 0\ndm: why: [f 6] a\\tb\nnoise of Box_Name\n");
}

struct ErrorRow {
    const char* arguments;
    int exit;
    const char* line;
    const char* environment = "";
};

TEST_F(Dm, NamesPathAndFaultOfEachError) {
    const ErrorRow rows[] = {
        {"get Device.Box.Nothing", 3, "dm: Device.Box.Nothing: fault 9005: unknown path\n"},
        {"get Device.Box", 3,
         "dm: Device.Box: fault 9005: an object's path ends in '.'; did you mean Device.Box.?\n"},
        {"get Device.Box.Name.", 3, "fault 9005: a parameter's path does not end in '.'; did you mean"},
        {"get Device..Name", 2, "fault 9005: the path has an empty segment\n"},
        {"get Box.Name", 2, "fault 9005: the path has no root object; did you mean Device.Box.Name?\n"},
        {"get Divice.box.Nmae", 2, "; did you mean Device.Box.Name?\n"},
        {"get Device.Box.Rul.7.Name", 3, "unknown path; did you mean Device.Box.Rule.7.Name?\n"},
        {"get ''", 2, "fault 9005: the path is empty\n"},
        {"get Device.Box.Port.0.Speed", 2, "fault 9005: '0' is not an instance number\n"},
        {"get Device.Box.Port.Speed", 2,
         "'Speed' is not an instance number; did you mean Device.Box.Port.*.Speed?\n"},
        {"get Device.Box.Port.99999999999.Speed", 2, "'99999999999' is not an instance number\n"},
        {"get Device.Box.Port.3.Speed", 3, "fault 9005: there is no instance 3 of Device.Box.Port.{i}.\n"},
        {"get Device.Box.Port.1.Queue.3.", 3, "there is no instance 3 of Device.Box.Port.1.Queue.{i}.\n"},
        {"get Device.Box.Rule.4.Name", 3, "there is no instance 4 of Device.Box.Rule.{i}.\n"},
        {"get Device.Box.Port.", 1, "'many' is not a number of instances\n", "AGENT_PORTS=many"},
        {"get Device.Box.Port.", 1, "'4097' is not a number of instances\n", "AGENT_PORTS=4097"},
        {"get Device.Faulty.Broken", 1, "dm: Device.Faulty.Broken: fault 9002: the value cannot be read\n"},
        {"get Device.Faulty.Absent", 4, "fault 9002: the library has no handler Faulty_Absent\n"},
        {"set Device.Box.Port.*.Speed=1", 2, "'*' is not an instance number; did you mean"},
        {"set - <model/10-box.txt", 2, "dm: standard input:3: PATH=VALUE expected\n"},
        {"import values", 2, "dm: values:1: a backslash begins"},
        {"set Device.Box.Text=1", 6, "dm: Device.Box.Text: fault 9008: the parameter is read-only\n"},
        {"set Device.Box.Name=1 Device.Box.Name=2", 2, "dm: Device.Box.Name: fault 9003: set twice\n"},
        {"set Device.Box.Name", 2, "dm: Device.Box.Name: PATH=VALUE expected\n"},
        {"set Device.Box.=1", 3, "dm: Device.Box.: fault 9005: an object has no value\n"},
        {"set Device.Box.Name=1 Device.Faulty.Absent=1", 4, "the library has no handler Faulty_Absent\n"},
        {"recover", 1, "cannot be undone whole\n", "AGENT_END=-1"},
        {"add Device.Box.Rule.", 1, "dm: configuration: fault 9002: another program", "AGENT_BEGIN=-1"},
        {"set Device.Box.Name=refuse1", 1, "fault 9007: the value was refused in the apply pass\n"},
        {"set Device.Box.Name=refuse3", 1, "refused in the check pass: why\n", "AGENT_REASON=why"},
        {"get Device.Faulty.Broken", 1, "the value cannot be read: why\n", "AGENT_REASON=why"},
        {"add Device.Box.Rule.", 1, "no instance can be added: why\n",
         "AGENT_OBJECT_ANSWER=1 AGENT_REASON=why"},
        {"add Device.Box.Rule.", 1, "dm: Device.Box.Rule.: fault 9003: no instance can be added\n",
         "AGENT_OBJECT_ANSWER=1"},
        {"add Device.Box.Rule.", 1, "fault 9005: no instance can be added\n", "AGENT_OBJECT_ANSWER=9005"},
        {"add Device.Box.Rule.", 1, "fault 9002: the handler answered no instance number\n", "AGENT_ADDED=x"},
        {"add Device.Box.Port.", 6, "fault 9005: instances of this object are fixed\n"},
        {"add Device.Box.", 3, "fault 9005: the path names no multi-instance object\n"},
        {"del Device.Box.Rule.3.", 1, "dm: Device.Box.Rule.3.: fault 9003: the instance cannot be deleted\n",
         "AGENT_OBJECT_ANSWER=1"},
        {"del Device.Box.Rule.4.", 3, "there is no instance 4 of Device.Box.Rule.{i}.\n"},
        {"del Device.Box.Rule.", 3, "fault 9005: the path names no instance\n"},
        {"get $(printf 'Device.\\033c')", 3, "dm: Device.\\x1bc: fault 9005: unknown path\n"},
        {"--root nowhere get Device.Box.Name", 5, "dm: nowhere: the root cannot be entered: No such file"},
        {"--library nowhere.so get Device.Box.Name", 4, "dm: nowhere.so: cannot be loaded: "},
        {"--library model/10-box.txt get Device.Box.Name", 4, "cannot be loaded: "},
        {"--model nowhere get Device.Box.Name", 4, "dm: nowhere: no model: No such file"},
        {"get Device.Box.Name >/dev/full", 5, "dm: standard output: cannot be written\n"},
        {"get", 2, "PATH is required"},
        {"", 2, "dm: dm: a command is missing\n"},
        {"diagnose pong 192.0.2.1", 2, "dm: pong: no such test; did you mean ping?\n"},
        {"diagnose traceroute h --tries zwei", 2, "zwei not in range 1 to 10"},
    };
    sandbox.write("values", "Device.Box.Name=\\x4g\n");
    for (const ErrorRow& row : rows) {
        const auto result = sandbox.run(row.arguments, row.environment);
        EXPECT_EQ(result.exit, row.exit) << row.arguments;
        EXPECT_NE(result.err.find(row.line), std::string::npos) << row.arguments << "\n" << result.err;
    }
}

TEST_F(Dm, ChecksTypesAndNormalisesBooleansBeforeAHandlerIsCalled) {
    struct {
        const char* assignment;
        const char* given;  // to the handler; nullptr: the fault
        int fault = 0;
    } const rows[] = {
        {"Switch=true", "1"},
        {"Switch=false", "0"},
        {"Switch=1", "1"},
        {"Switch=yes", nullptr, 9006},
        {"Switch=", nullptr, 9006},
        {"Number=-3", "-3"},
        {"Number=9", "9"},
        {"Number=-4", nullptr, 9007},
        {"Number=10", nullptr, 9007},
        {"Number=zwei", nullptr, 9006},
        {"Number=", nullptr, 9006},
        {"Number=1.5", nullptr, 9006},
        {"Counter=4294967295", "4294967295"},
        {"Counter=4294967296", nullptr, 9006},
        {"Counter=-1", nullptr, 9006},
        {"Word=b", "b"},
        {"Word=c", nullptr, 9007},
        {"Text=ab", "ab"},
        {"Text=a", nullptr, 9007},
        {"Text=abcd", nullptr, 9007},
        {"Address=192.0.2.255", "192.0.2.255"},
        {"Address=192.0.2.256", nullptr, 9006},
        {"Address=192.0.2", nullptr, 9006},
        {"Card=00:00:5e:00:53:FF", "00:00:5e:00:53:FF"},
        {"Card=00:00:5e:00:53", nullptr, 9006},
        {"Card=00:00:5e:00:53:0g", nullptr, 9006},
        {"Time=2024-05-01T12:00:00Z", "2024-05-01T12:00:00Z"},
        {"Time=yesterday-at-noon..", nullptr, 9006},
    };
    for (const auto& row : rows) {
        const auto result = sandbox.run(std::string("set Device.Typed.") + row.assignment);
        if (row.given) {
            EXPECT_TRUE(
                result.calls.starts_with(std::string("begin\nBox_Name 2 [00000000] ") + row.given + "\n"))
                << row.assignment << result.calls;
        } else {
            EXPECT_EQ(result.calls, "") << row.assignment;
            EXPECT_NE(result.err.find("fault " + std::to_string(row.fault)), std::string::npos)
                << row.assignment << result.err;
        }
    }
    EXPECT_EQ(sandbox.run("set Device.Box.Port.1.Queue.1.Weight=1,10").exit, 1);
}

TEST_F(Dm, RefusesABrokenModel) {
    const ErrorRow rows[] = {
        {"Device.A", 4, "model/30.txt:1: the access is missing"},
        {"Device.A X", 4, "unknown access X"},
        {"Other.A R", 4, "not below a root object"},
        {"Device.A. -", 4, "an object ends with {i}."},
        {"Device.A..B R", 4, "empty path segment"},
        {"\n\nDevice.A R string colour=red", 4, "model/30.txt:3: unknown attribute colour=red"},
        {"Device.A R", 4, "the type is missing"},
        {"Device.A R strong", 4, "unknown type strong"},
        {"Device.A R boolean[1:2]", 4, "unknown type boolean[1:2]"},
        {"Device.A R int(3)", 4, "unknown type int(3)"},
        {"Device.A R string(a)", 4, "unknown type string(a)"},
        {"Device.A R string notify=always", 4, "unknown notify=always"},
        {"Device.A R string group=lan", 4, "unknown attribute group=lan"},
        {"Device.A R string differs=kept:X", 4, "differs= takes a reason"},
        {"Device.A R string differs=lost:W", 4, "unknown differs=lost:W"},
        {"Device.A.{i}. - count=Device.B", 4, "count= names no parameter"},
        {"Device.A.{i}. - instances=0", 4, "instances= takes a number from 1"},
        {"Device.A.{i}. -", 4, "tells no number of instances"},
        {"Device.A.{i}.B R string", 4, "Device.A.{i}.: the model has no line for this object"},
        {"Device.A R string\nDevice.A W string", 4, "a second line for Device.A"},
        {"Device.A R string\nDevice.A.B R string", 4, "a parameter with others below"},
        {"Device.A.{i}. AD\nDevice.A.B R string", 4, "names beside instance numbers"},
        {"Device.A R string locate=1", 4, "locate= takes positions"},
    };
    for (const ErrorRow& row : rows) {
        sandbox.write("model/30.txt", row.arguments);
        const auto result = sandbox.run("names");
        EXPECT_EQ(result.exit, row.exit) << row.arguments;
        EXPECT_NE(result.err.find(row.line), std::string::npos) << row.arguments << "\n" << result.err;
    }
}

TEST_F(Dm, EntersTheRouterRootBeforeItLoadsAnything) {
    const auto result = sandbox.run_bare(
        "--root . --library /library.so --model /model get --live Device.Box.Name", "AGENT_CALLS=/calls");
    if (result.exit == 5) GTEST_SKIP() << "neither chroot nor a user namespace is allowed here";
    EXPECT_EQ(result.out, "Device.Box.Name  box\n");
    EXPECT_EQ(result.calls, "Box_Name 0 [00000000]\n");
}

}  // namespace
