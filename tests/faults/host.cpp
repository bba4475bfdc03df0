#include "host.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

#include "cwmp/handler.h"
#include "cwmp/transaction.h"
#include "cwmp/uci_access.h"

namespace host {
namespace {

void* library = nullptr;

template <typename Function>
Function* symbol(Function*, const char* name) {
    void* found = dlsym(library, name);
    if (found == nullptr) std::abort();
    return reinterpret_cast<Function*>(found);
}
#define LIBRARY(name) symbol(&::name, #name)

int call(const char* handler, int op, ...) {
    va_list list;
    va_start(list, op);
    const int result = reinterpret_cast<cwmp_handler>(dlsym(library, handler))(op, list);
    va_end(list);
    return result;
}

struct Setting {
    const char* handler;
    const char* value;
    int instance = 0;
    int only_pass = 0;
};

bool set_all(const std::vector<Setting>& settings) {
    unsigned flags = 0;
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        for (const Setting& setting : settings) {
            int locate[CWMP_LOCATE_SIZE] = {setting.instance};
            if (setting.only_pass != 0 && setting.only_pass != op) continue;
            if (call(setting.handler, op, locate, setting.value, &flags) != 0) return false;
        }
    }
    return true;
}

// The number of the new instance; 0 when it was refused.
int add_mapping() {
    int locate[CWMP_LOCATE_SIZE] = {};
    char number[16] = "";
    unsigned flags = 0;
    return call("NAT_PortMapping", CWMP_OP_ADD, locate, number, &flags) == 0 ? std::atoi(number) : 0;
}

bool erase(const char* object, const char* number) {
    int locate[CWMP_LOCATE_SIZE] = {};
    unsigned flags = 0;
    return call(object, CWMP_OP_DELETE, locate, number, &flags) == 0;
}

// Three packages, one of them with a side copy, an added and a deleted instance, two groups.
int transaction(int refused_pass) {
    constexpr const char* kLan = "LANDevice_LANHostConfigManagement_";
    const std::string mask = std::string(kLan) + "IPInterface_IPInterfaceSubnetMask";
    const std::string address = std::string(kLan) + "IPInterface_IPInterfaceIPAddress";
    const std::string pool = std::string(kLan) + "MinAddress";
    std::vector<Setting> settings = {{"DeviceInfo_ProvisioningCode", "changed"},
                                     {"ManagementServer_PeriodicInformInterval", "4711"},
                                     {"WiFi_SSID_SSID", "changed", 2},
                                     {mask.c_str(), "255.255.0.0"},
                                     {pool.c_str(), "192.168.0.110"},
                                     {address.c_str(), "192.168.3.1"}};
    if (refused_pass != 0) settings.push_back({"ManagementServer_EnableCWMP", "maybe", 0, refused_pass});
    unsigned flags = 0;
    if (LIBRARY(cwmp_transaction_begin)(10'000) != 0) return kBusy;
    const bool done =
        add_mapping() != 0 && erase("DHCPv4_Server_Pool_StaticAddress", "1") && set_all(settings);
    if (LIBRARY(cwmp_transaction_end)(done, &flags) != 0) return kNotUndone;
    return done ? kDone : kUndone;
}

// A value of its own with each round, read back each time.
int write_option(const char* option, int rounds) {
    char read[64];
    for (int i = 1; i <= rounds; ++i) {
        const auto value = std::to_string(i);
        if (LIBRARY(uciRawSetValue)("custom", "DeviceInfo", option, value.c_str()) != 0) return kUndone;
        if (LIBRARY(uciRawGetValue)("custom", "DeviceInfo", option, read) != 0 || read != value)
            return kUndone;
    }
    return kDone;
}

// Adds and deletes a mapping of its own, beside others that do.
int add_and_delete(const char* name, int rounds) {
    char read[64];
    for (int i = 0; i < rounds; ++i) {
        const auto number = std::to_string(add_mapping());
        const auto set = LIBRARY(uciRawSetValue);
        if (number == "0" || set("nat", number.c_str(), "description", name) != 0) return kUndone;
        if (LIBRARY(uciRawGetValue)("nat", number.c_str(), "description", read) != 0) return kUndone;
        if (std::strcmp(read, name) != 0 || !erase("NAT_PortMapping", number.c_str())) return kUndone;
    }
    return kDone;
}

std::string get(const char* handler) {
    static char value[CWMP_VALUE_SIZE];
    int locate[CWMP_LOCATE_SIZE] = {1, 1};
    value[0] = '\0';
    return call(handler, CWMP_OP_GET, locate, value) == 0 ? value : "refused";
}

// Another child of the agent dies, a timer ticks: no read is cut short, whatever the handler's flags.
int read_under_signals(int rounds) {
    const std::string expected = get("DeviceInfo_ModelName");
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 300}, {0, 300}};
    setitimer(ITIMER_REAL, &often, nullptr);
    for (int i = 0; i < rounds; ++i)
        if (get("DeviceInfo_ModelName") != expected) return kUndone;
    return kDone;
}

long resident_pages() {
    long size = 0, resident = 0;
    std::ifstream("/proc/" + std::to_string(getpid()) + "/statm") >> size >> resident;
    return resident;
}

// Every descriptor below this is closed again, so the next one has the same number.
int next_descriptor() {
    const int number = dup(STDIN_FILENO);
    close(number);
    return number;
}

int call_often(int rounds) {
    const auto round = [](int i) {
        get("DeviceInfo_ModelName");
        get("WiFi_SSID_SSID");
        get("Hosts_HostNumberOfEntries");
        if (i % 8 == 0) set_all({{"DeviceInfo_ProvisioningCode", i % 16 == 0 ? "a" : "b"}});
        if (i % 64 == 0) erase("NAT_PortMapping", std::to_string(add_mapping()).c_str());
        if (i % 64 == 0) transaction(CWMP_OP_APPLY);
    };
    constexpr int kWarm = 130;
    constexpr long kMorePages = 32;
    for (int i = 0; i < kWarm; ++i) round(i);
    const long before = resident_pages();
    const int descriptor = next_descriptor();
    for (int i = 0; i < rounds / 4; ++i) round(i);
    const bool zombies = waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
    const long more = resident_pages() - before;
    std::fprintf(stderr, "resident %ld pages before, %ld more after\n", before, more);
    return !zombies && more <= kMorePages && next_descriptor() == descriptor ? kDone : kUndone;
}

}  // namespace

