// Handlers that answer with what another one says.
#pragma once

#include <string>

#include "core/handler.h"

namespace cwmp {

// GET of another handler under other instance numbers: locate[0] and locate[1] are rewritten first.
int forward_get(Arguments args, Handler handler, int first, int second);

// Other words for an answer. code is what the handler that gave it returned; a failure stays as it is:
//     return reword(args, SomeHandler(op, args), in_other_words);
int reword(Arguments args, int code, std::string (*words)(std::string_view answer));

// A word for reword: without the addresses 0.0.0.0, which stand for none.
std::string without_blanks(std::string_view addresses);

}  // namespace cwmp
