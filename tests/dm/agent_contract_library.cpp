// A data-model library for the tests of dm. Each call leaves one line in the file that AGENT_CALLS names, "NAME.2,1 3 x"
// with its instance numbers, operation and text, spoils its instance array as real handlers may, and prints a line on
// standard output.
#include <cwmp/agent_state.h>
#include <cwmp/handler.h>
#include <cwmp/staged_objects.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#define EXPORT extern "C" __attribute__((visibility("default")))

namespace {

const char* setting(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value ? value : otherwise;
}

void (*told)(int, const char*) = nullptr;

void note(const std::string& line) {
    std::ofstream(setting("AGENT_CALLS", "/dev/null"), std::ios::app) << line << "\n";
}

void record(const char* name, int op, int* locate, const char* text) {
    std::printf("noise of %s\n", name);
    if (told) told(7, "[f 7] debug\n");
    if (told) told(6, "[f 6] a\tb\n\n");
    std::string line = name;
    for (int i = 0; i < CWMP_LOCATE_SIZE; locate[i++] = 99)
        if (locate[i]) line += (i ? ',' : '.') + std::to_string(locate[i]);
    note(line + ' ' + std::to_string(op) + (*text ? " " : "") + text);
}

int answer(const char* name, const char* otherwise, const char* call) {
    note(call);
    return std::atoi(setting(name, otherwise));
}

// A SET is refused in the pass whose operation number its value ends in: "refuse3".
int parameter(const char* name, int op, va_list args, const char* answer, unsigned flag) {
    int* locate = va_arg(args, int*);
    char* value = va_arg(args, char*);
    unsigned* flags = op == CWMP_OP_GET ? nullptr : va_arg(args, unsigned*);
    const auto* agent = va_arg(args, const cwmp_agent_state*);
    std::string text = flags ? value : "";
    if (agent) text = text + agent->acs_url + ' ' + agent->host + ' ' + std::to_string(agent->port) + agent->path;
    record(name, op, locate, text.c_str());
    if (flags ? value == "refuse" + std::to_string(op) : !answer) return -1;
    if (flags)
        *flags |= flag;
    else
        std::strcpy(value, answer);
    return 0;
}

// A field of a group.
template <typename Record>
int grouped(int result, int op, Record& staging, Record& revert, char* field) {
    if (op == CWMP_OP_STAGE) field[0] = 'x';
    if (op == CWMP_OP_CHECK && result == 0) staging.checked = revert.checked = 1;
    if (op == CWMP_OP_APPLY || result != 0) staging = {};
    return result;
}

int object(const char* name, int op, va_list args) {
    int* locate = va_arg(args, int*);
    void* second = va_arg(args, void*);
    void* third = va_arg(args, void*);
    record(name, op, locate, op == CWMP_OP_DELETE ? static_cast<const char*>(second) : "");
    if (op == CWMP_OP_LIST) {
        const uint32_t numbers[] = {2, 3, 70};
        if (*static_cast<uint32_t*>(third) < 64) return 1;
        std::memcpy(second, numbers, sizeof numbers);
        return 0;
    }
    if (const int refused = std::atoi(setting("AGENT_OBJECT_ANSWER", "0"))) return refused;
    if (op == CWMP_OP_ADD) std::strcpy(static_cast<char*>(second), setting("AGENT_ADDED", "70"));
    *static_cast<unsigned*>(third) |= 0x80;
    return 0;
}

}  // namespace

#define HANDLER(NAME, CALL) \
    EXPORT int NAME(int op, va_list args) { return CALL; }
#define PARAMETER(NAME, ANSWER, FLAG) HANDLER(NAME, parameter(#NAME, op, args, ANSWER, FLAG))
#define GROUPED(NAME, RECORD, FIELD) \
    HANDLER(NAME, grouped(parameter(#NAME, op, args, "", 0), op, RECORD, RECORD##_revert, RECORD.FIELD))

PARAMETER(Box_Name, "box", 0x30)
PARAMETER(Box_Text, "a\x1b[2J\n\xff\xc2\x9b\xe2\x80\xaez\xc3\xa9", 0)
PARAMETER(Box_Broken, nullptr, 0)
PARAMETER(Box_Late, "", static_cast<unsigned>(std::strtoul(setting("AGENT_FLAGS", "0x4000"), nullptr, 0)))
PARAMETER(Box_PortNumberOfEntries, setting("AGENT_PORTS", "2"), 0)
PARAMETER(Box_Port_Speed, "100", 0x1)
PARAMETER(Queue_Weight, "5", 0x10008)
PARAMETER(Box_Rule_Name, "rule", 0)
char counted[] = "0";
PARAMETER(Box_Count, (++counted[0], counted), 0)
HANDLER(Box_Rule, object("Box_Rule", op, args))

cwmp_lan_record lan_obj_data, lan_obj_data_revert;
cwmp_dhcp_record dhcp_obj_data, dhcp_obj_data_revert;
GROUPED(Lan_Address, lan_obj_data, address)
GROUPED(Lan_Mask, lan_obj_data, mask)
GROUPED(Pool_Start, dhcp_obj_data, start_address)

EXPORT void cwmp_bulk_read_begin(void) { note("bulk"); }
EXPORT void cwmp_bulk_read_end(void) { note("bulk end"); }
EXPORT int cwmp_transaction_begin(int) { return answer("AGENT_BEGIN", "0", "begin"); }
EXPORT int cwmp_transaction_end(int keep, unsigned* flags) {
    *flags |= keep ? 0 : 0x40;
    return answer("AGENT_END", "0", keep ? "keep" : "undo");
}
EXPORT int cwmp_transaction_recover(unsigned* flags) { return *flags |= 0x40, answer("AGENT_END", "1", "recover"); }
EXPORT void cwmp_listen(void (*listener)(int level, const char* line)) { told = listener; }
EXPORT const char* cwmp_last_refusal(void) { return setting("AGENT_REASON", ""); }
EXPORT int debug_level(int, va_list args) {
    const int* levels = va_arg(args, int*);
    return std::printf("level %d syslog %d\n", levels[0], levels[1]) < 0;
}
