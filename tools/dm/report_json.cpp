#include <json-c/json.h>

#include <memory>

#include "report.h"
#include "services.h"
#include "text.h"

namespace cwmp {

namespace {

struct Release {
    void operator()(json_object* object) const { json_object_put(object); }
};
using Json = std::unique_ptr<json_object, Release>;

Json text(const std::string& value) {
    const std::string utf8 = as_utf8(value);
    return Json(json_object_new_string_len(utf8.data(), static_cast<int>(utf8.size())));
}

Json number(int64_t value) { return Json(json_object_new_int64(value)); }

// A container takes its members over.
void put(Json& object, const char* key, Json member) {
    json_object_object_add(object.get(), key, member.release());
}

Json object() { return Json(json_object_new_object()); }

template <typename Items, typename Convert>
Json array(const Items& items, Convert convert) {
    Json result(json_object_new_array());
    for (const auto& item : items) json_object_array_add(result.get(), convert(item).release());
    return result;
}

Json parameter_json(const Report::Parameter& parameter) {
    Json result = object();
    put(result, "path", text(parameter.path));
    put(result, "value", text(parameter.value));
    if (!parameter.passes.empty()) put(result, "passes", array(parameter.passes, text));
    return result;
}

Json name_json(const Report::Name& name) {
    Json result = object();
    put(result, "path", text(name.path));
    put(result, "access", text(name.access));
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

void print_json(const Report& report, FILE* out) {
    Json result = object();
    put(result, "parameters", array(report.parameters, parameter_json));
    if (report.names) put(result, "names", array(*report.names, name_json));
    if (report.instances) put(result, "instances", array(*report.instances, text));
    if (!report.groups.empty()) put(result, "groups", array(report.groups, group_json));
    if (report.diagnostics_complete) put(result, "diagnosticsComplete", Json(json_object_new_boolean(true)));
    if (report.reverted) put(result, "reverted", Json(json_object_new_boolean(*report.reverted)));
    if (report.apply_flags) {
        put(result, "applyFlags", number(*report.apply_flags));
        put(result, "services", array(services_of(*report.apply_flags), text));
    }
    put(result, "errors", array(report.errors, error_json));
    const int style = JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE;
    std::fprintf(out, "%s\n", json_object_to_json_string_ext(result.get(), style));
}

}  // namespace cwmp
