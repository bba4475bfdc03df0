// The exchange with the device's check script: a request and an answer in JSON, each in a file of fixed name.
#pragma once

#include "staged/object.h"

namespace cwmp::staged {

enum class Verdict { accepted, rejected, no_request };

// Hands the staging record to the script. The verb is the object's name with an action, "check" or "whole".
Verdict ask_script(const Object& object, const char* action, Caller caller);

// Whether, since this was asked last, the script could not be asked or gave no answer.
bool was_unheard();

// Loads the revert record. False when the script gave no answer; none is left behind.
bool load_revert_record(const Object& object);

}  // namespace cwmp::staged
