/*
 * A management agent in one file: what docs/integration.md says, done.
 *
 *   agent [LIBRARY [MODEL]]
 *
 * It shows each step on a router: read the model, get, set in a transaction, add, list, delete, run a trace route and
 * wait for its end. Exit status 0: every step did what it should.
 */
#define _POSIX_C_SOURCE 200809L
#include <ctype.h>
#include <dirent.h>
#include <dlfcn.h>
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
#include "cwmp/staged_objects.h"

/* TR-069's faults, as far as an agent has to tell them apart. */
enum {
    DONE = 0,
    INTERNAL_ERROR = 9002,
    INVALID_ARGUMENTS = 9003,
    INVALID_NAME = 9005,
    INVALID_VALUE = 9007,
    NOT_WRITABLE = 9008
};

enum { PATH_SIZE = 256, MOST_LINES = 2048, MOST_INSTANCES = 256 };

/* A line of the model: path with {i}, access, then the type of a parameter and attributes. */
struct line {
    char path[PATH_SIZE];
    char access[3];
    char rest[PATH_SIZE];
};

/* What a path names: its line, and the instance numbers that stood in it. */
struct target {
    const struct line* line;
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

static void read_file(const char* name) {
    char text[1024];
    FILE* file = fopen(name, "r");
    while (file != NULL && lines < MOST_LINES && fgets(text, sizeof text, file) != NULL) {
        struct line* line = &model[lines];
        text[strcspn(text, "#\n")] = '\0';
        line->rest[0] = '\0';
        if (sscanf(text, "%255s %2s %255[^\n]", line->path, line->access, line->rest) >= 2) ++lines;
    }
    if (file != NULL) fclose(file);
}

static void read_model(const char* directory) {
    DIR* files = opendir(directory);
    struct dirent* entry;
    char name[PATH_SIZE * 3];
    while (files != NULL && (entry = readdir(files)) != NULL) {
        snprintf(name, sizeof name, "%s/%s", directory, entry->d_name);
        if (strstr(entry->d_name, ".txt") != NULL) read_file(name);
    }
    if (files != NULL) closedir(files);
}

/* The text of NAME=text, empty where there is none. */
static const char* attribute(const struct line* line, const char* name) {
    static char text[PATH_SIZE];
    char words[PATH_SIZE];
    char* word;
    const size_t length = strlen(name);
    strcpy(words, line->rest);
    for (word = strtok(words, " "); word != NULL; word = strtok(NULL, " ")) {
        if (strncmp(word, name, length) != 0 || word[length] != '=') continue;
        return strcpy(text, word + length + 1);
    }
    return "";
}

static const struct line* line_of(const char* pattern) {
    int i;
    for (i = 0; i < lines; ++i) {
        if (strcmp(model[i].path, pattern) == 0) return &model[i];
    }
    return NULL;
}

/* Device.NAT.PortMapping.2.Enable is the line of Device.NAT.PortMapping.{i}.Enable and the number 2. */
static int find(const char* path, struct target* target) {
    char pattern[PATH_SIZE * 2] = "";
    const char* part = path;
    if (strlen(path) >= PATH_SIZE) return INVALID_NAME;
    memset(target, 0, sizeof *target);
    while (*part != '\0') {
        const size_t length = strcspn(part, ".");
        if (isdigit((unsigned char)*part) && target->count < CWMP_LOCATE_SIZE) {
            target->numbers[target->count++] = atoi(part);
            strcat(pattern, "{i}");
        } else {
            strncat(pattern, part, length);
        }
        part += length;
        if (*part == '.') strncat(pattern, part++, 1);
    }
    target->line = line_of(pattern);
    return target->line != NULL ? DONE : INVALID_NAME;
}

/* The handler is named after the path, unless the model says otherwise. */
static cwmp_handler handler_of(const struct line* line) {
    char name[PATH_SIZE] = "";
    char path[PATH_SIZE];
    char* part;
    void* symbol;
    cwmp_handler handler;
    strcpy(name, attribute(line, "handler"));
    if (name[0] == '\0') {
        strtok(strcpy(path, line->path), ".");
        while ((part = strtok(NULL, ".")) != NULL) {
            if (strcmp(part, "{i}") == 0) continue;
            if (name[0] != '\0') strcat(name, "_");
            strcat(name, part);
        }
    }
    symbol = dlsym(library, name);
    memcpy(&handler, &symbol, sizeof handler);
    return handler;
}

/* The first so many instance numbers, or those that the model chooses. The array is fresh for every call. */
static void fill_locate(const struct target* target, int count, int locate[CWMP_LOCATE_SIZE]) {
    const char* chosen = attribute(target->line, "locate");
    int i;
    memset(locate, 0, CWMP_LOCATE_SIZE * sizeof *locate);
    for (i = 0; i < count && chosen[0] == '\0'; ++i) locate[i] = target->numbers[i];
    for (i = 0; isdigit((unsigned char)*chosen) && i < CWMP_LOCATE_SIZE; ++i) {
        const int position = (int)strtol(chosen, (char**)&chosen, 10);
        if (position <= count) locate[i] = target->numbers[position - 1];
        if (*chosen == ',') ++chosen;
    }
}

/* Handlers take a variable-argument list that somebody else has opened. */
static int call(cwmp_handler handler, int op, ...) {
    va_list args;
    int result;
    if (handler == NULL) return -1;
    va_start(args, op);
    result = handler(op, args);
    va_end(args);
    fflush(stdout); /* handlers print there */
    return result;
}

static int get_target(const struct target* target) {
    int locate[CWMP_LOCATE_SIZE];
    fill_locate(target, target->count, locate);
    value[0] = '\0';
    return call(handler_of(target->line), CWMP_OP_GET, locate, value, &agent_state) == 0 ? DONE
                                                                                         : INTERNAL_ERROR;
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
        if (call(handler_of(object->line), CWMP_OP_LIST, locate, numbers, &capacity) != 0) return 0;
        while (count < MOST_INSTANCES && numbers[count] != 0) ++count; /* no count is told */
    } else {
        int last = counted(object); /* fixed instances have no list: they are numbered from 1 */
        for (; count < last && count < MOST_INSTANCES; ++count) numbers[count] = (uint32_t)count + 1;
    }
    return count;
}

