#include "host.h"

#include <malloc.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include "cwmp/handler.h"
#include "cwmp/transaction.h"
#include "cwmp/uci_access.h"
#include "library.h"
#include "rows.h"

namespace host {
namespace {

const cwmp::Library* library = nullptr;
#define LIBRARY(name) library->function<decltype(::name)>(#name)
unsigned flags = 0;

// A parameter of the first instance, where there are any, or a table that is in none.
int call(const std::string& handler, int op, const char* text) {
    int locate[CWMP_LOCATE_SIZE] = {op == CWMP_OP_ADD || op == CWMP_OP_DELETE ? 0 : 1};
    return cwmp::call(library->find(handler), op, locate, text, &flags);
}

// "HANDLER=VALUE HANDLER=VALUE" in all three passes; with a pass, one more is refused there.
bool set_all(const std::string& settings, int refused_pass = 0) {
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        for (std::string value : rows::words(settings)) {
            const std::string handler = rows::take_until(value, "=");
            if (call(handler, op, value.c_str()) != 0) return false;
        }
        if (op == refused_pass && call("ManagementServer_EnableCWMP", op, "maybe") != 0) return false;
    }
    return true;
}

// The number of the new instance; empty when it was refused.
std::string add_mapping() {
    char number[16] = "";
    return call("NAT_PortMapping", CWMP_OP_ADD, number) == 0 ? number : "";
}

bool erase(const char* object, const std::string& number) { return call(object, CWMP_OP_DELETE, number.c_str()) == 0; }

// Three packages, one of them with a side copy, an added and a deleted instance, two groups.
int transaction(int refused_pass) {
    const std::string lan = "LANDevice_LANHostConfigManagement_", address = lan + "IPInterface_IPInterface";
    const std::string settings =
        "DeviceInfo_ProvisioningCode=changed ManagementServer_PeriodicInformInterval=4711 WiFi_SSID_SSID=changed " +
        address + "SubnetMask=255.255.0.0 " + lan + "MinAddress=192.168.0.110 " + address + "IPAddress=192.168.3.1";
    if (LIBRARY(cwmp_transaction_begin)(10'000) != 0) return kBusy;
    const bool done =
        !add_mapping().empty() && erase("DHCPv4_Server_Pool_StaticAddress", "1") && set_all(settings, refused_pass);
    if (LIBRARY(cwmp_transaction_end)(done, &flags) != 0) return kNotUndone;
    return done ? kDone : kUndone;
}

bool repeat(int rounds, const std::function<bool(int)>& round) {
    int done = 0;
    while (done < rounds && round(done + 1)) ++done;
    return done == rounds;
}

bool write_and_read(const char* package, const std::string& section, const std::string& option,
                    const std::string& value) {
    char read[64];
    return LIBRARY(uciRawSetValue)(package, section.c_str(), option.c_str(), value.c_str()) == 0 &&
           LIBRARY(uciRawGetValue)(package, section.c_str(), option.c_str(), read) == 0 && read == value;
}

std::string get(const char* handler) {
    static char value[CWMP_VALUE_SIZE];
    return call(handler, CWMP_OP_GET, value) == 0 ? value : "refused";
}

// Another child of the agent dies, a timer ticks: no read is cut short, whatever the handler's flags.
void send_signals() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 300}, {0, 300}};
    setitimer(ITIMER_REAL, &often, nullptr);
}

// Memory, descriptors, zombies: all of them are given back.
bool call_often(int rounds) {
    const auto some_calls = [](int i) {
        get("DeviceInfo_ModelName"), get("WiFi_SSID_SSID"), get("Hosts_HostNumberOfEntries");
        if (i % 8 == 0) set_all(i % 16 == 0 ? "DeviceInfo_ProvisioningCode=a" : "DeviceInfo_ProvisioningCode=b");
        return i % 64 != 0 || (erase("NAT_PortMapping", add_mapping()) && transaction(CWMP_OP_APPLY) == kUndone);
    };
    constexpr int kWarm = 130;
    constexpr std::size_t kMore = 65'536;
    if (!repeat(kWarm, some_calls)) return false;
    const std::size_t before = mallinfo2().uordblks;
    const int descriptor = dup(STDIN_FILENO);  // the lowest that is free
    close(descriptor);
    const bool done = repeat(rounds / 4, some_calls);
    const bool zombies = waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
    return done && !zombies && mallinfo2().uordblks <= before + kMore && dup(STDIN_FILENO) == descriptor;
}

// A round of what is repeated; values and mappings of its own are named by the caller, and read back each time.
bool one_round(const std::string& operation, const std::string& name, int number) {
    if (operation == "option") return set_all("DeviceInfo_ProvisioningCode=changed");
    if (operation == "add") return !add_mapping().empty();
    if (operation == "scan") return set_all("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState=Requested");
    if (operation == "refused") return transaction(CWMP_OP_APPLY) == kUndone;
    if (operation == "write") return write_and_read("custom", "DeviceInfo", name, std::to_string(number));
    if (operation == "read") return get("DeviceInfo_ModelName") == name;
    const auto mapping = add_mapping();
    return write_and_read("nat", mapping, "description", name) && erase("NAT_PortMapping", mapping);
}

}  // namespace

int run(const std::string& operation, const std::string& detail, std::string name) {
    library = new cwmp::Library("/usr/lib/libcwmp-datamodel.so");
    *static_cast<int32_t*>(library->data("l_dbglvl")) = -1;
    const int number = std::atoi(detail.c_str());
    if (operation == "transaction") return transaction(number);
    if (operation == "recover") {
        const int undone = LIBRARY(cwmp_transaction_recover)(&flags);
        return undone < 0 ? kNotUndone : undone;
    }
    if (operation == "often") return call_often(number) ? kDone : kUndone;
    if (operation == "read") name = get("DeviceInfo_ModelName"), send_signals();
    // Beside a thread that is in popen at any time, as the agent's may be: no job waits for that one's locks.
    std::jthread other;
    if (name == "popen")
        other = std::jthread([](const std::stop_token& stop) {
            while (!stop.stop_requested()) pclose(popen("true", "r"));
        });
    const auto round = [&](int i) { return one_round(operation, name, i); };
    return repeat(std::max(1, number), round) ? kDone : kUndone;
}

}  // namespace host
