/*
 * A management agent in one file: what docs/integration.md says, done.
 *
 *   agent [LIBRARY [MODEL]]
 *
 * It shows each step on a router: read the model, get, list, set, add and delete, all or nothing, run a trace route
 * and wait for its end. What it leaves out: values checked against their types, more than one session. Exit status 0:
 * every step did what it should.
 */
#define _POSIX_C_SOURCE 200809L
#include <ctype.h>
#include <dlfcn.h>
#include <glob.h>
#include <poll.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "cwmp/agent_state.h"
#include "cwmp/apply_flags.h"
#include "cwmp/diagnostics.h"
#include "cwmp/handler.h"
#include "cwmp/last_refusal.h"
#include "cwmp/message_channel.h"
#include "cwmp/transaction.h"

/* TR-069's faults, as far as this agent tells them apart: 9002, 9003, then 9005, then 9007 and 9008. */
enum { DONE, INTERNAL_ERROR = 9002, INVALID_ARGUMENTS, INVALID_NAME = 9005, INVALID_VALUE = 9007, READ_ONLY };
enum { PATH_SIZE = 256, MOST_LINES = 2048, MOST_INSTANCES = 256, WAIT_MS = 10000 };

/* A line of the model: path with {i}, access, then the type of a parameter and attributes. */
struct line {
    char path[PATH_SIZE];
    char access[3];
    char rest[PATH_SIZE];
};

/* What a path names: Device.NAT.PortMapping.2.Enable is Device.NAT.PortMapping.{i}.Enable and the number 2. */
struct target {
    char pattern[PATH_SIZE * 2];
    const struct line* line; /* null when the model has none */
    int numbers[CWMP_LOCATE_SIZE];
    int count;
};

struct setting {
    const char* path;
    const char* value;
};

static struct line model[MOST_LINES];
static int lines;
static void* library;
static struct cwmp_agent_state agent_state = {7547, "/", "http://acs.example.com/", "192.0.2.10"};
static char value[CWMP_VALUE_SIZE]; /* of the last GET */

static void read_model(const char* directory) {
    char text[1024];
    glob_t files;
    snprintf(text, sizeof text, "%s/*.txt", directory);
    if (glob(text, 0, NULL, &files) != 0) return;
    for (size_t i = 0; i < files.gl_pathc; ++i) {
        FILE* file = fopen(files.gl_pathv[i], "r");
        while (file != NULL && lines < MOST_LINES && fgets(text, sizeof text, file) != NULL) {
            struct line* line = &model[lines];
            text[strcspn(text, "#\n")] = '\0';
            line->rest[0] = '\0';
            if (sscanf(text, "%255s %2s %255[^\n]", line->path, line->access, line->rest) >= 2) ++lines;
        }
        if (file != NULL) fclose(file);
    }
    globfree(&files);
}

static const struct line* line_of(const char* pattern) {
    int i = 0;
    while (i < lines && strcmp(model[i].path, pattern) != 0) ++i;
    return i < lines ? &model[i] : NULL;
}

/* The text of NAME=text, empty where there is none. */
static const char* attribute(const struct line* line, const char* name) {
    static char words[PATH_SIZE];
    const size_t length = strlen(name);
    for (char* word = strtok(strcpy(words, line->rest), " "); word != NULL; word = strtok(NULL, " ")) {
        if (strncmp(word, name, length) == 0 && word[length] == '=') return word + length + 1;
    }
    return "";
}

/* The handler is named after the path, unless the model says otherwise. */
static cwmp_handler handler_of(const struct line* line) {
    char name[PATH_SIZE] = "";
    char path[PATH_SIZE];
    char* part = strtok(strcpy(path, line->path), "."); /* the root object, which no name holds */
    while (part != NULL && (part = strtok(NULL, ".")) != NULL) {
        if (strcmp(part, "{i}") == 0) continue;
        if (name[0] != '\0') strcat(name, "_");
        strcat(name, part);
    }
    part = (char*)attribute(line, "handler");
    void* const symbol = dlsym(library, part[0] != '\0' ? part : name);
    cwmp_handler handler;
    memcpy(&handler, &symbol, sizeof handler);
    return handler;
}