static int has(const struct target* object, int number) {
    uint32_t numbers[MOST_INSTANCES];
    int count = list(object, numbers);
    while (count > 0 && numbers[count - 1] != (uint32_t)number) --count;
    return count > 0;
}

/* A handler that answers 0 does not say that the instance exists: each number of the path is looked up before. */
static int exists(const char* path, const struct target* target) {
    char prefix[PATH_SIZE];
    struct target object;
    const char* part = path;
    int known = 0;
    while ((part = strchr(part, '.')) != NULL && known < target->count) {
        if (!isdigit((unsigned char)*++part)) continue;
        snprintf(prefix, sizeof prefix, "%.*s.", (int)((size_t)(part - path) + strcspn(part, ".")), path);
        if (find(prefix, &object) != DONE || !has(&object, target->numbers[known])) return 0;
        ++known;
    }
    return 1;
}

static int resolve(const char* path, struct target* target) {
    return find(path, target) == DONE && exists(path, target) ? DONE : INVALID_NAME;
}

static int get(const char* path) {
    struct target target;
    return resolve(path, &target) == DONE ? get_target(&target) : INVALID_NAME;
}

static int set_one(const struct setting* setting, int pass, unsigned int* flags) {
    struct target target;
    int locate[CWMP_LOCATE_SIZE];
    if (resolve(setting->path, &target) != DONE) return INVALID_NAME;
    if (strcmp(target.line->access, "W") != 0) return NOT_WRITABLE;
    if (strcmp(attribute(target.line, "passes"), "apply") == 0 && pass != CWMP_OP_APPLY) return DONE;
    fill_locate(&target, target.count, locate);
    if (call(handler_of(target.line), pass, locate, setting->value, flags, &agent_state) == 0) return DONE;
    printf("  refused: %s\n", cwmp_last_refusal()); /* the FaultString: at once, before the next call */
    return INVALID_VALUE;
}

/* One SetParameterValues: every setting staged, then every one checked, then every one applied. */
static int set(const struct setting* settings, int count, unsigned int* flags) {
    static const int passes[] = {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY};
    int fault = DONE, pass, i;
    for (pass = 0; pass < 3; ++pass) {
        for (i = 0; i < count && fault == DONE; ++i) fault = set_one(&settings[i], passes[pass], flags);
    }
    if (fault != DONE) call(func_obj_revert, CWMP_OP_APPLY, (int*)NULL, "", flags);
    return fault;
}

/* AddObject and DeleteObject take the object's path, "Device.NAT.PortMapping.", and an instance's. Zero or less is
 * the number of no instance. */
static int find_object(const char* path, const char* number, struct target* object) {
    char instance[PATH_SIZE];
    snprintf(instance, sizeof instance, "%s%s.", path, number);
    if (find(instance, object) != DONE) return INVALID_NAME;
    return strcmp(object->line->access, "AD") == 0 ? DONE : INVALID_ARGUMENTS;
}

static int add(const char* path, int* number, unsigned int* flags) {
    struct target object;
    int locate[CWMP_LOCATE_SIZE];
    char text[12] = "";
    int result = find_object(path, "1", &object);
    if (result != DONE) return result;
    fill_locate(&object, object.count - 1, locate);
    result = call(handler_of(object.line), CWMP_OP_ADD, locate, text, flags);
    *number = atoi(text);
    return result > 1 ? result : result != 0 ? INTERNAL_ERROR : DONE;
}

