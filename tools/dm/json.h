#pragma once

#include <json-c/json.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "text.h"

// What dm builds of JSON. A container takes its members over.
namespace cwmp::json {

struct Release {
    void operator()(json_object* object) const { json_object_put(object); }
};
using Json = std::unique_ptr<json_object, Release>;

inline Json object() { return Json(json_object_new_object()); }
inline Json number(std::int64_t value) { return Json(json_object_new_int64(value)); }
inline Json flag(bool value) { return Json(json_object_new_boolean(value)); }

inline Json text(const std::string& value) {
    const std::string utf8 = as_utf8(value);
    return Json(json_object_new_string_len(utf8.data(), static_cast<int>(utf8.size())));
}

inline void put(Json& object, const char* key, Json member) {
    json_object_object_add(object.get(), key, member.release());
}

inline void append(Json& array, Json item) { json_object_array_add(array.get(), item.release()); }

template <typename Items, typename Convert>
Json array(const Items& items, Convert convert) {
    Json result(json_object_new_array());
    for (const auto& item : items) append(result, convert(item));
    return result;
}

inline void print(const Json& json, int style, FILE* out) {
    std::fprintf(out, "%s\n", json_object_to_json_string_ext(json.get(), style | JSON_C_TO_STRING_NOSLASHESCAPE));
}

}  // namespace cwmp::json
