// One libuci context with one loaded package: the only place that talks to libuci.
//
//   state      made by               holds                            may be called
//   none       no memory             nothing; false as a bool         nothing
//   empty      the constructor       a context, no package            load, load_to_change, revert
//   loaded     load                  a package to read                section, sections, value
//   held       load_to_change        the same, the directory's lock   the same, set_..., delete_..., restore, commit
//   changed    a set or delete       changes in memory alone          the same
//   committed  commit                no lock; the file is the whole   nothing but the end
//                                    new text, or still the old one
//
// The lock is taken before the load: what is read to decide on a change is what the change is made to. It ends
// with the object on every way out; a change that was not committed is gone then.
//
// Within a transaction each change adds a note of what was there to notes_, and commit keeps them before it stores.
//
// libuci's own commit is not used: it writes over the file as it goes and looks at no result. Its staged changes
// are taken in at the load and forgotten after the commit, those of other tools too, as libuci does.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "config/kept_packages.h"
#include "config/store_directory.h"
#include "config/transaction.h"
#include "core/log.h"

struct uci_ptr;
struct uci_section;

namespace cwmp {

// Whether a value can be stored: libuci does not read control characters back.
bool is_uci_value(const char* value);

class UciContext {
  public:
    // A null directory is the live store. The live store shares libuci's save directory with every other tool
    // of the device; any other directory has one to itself, /var/state/.uci-DIRECTORY, so that a change somebody
    // staged in a live package is never carried into a side copy of the same name. It stands outside of the
    // directory, which holds packages alone, and where no stranger can make it.
    explicit UciContext(const char* confdir);
    UciContext(const char* confdir, const char* savedir);

    explicit operator bool() const { return context_ != nullptr; }

    // A package of the directory, to be read: paths, which libuci would take too, are refused. In a bulk read it is
    // parsed once.
    bool load(const char* package);
    // To change the package: nobody else of this library changes the directory before commit() has returned or
    // this object has ended.
    bool load_to_change(const char* package);
    bool is_loaded() const { return package_ != nullptr; }

    uci_section* section(const char* name) const;
    // All sections of a type in file order; a null type is any.
    std::vector<uci_section*> sections(const char* type) const;
    static const char* name(const uci_section* section);
    static const char* type(const uci_section* section);
    // The string value of an option; list options have none.
    std::optional<std::string> value(uci_section* section, const char* option) const;

    // These change the package in memory and return libuci's result code, 0 for success; commit() stores them.
    // An empty value deletes the option.
    int set_option(const char* section, const char* option, const char* value);
    // Creates the section, or gives an existing one this type.
    int set_section(const char* section, const char* type);
    int delete_section(const char* section);
    // Stores what was changed, and with it what other tools have staged: the package file is the old text or the
    // whole new one. False, logged, when it is the old one. May be called once.
    // Within a transaction it notes first what was there, and is false when it cannot.
    bool commit(Caller caller = Caller::here());
    // Brings back what a note of this package tells of. What another program has deleted meanwhile stays deleted.
    // False for a note that cannot be followed.
    bool restore(char kind, transaction::NoteReader note);
    // Stores the package as this text, if it holds the same; otherwise as commit does.
    bool commit_as(const std::string& text, Caller caller = Caller::here());
    // Discards what the save directory holds of a package, section or option, named with dots. Loads by
    // itself. Nothing when there is no such package, else libuci's result code.
    std::optional<int> revert(std::string tuple);

  private:
    using Change = int(uci_context*, uci_ptr*);  // uci_set and its like
    int change(Change* call, const char* section, const char* option, const char* value);
    void note_section(const char* name);
    void note_option(const char* section, const char* option);
    void note_deletion(const char* section);
    bool restore_section(transaction::NoteReader& note);
    bool restore_option(transaction::NoteReader& note);
    bool store_text(std::string_view text, Caller caller);
    void forget_staged(Caller caller);

    const char* confdir_ = kLiveStore;
    Store store_ = Store::kLive;
    StoreLock lock_;  // given back when the package is no longer in memory
    OwnedContext context_;
    uci_package* package_ = nullptr;
    bool noting_ = false;
    std::string notes_;
    off_t staged_ = 0;  // bytes of changes that other tools had staged when the package was loaded
};

}  // namespace cwmp
