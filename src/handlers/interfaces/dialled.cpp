#include "handlers/interfaces/dialled.h"

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_ConnectionStatus);

namespace cwmp::interfaces {

int known_to_connection(int op, Arguments args, Object object, Handler connection, const char* absent,
                        Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const Instance* instance = require_instance(object, get.locate(), caller);
    if (instance == nullptr) return kRefused;
    if (absent != nullptr && !is_present(*instance)) return get.answer(absent);
    return connection(op, args);
}

int connection_status(int op, Arguments args, Object object, Caller caller) {
    return known_to_connection(op, args, object,
                               WANDevice_WANConnectionDevice_WANPPPConnection_ConnectionStatus,
                               "Unconfigured", caller);
}

}  // namespace cwmp::interfaces