/* The first so many instance numbers, or those that the model chooses. The array is fresh for every call. */
static void fill_locate(const struct target* target, int count, int locate[CWMP_LOCATE_SIZE]) {
    const char* chosen = attribute(target->line, "locate");
    memset(locate, 0, CWMP_LOCATE_SIZE * sizeof *locate);
    for (int i = 0; i < count && chosen[0] == '\0'; ++i) locate[i] = target->numbers[i];
    for (int i = 0; isdigit((unsigned char)*chosen) && i < CWMP_LOCATE_SIZE; ++i) {
        const int position = (int)strtol(chosen, (char**)&chosen, 10);
        if (position <= count) locate[i] = target->numbers[position - 1];
        if (*chosen == ',') ++chosen;
    }
}

/* Handlers take a variable-argument list that somebody else has opened. */
static int call(const struct line* line, int op, ...) {
    const cwmp_handler handler = handler_of(line);
    if (handler == NULL) return -1;
    va_list args;
    va_start(args, op);
    const int result = handler(op, args);
    va_end(args);
    fflush(stdout); /* handlers print there */
    return result;
}

static int get_target(const struct target* target) {
    int locate[CWMP_LOCATE_SIZE];
    fill_locate(target, target->count, locate);
    value[0] = '\0';
    return call(target->line, CWMP_OP_GET, locate, value, &agent_state) == 0 ? DONE : INTERNAL_ERROR;
}

/* The model names the parameter that counts an object's instances, below the same outer numbers, or their number. */
static int counted(const struct target* object) {
    struct target counter = *object;
    counter.line = line_of(attribute(object->line, "count"));
    counter.count = object->count - 1;
    if (counter.line == NULL) return atoi(attribute(object->line, "instances"));
    return get_target(&counter) == DONE ? atoi(value) : 0;
}

/* Which instances an object has; its own number, the last one of the target, is not looked at. */
static int list(const struct target* object, uint32_t numbers[MOST_INSTANCES]) {
    int locate[CWMP_LOCATE_SIZE];
    uint32_t capacity = MOST_INSTANCES;
    int count = 0;
    memset(numbers, 0, MOST_INSTANCES * sizeof *numbers);
    if (strcmp(object->line->access, "AD") == 0) {
        fill_locate(object, object->count - 1, locate);
        if (call(object->line, CWMP_OP_LIST, locate, numbers, &capacity) != 0) return 0;
        while (count < MOST_INSTANCES && numbers[count] != 0) ++count; /* no count is told */
    } else {
        const int last = counted(object); /* fixed instances have no list: they are numbered from 1 */
        for (; count < last && count < MOST_INSTANCES; ++count) numbers[count] = (uint32_t)count + 1;
    }
    return count;
}

static int has(const struct target* object, long number) {
    uint32_t numbers[MOST_INSTANCES];
    int count = list(object, numbers);
    while (count > 0 && (long)numbers[count - 1] != number) --count;
    return count > 0;
}

static int append(struct target* target, const char* text, size_t length) {
    strncat(target->pattern, text, length);
    target->line = line_of(target->pattern);
    return target->line != NULL;
}

/* A handler that answers 0 does not say that the instance exists: each number on the way is looked up. */
static int resolve(const char* path, struct target* target) {
    const char* part = path;
    memset(target, 0, sizeof *target);
    if (strlen(path) >= PATH_SIZE) return INVALID_NAME;
    while (*part != '\0') {
        const size_t length = strcspn(part, ".");
        const long number = isdigit((unsigned char)*part) ? strtol(part, NULL, 10) : 0;
        if (number == 0) {
            append(target, part, length + (part[length] == '.'));
        } else {
            if (target->count++ == CWMP_LOCATE_SIZE) return INVALID_NAME;
            if (!append(target, "{i}.", 4) || !has(target, number)) return INVALID_NAME;
            target->numbers[target->count - 1] = (int)number;
        }
        part += length + (part[length] == '.');
    }
    return target->line != NULL ? DONE : INVALID_NAME;
}

