// What holds of every parameter of the model.
#include "model.h"
#include "router_test.h"

namespace {

class Sweep : public RouterTest {};

// They look at their place first, take a write without effect, or say that they refuse; rows of theirs show it.
bool is_loud(const std::string& handler) {
    for (const char* part :
         {"Bridging_Bridge", "_Layer1Interface", "_Layer2Interface", "_FirstUseDate", "_DeviceLog",
          "_WLANConfiguration_T", "_TotalErrors", "_WANCommonInterfaceConfig_T", "_Stats_Ethernet",
          "WiFi_Radio_Stats_", "Security_Radius", "Security_X_QM_WEP"})
        if (handler.find(part) != std::string::npos) return true;
    return false;
}

TEST_F(Sweep, ReadOnlyParametersRefuseASetAndTouchNoArgument) {
    int seen = 0;
    forget();
    for (const ModelLine& line : model_lines()) {
        if (line.writable || line.is_object || is_loud(line.handler)) continue;
        ++seen;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY})
            EXPECT_EQ(call(handler(line.handler.c_str()), op, nullptr, nullptr, nullptr), -1) << line.handler;
    }
    EXPECT_GT(seen, 400);
    EXPECT_THAT(console(), IsEmpty());
    EXPECT_THAT(commands(), IsEmpty());
}

bool bears_secret(const ModelLine& line) {
    for (const char* end : {"Password", "Passphrase", "PreSharedKey", "WEPKey"})
        if (line.writable && line.handler.ends_with(end)) return true;
    return line.secret;
}

TEST_F(Sweep, NoPathReadsASecretBack) {
    const std::string secret = "open-sesame-42";
    world("+cwmp. | +network. | +network_sync. | +protocol. | wifi.ap:wifi | wifi.guest:wifi");
    level(-1);
    const auto lines = model_lines();
    int seen = 0;
    for (const ModelLine& line : lines) {
        if (!bears_secret(line)) continue;
        ++seen;
        for (const int number : {1, 2}) set(line.handler.c_str(), {number, 1}, secret);
        EXPECT_EQ(get(line.handler.c_str(), {1, 1}).value, "") << line.path;
    }
    EXPECT_GT(seen, 10);
    for (const char* place :
         {"wifi.ap.password", "wifi.guest.password", "protocol.l2tp.password", "protocol.pptp.password",
          "protocol.pppoe.password", "cwmp.info.password", "cwmp.info.conn_password",
          "cwmp.tr111.STUNPassword", "cwmp.xmpp_conn.password"})
        EXPECT_EQ(option(place), secret) << place;
    for (const ModelLine& line : lines) {
        if (line.is_object) continue;
        for (const Locate& locate : {Locate{1, 1, 1, 1}, Locate{2}, Locate{3}, Locate{4}})
            EXPECT_THAT(get(line.handler.c_str(), locate).value, Not(HasSubstr(secret))) << line.path;
    }
}

}  // namespace
