#pragma once

#include <string>

namespace cwmp {

// TR-069 fault codes a CPE answers with; None marks failures outside the protocol.
enum Fault : int {
    kNoFault = 0,
    kMethodNotSupported = 9000,
    kInternalError = 9002,
    kInvalidArguments = 9003,
    kResourcesExceeded = 9004,
    kInvalidName = 9005,
    kInvalidType = 9006,
    kInvalidValue = 9007,
    kNotWritable = 9008,
};

// Ordered: of several failures the highest code becomes the exit code.
enum class Exit : int {
    Done = 0,
    Refused = 1,
    Malformed = 2,
    Missing = 3,
    Unusable = 4,
    NotAllowed = 5,
    Fixed = 6,
};

// What is thrown when a request cannot be done. `subject` is a path or a file name.
struct Failure {
    std::string subject;
    int fault = kNoFault;
    Exit exit = Exit::Refused;
    std::string message;
    std::string pass = {};
};

}  // namespace cwmp
