// Transactions as an agent asks for them: the groups first, then what the store has noted.
#include "cwmp/transaction.h"

#include <string>

#include "config/transaction.h"
#include "staged/check_script.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

namespace {

// Before the value of each field in a note: whether the group that was applied holds another one.
constexpr char kChanged = '!';
constexpr char kSame = '=';

// Stages what a note says was in force. What the group has not changed is what the script tells of it now. False
// when nobody knew.
bool stage_noted(const Object& object, transaction::NoteReader note) {
    if (note.ends()) return false;
    const auto staging = Record::staging(object);
    const bool told = load_revert_record(object);
    for (int option = 0; option < object.count(); ++option) {
        std::string text = note.next();
        const bool changed = text.starts_with(kChanged);
        text.erase(0, 1);
        staging.put(option, changed || !told ? text : Record::revert(object).value(option));
    }
    staging.checked() = 1;
    return true;
}

// A group that was applied twice gets back what it had before the first time.
bool undo_groups(const std::string& notes, unsigned int* flags) {
    forget_groups();
    bool known = true;
    for (const Object* object : kObjects) {
        const std::string begins = std::string("\nG\t") + object->name + '\t';
        const std::size_t at = notes.find(begins);
        if (at == std::string::npos) continue;
        const std::size_t start = at + begins.size();
        const auto fields = std::string_view(notes).substr(start, notes.find('\n', start) - start);
        known = stage_noted(*object, transaction::NoteReader(fields)) && known;
    }
    return apply_all(flags) && known;
}

// The script is asked when the options are what they were, and writes over some of them: these come back again. What it
// was asked too early or not at all is made good by who tries it again.
bool undo(unsigned int* flags) {
    const auto notes = transaction::notes();
    bool undone = notes && transaction::undo(*notes);
    was_unheard();
    if (notes) undone = undo_groups(*notes, flags) && undone;
    if (notes && notes->find("\nG\t") != std::string::npos) undone = transaction::undo(*notes) && undone;
    if (!notes || was_unheard()) {
        transaction::keep_notes();
        undone = false;
    }
    return transaction::end() && undone;
}

}  // namespace

bool cwmp::staged::note_in_force(const Object& object) {
    if (!transaction::is_running()) return true;
    transaction::NoteWriter note('G');
    note << object.name;
    const auto revert = Record::revert(object);
    const auto staging = Record::staging(object);
    for (int option = 0; revert.checked() == 1 && option < object.count(); ++option) {
        const bool changed = object.is_switch(option) || revert.value(option) != staging.value(option);
        note << (changed ? kChanged : kSame) + revert.value(option);
    }
    if (revert.checked() != 1) note << "";
    return transaction::keep(note.line());
}

int cwmp_transaction_begin(int wait_ms) {
    if (!transaction::begin(wait_ms)) return -1;
    forget_groups();
    return 0;
}

int cwmp_transaction_end(int keep, unsigned int* applyFlags) {
    if (!transaction::is_running()) return -1;
    if (keep == 0) return undo(applyFlags) ? 0 : -1;
    const bool forgotten = transaction::end();
    forget_groups();
    return forgotten ? 0 : -1;
}

int cwmp_transaction_recover(unsigned int* applyFlags) {
    if (!transaction::take_over()) return 0;
    return undo(applyFlags) ? 1 : -1;
}
