#include "staged/check_script.h"

#include <fcntl.h>
#include <json-c/json.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/command.h"
#include "core/descriptor.h"
#include "core/shell.h"
#include "platform/check_script.h"

namespace {

using namespace cwmp;
using namespace cwmp::staged;

constexpr const char* kRequestFile = "/tmp/tr069_json_input_file";
constexpr const char* kAnswerFile = "/tmp/tr069_json_output_file";
constexpr const char* kLoadVerb = "initialize_revert_data";
constexpr const char* kRevertSuffix = "_revert";

bool unheard = false;

struct Release {
    void operator()(json_object* json) const { json_object_put(json); }
};
using Json = std::unique_ptr<json_object, Release>;

Json read_json(const char* path) {
    const Descriptor file = open_own_file(path, O_RDONLY);
    return Json(file ? json_object_from_fd(file.get()) : nullptr);
}

// Null, and remembered, when there is none that can be read.
Json read_answer() {
    Json answer = read_json(kAnswerFile);
    unheard = unheard || answer == nullptr;
    return answer;
}

bool is_accepted(json_object* answer) {
    json_object* code = nullptr;
    json_object_object_get_ex(answer, "error_code", &code);
    return json_object_is_type(code, json_type_int) && json_object_get_int64(code) == 0;
}

// Others could read the passwords in a request, or put one of their own in its place.
bool write_json(const char* path, json_object* json) {
    unlink(path);
    Descriptor file = open_own_file(path, O_WRONLY | O_CREAT | O_EXCL);
    const char* text = json_object_to_json_string_ext(json, JSON_C_TO_STRING_PLAIN);
    return file && text != nullptr && write_whole(file.get(), text) && file.close();
}

// False when an answer of an earlier run is in the way: a script that writes nothing must not be judged by it.
bool run_script(const char* arguments, Caller caller) {
    char command[512];
    std::snprintf(command, sizeof command, "%s %s ", kCheckScript, arguments);
    if (unlink(kAnswerFile) != 0 && errno != ENOENT) {
        unheard = true;
        return false;
    }
    run(command);
    log_event(caller, kProgress, "!!!!!!!!!!!!!!!%s \n\n", command);
    return true;
}

json_object* json_value(const Record& record, const Object& object, int option) {
    if (object.is_switch(option)) {
        return json_object_new_int(record.enable() == CWMP_STAGED_ENABLED ? 1 : 0);
    }
    const auto text = record.text(option);
    return json_object_new_string_len(text.data(), static_cast<int>(text.size()));
}

Json request(const Object& object) {
    Json json(json_object_new_object());
    const auto record = Record::staging(object);
    for (int i = 0; json != nullptr && i < object.count(); ++i) {
        const int option = object.json_order[i];
        json_object* value = json_value(record, object, option);
        if (value == nullptr || json_object_object_add(json.get(), object.field(option).key, value) != 0) {
            json_object_put(value);
            json.reset();
        }
    }
    return json;
}

const Object* object_of_revert_name(const std::string& name) {
    for (const Object* object : kObjects) {
        if (name == std::string(object->name) + kRevertSuffix) return object;
    }
    return nullptr;
}

// False when the answer holds nothing of the group.
bool load(const Object& object, json_object* answer) {
    Record::revert(object).clear();
    bool loaded = false;
    for (int option = 0; option < object.count(); ++option) {
        json_object* value = nullptr;
        json_object_object_get_ex(answer, object.field(option).key, &value);
        if (!json_object_is_type(value, json_type_string)) continue;
        object.pre_revert(option, json_object_get_string(value));
        loaded = true;
    }
    return loaded;
}

// Nothing when the answer cannot be read. object is null for a name that no group has: the script is asked all the
// same.
std::optional<bool> load(const std::string& name, const Object* object, Caller caller) {
    const bool ran = run_script((std::string(kLoadVerb) + ' ' + shell_word(name)).c_str(), caller);
    const Json answer = ran ? read_answer() : nullptr;
    if (answer == nullptr) return std::nullopt;
    const bool loaded = object != nullptr && load(*object, answer.get());
    unlink(kAnswerFile);
    return loaded;
}

}  // namespace

int func_obj_result_ok(const char* file) {
    if (file == nullptr) return 0;
    return is_accepted(read_json(file).get()) ? 1 : 0;
}

int initialize_revert_data(const char* name) {
    if (name == nullptr) return 0;
    return load(name, object_of_revert_name(name), Caller::here()) ? 0 : -1;
}

namespace cwmp::staged {

bool was_unheard() { return std::exchange(unheard, false); }

Verdict ask_script(const Object& object, const char* action, Caller caller) {
    const Json json = request(object);
    if (json == nullptr || !write_json(kRequestFile, json.get())) {
        unlink(kRequestFile);
        unheard = true;
        return Verdict::no_request;
    }
    const std::string verb = std::string(object.name) + '_' + action;
    const bool accepted = run_script(verb.c_str(), caller) && is_accepted(read_answer().get());
    unlink(kRequestFile);
    unlink(kAnswerFile);
    return accepted ? Verdict::accepted : Verdict::rejected;
}

bool load_revert_record(const Object& object) {
    const auto name = std::string(object.name) + kRevertSuffix;
    const auto loaded = load(name, &object, {"initialize_revert_data", __LINE__});
    unlink(kAnswerFile);
    return loaded.value_or(false);
}

}  // namespace cwmp::staged
