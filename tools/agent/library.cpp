#include "library.h"

#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>

#include "failure.h"

namespace cwmp {

Library::Library(const std::string& file) {
    // Without a slash dlopen would search the system's directories for it.
    const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
    handle_.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!handle_) throw Failure{file, kNoFault, Exit::Unusable, std::string("cannot be loaded: ") + dlerror()};
}

cwmp_handler Library::find(const std::string& name) const { return reinterpret_cast<cwmp_handler>(data(name)); }

void* Library::data(const std::string& name) const { return dlsym(handle_.get(), name.c_str()); }

void* Library::require(const std::string& name) const {
    if (void* found = data(name)) return found;
    throw Failure{name, kNoFault, Exit::Unusable, "not exported by the library"};
}

void Library::Close::operator()(void* handle) const { dlclose(handle); }

int call(cwmp_handler handler, int op, ...) {
    va_list args;
    va_start(args, op);
    const int result = handler(op, args);
    va_end(args);
    std::fflush(stdout);
    return result;
}

}  // namespace cwmp