static int get(const char* path) {
    struct target target;
    return resolve(path, &target) == DONE ? get_target(&target) : INVALID_NAME;
}

static int set_one(const struct setting* setting, int pass, unsigned int* flags) {
    struct target target;
    int locate[CWMP_LOCATE_SIZE];
    if (resolve(setting->path, &target) != DONE) return INVALID_NAME;
    if (strcmp(target.line->access, "W") != 0) return READ_ONLY;
    if (strcmp(attribute(target.line, "passes"), "apply") == 0 && pass != CWMP_OP_APPLY) return DONE;
    fill_locate(&target, target.count, locate);
    if (call(target.line, pass, locate, setting->value, flags, &agent_state) == 0) return DONE;
    printf("  refused: %s\n", cwmp_last_refusal()); /* the FaultString: at once, before the next call */
    return INVALID_VALUE;
}

/* Every setting staged, then every one checked, then every one applied. */
static int set_all(const struct setting* settings, int count, unsigned int* flags) {
    static const int passes[] = {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY};
    int fault = DONE;
    for (int pass = 0; pass < 3; ++pass) {
        for (int i = 0; i < count && fault == DONE; ++i) fault = set_one(&settings[i], passes[pass], flags);
    }
    return fault;
}

/* What an agent does with the flags: restart what the settings belong to. */
static void act_on(unsigned int flags) {
    printf("  to restart:%s%s%s\n", flags & CWMP_APPLY_MANAGEMENT_SERVER ? " management server" : "",
           flags & CWMP_APPLY_NAT ? " NAT" : "", flags & CWMP_APPLY_DHCP_SERVER ? " DHCP server" : "");
    if (flags & CWMP_APPLY_TRACE_ROUTE) libdiagnostics_startTraceRoute();
}

/* A transaction that did not end well is undone; what it raised wants no service then. */
static int end(int fault, unsigned int flags) {
    unsigned int undone = 0;
    if (cwmp_transaction_end(fault == DONE, &undone) != 0) puts("  not everything could be undone");
    act_on(fault == DONE ? flags : undone);
    return fault;
}

/* One SetParameterValues. */
static int set(const struct setting* settings, int count) {
    unsigned int flags = 0;
    if (cwmp_transaction_begin(WAIT_MS) != 0) return INTERNAL_ERROR;
    const int fault = set_all(settings, count, &flags);
    return end(fault, flags);
}

/* Add and delete, with locate for the outer numbers: what they refuse with is 1 or a fault. */
static int change(const struct target* object, int op, char* number, unsigned int* flags) {
    int locate[CWMP_LOCATE_SIZE];
    if (strcmp(object->line->access, "AD") != 0) return INVALID_ARGUMENTS;
    fill_locate(object, object->count - 1, locate);
    const int result = call(object->line, op, locate, number, flags);
    return result == 1 ? INVALID_ARGUMENTS : result;
}

/* AddObject of "Device.NAT.PortMapping." and a parameter of the new instance, all or nothing. */
static int add(const char* path, const char* name, const char* text, char instance[PATH_SIZE]) {
    struct target object;
    char number[12] = "";
    char parameter[PATH_SIZE * 2];
    const struct setting setting = {parameter, text};
    unsigned int flags = 0;
    resolve(path, &object); /* the outer numbers; the model's line is that of an instance */
    ++object.count;
    if (!append(&object, "{i}.", 4)) return INVALID_NAME;
    if (cwmp_transaction_begin(WAIT_MS) != 0) return INTERNAL_ERROR;
    int fault = change(&object, CWMP_OP_ADD, number, &flags);
    snprintf(instance, PATH_SIZE, "%s%s.", path, number);
    snprintf(parameter, sizeof parameter, "%s%s", instance, name);
    if (fault == DONE) fault = set_all(&setting, 1, &flags);
    return end(fault, flags);
}

