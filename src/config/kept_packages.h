// Packages as they were parsed, kept for the length of a bulk read.
#pragma once

#include <memory>

struct uci_context;
struct uci_package;

namespace cwmp {

// Ends a context. One that may be read again is kept with its package as long as nothing has changed since.
struct ReleaseContext {
    unsigned moment = 0;

    void operator()(uci_context* context) const;
};
using OwnedContext = std::unique_ptr<uci_context, ReleaseContext>;

// Loads a package to be read. What is kept takes the place of the context; while somebody reads it, another one
// loads its own. Null when it cannot be loaded, which is kept, too.
uci_package* load_or_reuse(OwnedContext& context, const char* name);

// Loads a package from its file. Null when it cannot be loaded.
uci_package* load_anew(uci_context* context, const char* name);

}  // namespace cwmp
