#include "json.h"
#include "report.h"
#include "services.h"

namespace cwmp {

namespace {

using namespace json;

Json parameter_json(const Report::Parameter& parameter) {
    Json result = object();
    put(result, "path", text(parameter.path));
    put(result, "value", text(parameter.value));
    if (!parameter.type.empty()) put(result, "type", text(parameter.type));
    if (!parameter.passes.empty()) put(result, "passes", array(parameter.passes, text));
    return result;
}

Json type_json(const Type& type) {
    Json result = object();
    const bool string = type.base == Type::Base::String;
    put(result, "text", text(type.text));
    put(result, "wire", text(std::string(type.wire_name())));
    put(result, "base", text(std::string(type.base_name())));
    put(result, "list", flag(type.list));
    put(result, "empty", flag(type.optional || type.list));
    if (type.least) put(result, string ? "minLength" : "minimum", number(*type.least));
    if (type.most) put(result, string ? "maxLength" : "maximum", number(*type.most));
    if (!type.words.empty()) put(result, "enumeration", array(type.words, text));
    return result;
}

Json difference_json(const Difference& difference) {
    Json result = object();
    put(result, "reason", text(difference.reason));
    put(result, "published", text(difference.what));
    return result;
}

Json numbers_json(const auto& numbers) {
    return array(numbers, [](auto one) { return number(static_cast<int64_t>(one)); });
}

void put_parameter(Json& result, const Entry& entry) {
    put(result, "type", type_json(entry.type));
    put(result, "secret", flag(entry.secret));
    put(result, "inform", flag(entry.inform));
    if (!entry.notify.empty()) put(result, "notify", text(entry.notify));
    if (!entry.group.empty()) put(result, "groups", array(split(entry.group, ','), text));
    put(result, "reboot", flag(entry.reboot));
    put(result, "passes", text(entry.apply_only ? "apply" : "all"));
    put(result, "differs", array(entry.differs, difference_json));
}

Json name_json(const Entry& entry) {
    Json result = object();
    put(result, "path", text(entry.path));
    put(result, "access", text(std::string(entry.access())));
    if (entry.kind == Entry::Kind::Parameter) put_parameter(result, entry);
    if (entry.has_handler()) put(result, "handler", text(entry.handler));
    if (entry.locate) put(result, "locate", numbers_json(*entry.locate));
    if (!entry.count_path.empty()) put(result, "count", text(entry.count_path));
    if (entry.instances) put(result, "instances", number(entry.instances));
    if (entry.only_position) {
        Json only = object();
        put(only, "position", number(static_cast<int64_t>(entry.only_position)));
        put(only, "values", numbers_json(entry.only));
        put(result, "only", std::move(only));
    }
    return result;
}

Json group_json(const Report::Group& group) {
    Json result = object();
    put(result, "name", text(group.name));
    put(result, "steps", array(group.steps, text));
    return result;
}

Json error_json(const Failure& error) {
    Json result = object();
    put(result, "path", text(error.subject));
    if (error.fault) put(result, "fault", number(error.fault));
    put(result, "message", text(error.message));
    if (!error.pass.empty()) put(result, "pass", text(error.pass));
    return result;
}

}  // namespace

void print_change_json(const std::string& time, const std::string& path, const std::string* before,
                       const std::string* after, FILE* out) {
    Json result = object();
    put(result, "time", text(time));
    put(result, "path", text(path));
    put(result, "before", before ? text(*before) : nullptr);
    put(result, "value", after ? text(*after) : nullptr);
    print(result, JSON_C_TO_STRING_PLAIN, out);
}

void print_json(const Report& report, FILE* out) {
    Json result = object();
    put(result, "parameters", array(report.parameters, parameter_json));
    if (report.names) put(result, "names", array(*report.names, name_json));
    if (report.instances) put(result, "instances", array(*report.instances, text));
    if (report.secrets) put(result, "secrets", array(*report.secrets, text));
    if (!report.groups.empty()) put(result, "groups", array(report.groups, group_json));
    if (!report.notes.empty()) put(result, "notes", array(report.notes, text));
    if (report.diagnostics_complete) put(result, "diagnosticsComplete", flag(true));
    if (report.reverted) put(result, "reverted", flag(*report.reverted));
    if (report.apply_flags) {
        put(result, "applyFlags", number(*report.apply_flags));
        put(result, "services", array(services_of(*report.apply_flags), text));
    }
    put(result, "errors", array(report.errors, error_json));
    print(result, JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED, out);
}

}  // namespace cwmp