/* DeleteObject of "Device.NAT.PortMapping.2."; a single call needs no transaction. */
static int delete (const char* instance) {
    struct target object;
    char number[12];
    unsigned int flags = 0;
    int fault = resolve(instance, &object);
    if (fault != DONE || object.count == 0) return INVALID_NAME;
    snprintf(number, sizeof number, "%d", object.numbers[object.count - 1]);
    fault = change(&object, CWMP_OP_DELETE, number, &flags);
    act_on(flags);
    return fault;
}

/* A test ends with a message; an agent has the descriptor in its main loop. */
static int wait_for_test(struct cwmp_message_handle* channel, int seconds) {
    struct cwmp_message message = {0};
    struct pollfd input = {.fd = channel->descriptor, .events = POLLIN};
    while (message.type != CWMP_MESSAGE_DIAGNOSTICS_COMPLETE) {
        if (poll(&input, 1, seconds * 1000) != 1 || msg_recv(channel, &message) != 0) return INTERNAL_ERROR;
    }
    return DONE;
}

#define SET(...) set((struct setting[]){__VA_ARGS__}, 2)

static int failures;

static void expect(int fault, int wanted, const char* step) {
    printf("%-52s %d\n", step, fault);
    if (fault != wanted) ++failures;
}

/* The value that is wanted, any with null. */
static void show(const char* path, const char* wanted) {
    expect(get(path), DONE, path);
    printf("  = %s\n", value);
    if (wanted != NULL && strcmp(value, wanted) != 0) ++failures;
}

int main(int argc, char** argv) {
    static const char* const interval = "Device.ManagementServer.PeriodicInformInterval";
    static const char* const range_end = "Device.DHCPv4.Server.Pool.1.MaxAddress";
    static const char* const host = "Device.IP.Diagnostics.TraceRoute.Host";
    static const char* const state = "Device.IP.Diagnostics.TraceRoute.DiagnosticsState";
    static const char* const mappings = "Device.NAT.PortMapping.";
    struct cwmp_message_handle channel = {0};
    char instance[PATH_SIZE];
    unsigned int flags = 0;

    library = dlopen(argc > 1 ? argv[1] : "libcwmp-datamodel.so", RTLD_NOW);
    read_model(argc > 2 ? argv[2] : "/usr/share/cwmp-datamodel/model");
    if (library == NULL || lines == 0) return fprintf(stderr, "no library or no model\n"), 1;
    if (cwmp_transaction_recover(&flags) != 0) act_on(flags); /* an agent was killed in a transaction */

    show("Device.DeviceInfo.SoftwareVersion", NULL);
    show("InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.SSID", NULL);
    expect(get("Device.WiFi.SSID.99.SSID"), INVALID_NAME, "get of an instance that is not there");

    expect(SET({interval, "600"}, {range_end, "192.168.0.180"}), DONE, "two settings");
    show(interval, "600");
    expect(SET({interval, "900"}, {range_end, "nowhere"}), INVALID_VALUE, "two, one of which is refused");
    show(interval, "600");

    expect(add(mappings, "InternalClient", "192.168.0.30", instance), DONE, "add a port mapping");
    expect(delete (instance), DONE, "delete it");
    expect(delete (instance), INVALID_NAME, "delete it again");
    expect(add(mappings, "InternalClient", "nobody", instance), INVALID_VALUE, "add one for nobody");
    expect(delete (instance), INVALID_NAME, "it is not there");

    if (msg_init(&channel) != 0 || msg_srvInit(CWMP_AGENT_IDENTIFIER, &channel) != 0) return 1;
    expect(SET({host, "192.0.2.1"}, {state, "Requested"}), DONE, "ask for a trace route");
    expect(wait_for_test(&channel, 60), DONE, "its end");
    show(state, "Complete");
    show("Device.IP.Diagnostics.TraceRoute.RouteHopsNumberOfEntries", NULL);
    msg_cleanup(&channel);
    unlink("/var/tmp/17"); /* the socket's file stays otherwise */
    return failures != 0;
}
