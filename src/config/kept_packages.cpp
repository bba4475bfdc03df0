#include "config/kept_packages.h"

#include <uci.h>

#include <cstring>
#include <forward_list>
#include <string>

#include "config/store_directory.h"
#include "core/bulk_read.h"

namespace cwmp {
namespace {

struct FreeContext {
    void operator()(uci_context* context) const { uci_free_context(context); }
};

struct KeptPackage {
    std::string directory;
    std::string name;
    // Null while it is read, and when the package cannot be loaded.
    std::unique_ptr<uci_context, FreeContext> context;
    bool missing;
};

// Of the bulk read that is on, which calls forget() at its end.
std::forward_list<KeptPackage>* kept = nullptr;

void forget() {
    delete kept;
    kept = nullptr;
}

KeptPackage* find_kept(const uci_context* context, const char* package) {
    if (kept == nullptr) return nullptr;
    for (KeptPackage& each : *kept) {
        if (each.name == package && each.directory == context->confdir) return &each;
    }
    return nullptr;
}

std::size_t text_size(const char* text) {
    constexpr std::size_t kAllocation = 16;
    return text != nullptr ? kAllocation + std::strlen(text) : 0;
}

std::size_t size_of(const uci_option* option) {
    std::size_t size = sizeof *option + text_size(option->e.name);
    if (option->type == UCI_TYPE_STRING) return size + text_size(option->v.string);
    const uci_element* value = nullptr;
    uci_foreach_element(&option->v.list, value) size += sizeof *value + text_size(value->name);
    return size;
}

std::size_t size_of(const uci_package* package) {
    constexpr std::size_t kContext = 1024;
    std::size_t size = kContext;
    const uci_element* each = nullptr;
    uci_foreach_element(&package->sections, each) {
        const uci_section* section = uci_to_section(each);
        size += sizeof *section + text_size(each->name) + text_size(section->type);
        const uci_element* option = nullptr;
        uci_foreach_element(&section->options, option) size += size_of(uci_to_option(option));
    }
    return size;
}

// Makes a place to keep a package, unless there is no room.
KeptPackage* keep(const uci_context* context, const char* name, std::size_t size) {
    size += sizeof(KeptPackage);
    if (size > bulk_read_room()) return nullptr;
    keep_package(size, forget);
    if (kept == nullptr) kept = new std::forward_list<KeptPackage>;
    kept->push_front({context->confdir, name, nullptr, false});
    return &kept->front();
}

}  // namespace

void ReleaseContext::operator()(uci_context* context) const {
    if (moment != 0 && moment == packages_moment() && !uci_list_empty(&context->root)) {
        const uci_package* package = uci_to_package(list_to_element(context->root.next));
        const char* name = package->e.name;
        KeptPackage* place = find_kept(context, name);
        if (place == nullptr) place = keep(context, name, size_of(package));
        if (place != nullptr && place->context == nullptr) {
            place->context.reset(context);
            return;
        }
    }
    uci_free_context(context);
}

uci_package* load_anew(uci_context* context, const char* name) {
    uci_package* package = nullptr;
    const bool loaded = is_trusted_directory(context->confdir) && uci_load(context, name, &package) == UCI_OK;
    return loaded ? package : nullptr;
}

uci_package* load_or_reuse(OwnedContext& context, const char* name) {
    const unsigned moment = packages_moment();
    if (moment == 0) return load_anew(context.get(), name);
    KeptPackage* known = find_kept(context.get(), name);
    if (known != nullptr && known->missing) return nullptr;
    if (known != nullptr && known->context != nullptr) {
        context.reset(known->context.release());
        context.get_deleter().moment = moment;
        return uci_to_package(list_to_element(context->root.next));
    }
    uci_package* package = load_anew(context.get(), name);
    if (package != nullptr) {
        context.get_deleter().moment = moment;
    } else if (KeptPackage* place = keep(context.get(), name, 0)) {
        place->missing = true;
    }
    return package;
}

}  // namespace cwmp
