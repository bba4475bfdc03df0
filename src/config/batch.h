// Changes of one package that belong together: gathered on one load, stored by one commit, all of them or none.
//
//     MirroredBatch batch(kPackage);
//     batch.add_section("1", kType);
//     batch.set("1", "enable", "off");
//     if (!batch.commit()) ...
#pragma once

#include <optional>
#include <string>

#include "config/transaction.h"
#include "config/uci_context.h"

namespace cwmp {

// One directory. Each change is logged and refused as the exported call for it alone logs and refuses it, under
// that call's name: 0 done, -1.
class Batch {
  public:
    // A null directory is the live store, whose packages must exist to be set. Otherwise the directory and the
    // package are made when they are missing.
    Batch(const char* package, const char* confdir);

    // Makes sure, before anything is chosen by what the package holds, that nobody changes it meanwhile. Logs
    // nothing; false when the package cannot be loaded.
    bool load();
    std::optional<std::string> value(const char* section, const char* option) const;
    // The same, answered and logged as a read of its own. Nobody changes the package any more.
    std::optional<std::string> read(const char* section, const char* option);

    // A missing section is created with its own name as type; an empty value deletes the option.
    int set(const char* section, const char* option, const char* value);
    int add_section(const char* section, const char* type);
    // Deleting what is not there is done.
    int delete_section(const char* section, const char* type);

    // False when a change was refused, too: nothing is stored then.
    [[nodiscard]] bool commit(Caller caller = Caller::here());

  private:
    bool is_usable(const char* function, bool complete, const char* misuse);
    bool open(const char* function);
    int refuse_change();
    int changed(const char* call, const char* one, const char* other, int result);
    const char* directory() const { return confdir_ != nullptr ? confdir_ : kLiveStore; }

    const char* package_;
    const char* confdir_;
    bool changed_ = false;
    bool refused_ = false;
    UciContext context_;
};

// The live store, and the side copy that the mirror policy names.
class MirroredBatch {
  public:
    explicit MirroredBatch(const char* package);

    // To be asked before an instance is chosen: nobody changes the package any more, and no transaction of another
    // process runs. Logs nothing; false when one runs for too long.
    [[nodiscard]] bool hold();
    std::optional<std::string> value(const char* section, const char* option) const {
        return live_.value(section, option);
    }
    std::optional<std::string> read(const char* section, const char* option) { return live_.read(section, option); }

    int set(const char* section, const char* option, const char* value);
    int add_section(const char* section, const char* type);
    int delete_section(const char* section, const char* type);

    [[nodiscard]] bool commit(Caller caller = Caller::here());

  private:
    // The copy that follows a change; nothing when none does. what stands for the option in the protected list's
    // entries.
    Batch* copy_for(const char* function, const char* section, const char* what);
    template <typename Change>
    int change(const char* function, const char* section, const char* what, Change change);

    const char* package_;
    transaction::Turn turn_;
    Batch live_;
    std::optional<Batch> open_copy_;
    std::optional<Batch> protected_copy_;
};

// Ends an exported call of one change. A refused commit is logged, but reported within a transaction only: else the
// call's result is that of the change.
template <typename AnyBatch>
int finish(AnyBatch& batch, int result, Caller caller = Caller::here()) {
    const bool stored = batch.commit(caller);
    return stored || !transaction::is_running() ? result : -1;
}

}  // namespace cwmp