static int delete (const char* path, int number, unsigned int* flags) {
    struct target object;
    int locate[CWMP_LOCATE_SIZE];
    char text[12];
    int result;
    snprintf(text, sizeof text, "%d", number);
    result = find_object(path, text, &object);
    if (result == DONE && !has(&object, number)) result = INVALID_NAME;
    if (result != DONE) return result;
    fill_locate(&object, object.count - 1, locate);
    result = call(handler_of(object.line), CWMP_OP_DELETE, locate, text, flags);
    return result > 1 ? result : result != 0 ? INTERNAL_ERROR : DONE;
}

/* What an agent does with the flags: restart what the settings belong to. */
static void act_on(unsigned int flags) {
    printf("  to restart:%s%s%s\n", flags & CWMP_APPLY_MANAGEMENT_SERVER ? " management server" : "",
           flags & CWMP_APPLY_NAT ? " NAT" : "", flags & CWMP_APPLY_TRACE_ROUTE ? " (trace route)" : "");
    if (flags & CWMP_APPLY_TRACE_ROUTE) libdiagnostics_startTraceRoute();
}

/* A test ends with a message; an agent has the descriptor in its main loop. */
static int wait_for_test(struct cwmp_message_handle* channel, int seconds) {
    struct cwmp_message message = {0};
    struct pollfd input = {0};
    input.fd = channel->descriptor;
    input.events = POLLIN;
    while (message.type != CWMP_MESSAGE_DIAGNOSTICS_COMPLETE) {
        if (poll(&input, 1, seconds * 1000) != 1 || msg_recv(channel, &message) != 0) return INTERNAL_ERROR;
    }
    return DONE;
}

static int failures;

static void expect(int fault, int wanted, const char* step) {
    printf("%-52s %s", step, fault == DONE ? "done" : "fault ");
    printf(fault == DONE ? "\n" : "%d\n", fault);
    if (fault != wanted) ++failures;
}

static void show(const char* path) {
    expect(get(path), DONE, path);
    printf("  = %s\n", value);
}

int main(int argc, char** argv) {
    static const char* const mappings = "Device.NAT.PortMapping.";
    static const struct setting plain[] = {{"Device.DeviceInfo.ProvisioningCode", "example"},
                                           {"Device.ManagementServer.PeriodicInformInterval", "600"}};
    static const struct setting refused[] = {{"Device.DHCPv4.Server.Pool.1.MinAddress", "192.168.0.50"},
                                             {"Device.DHCPv4.Server.Pool.1.MaxAddress", "nowhere"}};
    static const struct setting test[] = {{"Device.IP.Diagnostics.TraceRoute.Host", "192.0.2.1"},
                                          {"Device.IP.Diagnostics.TraceRoute.DiagnosticsState", "Requested"}};
    struct cwmp_message_handle channel = {0};
    char enable[PATH_SIZE];
    struct setting mapping = {NULL, "1"};
    unsigned int flags = 0;
    int number = 0;

    library = dlopen(argc > 1 ? argv[1] : "libcwmp-datamodel.so", RTLD_NOW);
    read_model(argc > 2 ? argv[2] : "/usr/share/cwmp-datamodel/model");
    if (library == NULL || lines == 0) return fprintf(stderr, "no library or no model\n"), 1;

    show("Device.DeviceInfo.SoftwareVersion");
    show("InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.SSID");
    expect(get("Device.WiFi.SSID.99.SSID"), INVALID_NAME, "get of an instance that is not there");

    expect(set(plain, 2, &flags), DONE, "two settings");
    act_on(flags);
    show("Device.ManagementServer.PeriodicInformInterval");
    show("Device.DHCPv4.Server.Pool.1.MinAddress");
    flags = 0;
    expect(set(refused, 2, &flags), INVALID_VALUE, "a group with a member that is refused");
    act_on(flags); /* what a revert wrote wants its service, too */
    show("Device.DHCPv4.Server.Pool.1.MinAddress");

    flags = 0;
    expect(add(mappings, &number, &flags), DONE, "add a port mapping");
    snprintf(enable, sizeof enable, "%s%d.Enable", mappings, number);
    mapping.path = enable;
    show("Device.NAT.PortMappingNumberOfEntries");
    show(enable);
    expect(delete (mappings, number, &flags), DONE, "delete it");
    expect(set(&mapping, 1, &flags), INVALID_NAME, "set of the deleted one");
    act_on(flags);

    flags = 0;
    if (msg_init(&channel) != 0 || msg_srvInit(CWMP_AGENT_IDENTIFIER, &channel) != 0) return 1;
    expect(set(test, 2, &flags), DONE, "ask for a trace route");
    act_on(flags);
    expect(wait_for_test(&channel, 60), DONE, "its end");
    show("Device.IP.Diagnostics.TraceRoute.DiagnosticsState");
    show("Device.IP.Diagnostics.TraceRoute.RouteHopsNumberOfEntries");
    msg_cleanup(&channel);
    unlink("/var/tmp/17"); /* the socket's file stays otherwise */
    return failures != 0;
}
