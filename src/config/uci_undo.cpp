// What a transaction notes of a package before it is changed, and how that comes back.
#include <uci.h>

#include <cassert>
#include <cstdio>
#include <memory>
#include <string>

#include "config/uci_context.h"
#include "config/uci_export.h"
#include "core/text.h"

namespace cwmp {
namespace {

constexpr std::string_view kAbsent = "0";
constexpr std::string_view kText = "1";
constexpr std::string_view kNamed = "1";
constexpr std::string_view kList = "2";
constexpr std::string_view kAnonymous = "2";

// The elements that stand before one.
std::string place_of(const uci_list& all, const uci_element& element) {
    int place = 0;
    for (const uci_list* at = all.next; at != &element.list && at != &all; at = at->next) ++place;
    return decimal(place);
}

void move_to(uci_list& all, uci_element& element, int place) {
    uci_list& moved = element.list;
    moved.prev->next = moved.next;
    moved.next->prev = moved.prev;
    uci_list* next = all.next;
    while (place-- > 0 && next != &all) next = next->next;
    moved.next = next;
    moved.prev = next->prev;
    moved.prev->next = &moved;
    next->prev = &moved;
}

// A package's text as this version of libuci writes it, empty for one that is none; nothing when something fails.
std::optional<std::string> rewritten(const std::string& text, const char* package) {
    const std::unique_ptr<uci_context, decltype(&uci_free_context)> context(uci_alloc_context(), uci_free_context);
    std::string source = text + '\n';
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(fmemopen(source.data(), source.size(), "r"),
                                                                 std::fclose);
    uci_package* read = nullptr;
    if (context == nullptr || stream == nullptr) return std::nullopt;
    const int imported = uci_import(context.get(), stream.get(), package, &read, true);
    if (imported == UCI_ERR_PARSE) return "";
    if (imported != UCI_OK || read == nullptr) return std::nullopt;
    const Export result(context.get(), read);
    if (!result) return std::nullopt;
    return std::string(result.text());
}

}  // namespace

void UciContext::note_section(const char* name) {
    const uci_section* found = section(name);
    transaction::NoteWriter note('S');
    note << confdir_ << package_->e.name << name;
    if (found == nullptr) {
        note << "0"sv << kAbsent;
    } else {
        note << place_of(package_->sections, found->e) << (found->anonymous ? kAnonymous : kNamed) << found->type;
    }
    notes_ += note.line();
}

void UciContext::note_option(const char* section, const char* option) {
    uci_section* owner = this->section(section);
    const uci_option* found = owner != nullptr ? uci_lookup_option(context_.get(), owner, option) : nullptr;
    transaction::NoteWriter note('O');
    note << confdir_ << package_->e.name << section << option;
    if (found == nullptr) {
        note << "0"sv << kAbsent;
    } else if (found->type == UCI_TYPE_STRING) {
        note << place_of(owner->options, found->e) << kText << found->v.string;
    } else {
        note << place_of(owner->options, found->e) << kList;
        const uci_element* value = nullptr;
        uci_foreach_element(&found->v.list, value) note << value->name;
    }
    notes_ += note.line();
}

// Notes come back last first: the section before its options, these from the first on.
void UciContext::note_deletion(const char* section) {
    uci_section* found = this->section(section);
    if (found == nullptr) return;
    for (const uci_list* at = found->options.prev; at != &found->options; at = at->prev)
        note_option(section, list_to_element(at)->name);
    note_section(section);
}

bool UciContext::restore(char kind, transaction::NoteReader note) {
    return kind == 'S' ? restore_section(note) : restore_option(note);
}

bool UciContext::restore_section(transaction::NoteReader& note) {
    const std::string name = note.next();
    const int place = decimal_prefix(note.next().c_str());
    const std::string kind = note.next();
    const std::string type = note.next();
    const bool exists = section(name.c_str()) != nullptr;
    if (kind == kAbsent) return !exists || delete_section(name.c_str()) == UCI_OK;
    if (change(uci_set, name.c_str(), nullptr, type.c_str()) != UCI_OK) return false;
    uci_section* restored = section(name.c_str());
    if (restored == nullptr) return false;
    restored->anonymous = kind == kAnonymous;
    if (!exists) move_to(package_->sections, restored->e, place);
    return true;
}

bool UciContext::restore_option(transaction::NoteReader& note) {
    const std::string section = note.next();
    const std::string option = note.next();
    const int place = decimal_prefix(note.next().c_str());
    const std::string kind = note.next();
    uci_section* owner = this->section(section.c_str());
    if (owner == nullptr) return true;
    if (set_option(section.c_str(), option.c_str(), "") != UCI_OK) return false;
    if (kind == kAbsent) return true;
    while (!note.ends()) {
        const auto put = kind == kText ? uci_set : uci_add_list;
        if (change(put, section.c_str(), option.c_str(), note.next().c_str()) != UCI_OK) return false;
    }
    uci_option* restored = uci_lookup_option(context_.get(), owner, option.c_str());
    if (restored != nullptr) move_to(owner->options, restored->e, place);
    return true;
}

bool UciContext::commit_as(const std::string& text, Caller caller) {
    assert(is_loaded());
    const Export now(context_.get(), package_);
    const auto before = rewritten(text, package_->e.name);
    const bool known = now && before;
    const bool same = known && now.text() == *before;
    // What was never stored needs no room to be undone.
    const bool is_there = same && staged_ == 0 && package_text(confdir_, package_->e.name) == text;
    const bool stored = is_there || (known && store_text(same ? std::string_view(text) : now.text(), caller));
    lock_ = {};
    return stored;
}

}  // namespace cwmp
