#include "handlers/blocks/forward.h"

#include "core/text.h"

namespace cwmp {

int forward_get(Arguments args, Handler handler, int first, int second) {
    int* locate = GetArguments(args).locate();
    locate[0] = first;
    locate[1] = second;
    return handler(CWMP_OP_GET, args);
}

int reword(Arguments args, int code, std::string (*words)(std::string_view answer)) {
    if (code != kDone) return code;
    const GetArguments get(args);
    return get.answer(words(get.answered()));
}

std::string without_blanks(std::string_view addresses) {
    std::string kept;
    std::size_t position = 0;
    while (true) {
        const std::string_view address = next_word(addresses, position, ",");
        if (address.empty()) return kept;
        if (address == "0.0.0.0") continue;
        if (!kept.empty()) kept += ',';
        kept += address;
    }
}

}  // namespace cwmp