int run(const std::string& operation, const std::string& detail) {
    library = dlopen("/usr/lib/libcwmp-datamodel.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return kBusy;
    *static_cast<int32_t*>(dlsym(library, "l_dbglvl")) = -1;
    if (const auto arm = reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "arm_faults"))) arm();
    const int number = std::atoi(detail.c_str());
    unsigned flags = 0;
    if (operation == "option") return set_all({{"DeviceInfo_ProvisioningCode", "changed"}}) ? kDone : kUndone;
    if (operation == "add") return add_mapping() != 0 ? kDone : kUndone;
    if (operation == "scan")
        return set_all({{"WiFi_NeighboringWiFiDiagnostic_DiagnosticsState", "Requested"}}) ? kDone : kUndone;
    if (operation == "transaction") return transaction(number);
    if (operation == "transactions") {
        int code = kUndone;
        for (int i = 0; i < number && code == kUndone; ++i) code = transaction(CWMP_OP_APPLY);
        return code == kUndone ? kDone : kBusy;
    }
    if (operation == "write-one" || operation == "write-two")
        return write_option(operation.c_str() + 6, number);
    if (operation == "add-one" || operation == "add-two")
        return add_and_delete(operation.c_str() + 4, number);
    if (operation == "signals") return read_under_signals(number);
    if (operation == "often") return call_often(number);
    if (operation == "recover") {
        const int result = LIBRARY(cwmp_transaction_recover)(&flags);
        return result == 0 ? kDone : result == 1 ? kUndone : kNotUndone;
    }
    return kBusy;
}

}  // namespace host
