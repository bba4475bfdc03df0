// One libuci context with one loaded package: the only place that talks to libuci.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct uci_context;
struct uci_package;
struct uci_section;

namespace cwmp {

inline constexpr const char* kLiveStore = "/etc/config";
inline constexpr const char* kScratchStore = "/tmp/tr069";
inline constexpr const char* kProfileStore = "/etc/profile.d";

// Whether libuci takes a name for a package of a configuration directory.
bool is_uci_package(const char* name);

class UciContext {
  public:
    // A null directory is the live store. The live store shares libuci's save directory with every other tool
    // of the device; any other directory keeps its own, so that a change somebody staged in a live package is
    // never carried into a side copy of the same name.
    explicit UciContext(const char* confdir);
    UciContext(const char* confdir, const char* savedir);

    explicit operator bool() const { return context_ != nullptr; }

    bool load(const char* package);

    uci_section* section(const char* name) const;
    // All sections of a type in file order; a null type is any.
    std::vector<uci_section*> sections(const char* type) const;
    static const char* name(const uci_section* section);
    static const char* type(const uci_section* section);
    // The string value of an option; list options have none.
    std::optional<std::string> value(uci_section* section, const char* option) const;

    // These change the loaded package and return libuci's result code, 0 for success; commit() stores them.
    // An empty value deletes the option.
    int set_option(const char* section, const char* option, const char* value);
    // Creates the section, or gives an existing one this type.
    int set_section(const char* section, const char* type);
    int delete_section(const char* section);
    void commit();
    // Discards what the save directory holds of a package, section or option, named with dots. Loads by
    // itself. Nothing when there is no such package, else libuci's result code.
    std::optional<int> revert(std::string tuple);

  private:
    struct Free {
        void operator()(uci_context* context) const;
    };
    std::unique_ptr<uci_context, Free> context_;
    uci_package* package_ = nullptr;
};

}  // namespace cwmp
