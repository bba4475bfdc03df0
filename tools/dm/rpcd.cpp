#include "rpcd.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string_view>

#include "agent_state.h"
#include "command_line.h"
#include "commands.h"
#include "diagnose.h"
#include "json.h"
#include "path.h"
#include "services.h"

namespace cwmp {

namespace {

using json::Json;

constexpr size_t kLargestInput = size_t{256} * 1024;
constexpr auto kTimeToRead = std::chrono::seconds(5);
constexpr int kSecondsOfTest = 25;  // rpcd itself gives a call 30

struct Call {
    Session session;
    json_object* input;
    Json results = Json(json_object_new_array());
};

[[noreturn]] void refuse(int fault, const std::string& message) { throw Failure{"", fault, Exit::Malformed, message}; }

json_object* member(const Call& call, const char* name) {
    json_object* found = nullptr;
    json_object_object_get_ex(call.input, name, &found);
    return found;
}

std::string text_of(json_object* value) {
    if (!json_object_is_type(value, json_type_string)) refuse(kInvalidArguments, "a value is no string");
    std::string text(json_object_get_string(value), static_cast<size_t>(json_object_get_string_len(value)));
    if (text.find('\0') != std::string::npos) refuse(kInvalidArguments, "a value holds a zero byte");
    return text;
}

std::string text_member(const Call& call, const char* name) {
    json_object* value = member(call, name);
    return value ? text_of(value) : "";
}

bool flag_member(const Call& call, const char* name) { return json_object_get_boolean(member(call, name)); }

// "path", then all of "paths".
Words paths_of(const Call& call) {
    Words paths;
    if (member(call, "path")) paths.push_back(text_member(call, "path"));
    json_object* more = member(call, "paths");
    for (size_t i = 0; more && i < json_object_array_length(more); ++i) {
        paths.push_back(text_of(json_object_array_get_idx(more, i)));
    }
    if (paths.empty()) refuse(kInvalidArguments, "a path is missing");
    return paths;
}

// The members of an object of texts, PREFIX NAME=VALUE each.
Words assignments_of(const Call& call, const char* name, const std::string& prefix) {
    Words assignments;
    if (json_object* values = member(call, name)) {
        json_object_object_foreach(values, key, value) assignments.push_back(prefix + key + '=' + text_of(value));
    }
    return assignments;
}

void append(Call& call, const std::string& path, const std::string& data) {
    Json result = json::object();
    json::put(result, "path", json::text(path));
    json::put(result, "data", json::text(data));
    json::append(call.results, std::move(result));
}

Json value_json(const Report::Parameter& parameter) {
    Json result = json::object();
    json::put(result, "path", json::text(parameter.path));
    json::put(result, "data", json::text(parameter.value));
    json::put(result, "type", json::text("xsd:" + parameter.type));
    return result;
}

Json fault_json(const Failure& failure) {
    Json result = json::object();
    json::put(result, "path", json::text(failure.subject));
    json::put(result, "fault", json::number(failure.fault ? failure.fault : kInternalError));
    json::put(result, "fault_msg", json::text(failure.message));
    return result;
}

void get(Call& call) {
    const auto depth = json_object_get_int(member(call, "maxdepth"));
    Report& report = call.session.report;
    for (const std::string& path : paths_of(call)) {
        get_values(call.session, {path});
        for (const auto& parameter : report.parameters) {
            const auto levels = std::count(parameter.path.begin(), parameter.path.end(), '.') -
                                std::count(path.begin(), path.end(), '.') + 1;
            if (depth <= 0 || levels <= depth) json::append(call.results, value_json(parameter));
        }
        report.parameters.clear();
    }
}

void schema(Call& call) {
    list_names(call.session.model, paths_of(call), flag_member(call, "first_level") ? 1 : 0, call.session.report);
    for (const Entry& entry : *call.session.report.names) {
        Json result = json::object();
        const bool parameter = entry.kind == Entry::Kind::Parameter;
        json::put(result, "path", json::text(entry.path));
        json::put(result, "type", json::text(parameter ? "xsd:" + std::string(entry.type.wire_name()) : "xsd:object"));
        json::put(result, "access", json::text(std::string(entry.access())));
        json::append(call.results, std::move(result));
    }
}

void append_instances(Call& call, const Node& node, const std::vector<int>& numbers, bool first_level) {
    for (const auto& child : node.children) {
        if (child->kind == Node::Kind::Parameter || !child->exists_below(numbers)) continue;
        if (child->kind == Node::Kind::Branch) append_instances(call, *child, numbers, first_level);
        if (child->kind != Node::Kind::Table) continue;
        for (int number : call.session.agent.instances(*child, numbers)) {
            std::vector<int> inner = numbers;
            inner.push_back(number);
            Json result = json::object();
            json::put(result, "path", json::text(concrete_path(child->path, inner)));
            json::append(call.results, std::move(result));
            if (!first_level) append_instances(call, *child, inner, first_level);
        }
    }
}

void instances(Call& call) {
    for (const std::string& path : paths_of(call)) {
        note_failure(call.session.report, [&] {
            const Target target = find_targets(call.session.model, path);
            for (const auto& numbers : call.session.agent.resolve(target)) {
                append_instances(call, *target.node, numbers, flag_member(call, "first_level"));
            }
        });
    }
}

void set(Call& call) {
    const std::string path = text_member(call, "path");
    Words assignments = assignments_of(call, "obj_path", path);
    if (member(call, "value")) assignments.push_back(path + '=' + text_member(call, "value"));
    if (assignments.empty()) refuse(kInvalidArguments, "a value is missing");
    set_values(call.session, assignments);
    if (call.session.report.errors.empty()) append(call, path, "1");
}

void add(Call& call) {
    const std::string path = text_member(call, "path");
    add_instance(call.session, path, assignments_of(call, "obj_path", ""));
    const auto& added = call.session.report.instances;
    if (added) append(call, path, added->front().substr(path.size(), added->front().size() - path.size() - 1));
}

void del(Call& call) {
    delete_instances(call.session, paths_of(call));
    for (const std::string& path : call.session.report.instances.value_or(Words())) append(call, path, "1");
}

void operate(Call& call) {
    const std::string command = text_member(call, "command");
    const std::string object = command.substr(0, command.find("()")) + '.';
    const auto known = tests();
    const auto test =
        std::find_if(known.begin(), known.end(), [&](const Test& one) { return one.results && object == one.object; });
    if (test == known.end()) throw Failure{command, kInvalidName, Exit::Missing, "no test that the library runs"};
    TestRequest request;
    for (const std::string& text : assignments_of(call, "input", "")) {
        const size_t equals = text.find('=');
        const auto setting = std::find_if(test->settings.begin(), test->settings.end(),
                                          [&](const auto& one) { return text.compare(0, equals, one.parameter) == 0; });
        if (setting == test->settings.end()) refuse(kInvalidArguments, "no such input: " + text.substr(0, equals));
        request.values[&*setting] = text.substr(equals + 1);
    }
    diagnose(call.session, *test, request, kSecondsOfTest);
    if (!call.session.report.errors.empty()) return;
    Json result = json::object();
    json::put(result, "path", json::text(command));
    json::put(result, "data", json::text("1"));
    json::put(result, "output", json::array(call.session.report.parameters, value_json));
    json::append(call.results, std::move(result));
}

struct Method {
    const char* name;
    const char* arguments;  // an example of each, which gives its type
    void (*run)(Call&);
};

constexpr Method kMethods[] = {
    {"get", R"({"path":"","paths":[],"maxdepth":0})", get},
    {"schema", R"({"path":"","paths":[],"first_level":true})", schema},
    {"instances", R"({"path":"","paths":[],"first_level":true})", instances},
    {"set", R"({"path":"","value":"","obj_path":{}})", set},
    {"add", R"({"path":"","obj_path":{}})", add},
    {"del", R"({"path":"","paths":[]})", del},
    {"operate", R"({"command":"","input":{}})", operate},
};

std::string read_input() {
    using Clock = std::chrono::steady_clock;
    std::string input;
    char piece[4096];
    for (const auto end = Clock::now() + kTimeToRead;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) <= 0) refuse(kInvalidArguments, "no input comes");
        const ssize_t got = read(STDIN_FILENO, piece, sizeof piece);
        if (got <= 0) return input;
        input.append(piece, static_cast<size_t>(got));
        if (input.size() > kLargestInput) refuse(kResourcesExceeded, "the input is too large");
    }
}

Json parsed(const std::string& text) {
    const std::unique_ptr<json_tokener, decltype(&json_tokener_free)> tokener(json_tokener_new(), json_tokener_free);
    json_tokener_set_flags(tokener.get(), JSON_TOKENER_STRICT);
    Json input(json_tokener_parse_ex(tokener.get(), text.c_str(), static_cast<int>(text.size()) + 1));
    if (!json_object_is_type(input.get(), json_type_object)) refuse(kInvalidArguments, "the input is no JSON object");
    return input;
}

// Others, such as the caller's session, are not ours to judge.
void require_types(json_object* input, const Method& method) {
    const Json example = parsed(method.arguments);
    json_object_object_foreach(example.get(), name, value) {
        json_object* given = nullptr;
        if (!json_object_object_get_ex(input, name, &given)) continue;
        if (json_object_get_type(given) == json_object_get_type(value)) continue;
        refuse(kInvalidArguments, std::string(name) + " has a wrong type");
    }
}

void call_method(std::string_view name, Json& results, Report& report) {
    const std::string text = read_input();
    const auto* const method =
        std::find_if(std::begin(kMethods), std::end(kMethods), [&](const Method& one) { return one.name == name; });
    if (method == std::end(kMethods)) refuse(kMethodNotSupported, "no such method");
    const Json input = parsed(text.empty() ? "{}" : text);
    require_types(input.get(), *method);
    const Options usual;
    const Model model(usual.model);
    const Library library(usual.library);
    const auto state = agent_state(std::nullopt);
    Agent agent(library, state ? &*state : nullptr);
    Call call{{library, model, agent, report}, input.get()};
    note_failure(report, [&] { method->run(call); });
    results = std::move(call.results);
}

}  // namespace

bool is_rpcd_plugin(const char* program) {
    const std::string_view name = program;
    return name.substr(name.rfind('/') + 1) == "cwmp";
}

int answer_rpcd(int argc, char** argv, FILE* out) {
    const std::string_view verb = argc > 1 ? argv[1] : "";
    Json answer = json::object();
    if (verb == "list") {
        for (const Method& method : kMethods) json::put(answer, method.name, parsed(method.arguments));
    } else if (verb == "call" && argc == 3) {
        Report report;
        Json results(json_object_new_array());
        note_failure(report, [&] { call_method(argv[2], results, report); });
        for (const Failure& failure : report.errors) json::append(results, fault_json(failure));
        json::put(answer, "results", std::move(results));
        if (report.apply_flags) {
            json::put(answer, "applyFlags", json::number(*report.apply_flags));
            json::put(answer, "services", json::array(services_of(*report.apply_flags), json::text));
        }
    } else {
        std::fputs("rpcd calls this program: list, or call METHOD\n", stderr);
        return static_cast<int>(Exit::Malformed);
    }
    json::print(answer, JSON_C_TO_STRING_PLAIN, out);
    return std::fflush(out) == 0 ? 0 : static_cast<int>(Exit::NotAllowed);
}

}  // namespace cwmp
