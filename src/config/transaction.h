// The transaction that this process has begun, as the store sees it: one caller at a time, and a note of what was
// there before each change. Undoing is played from the notes: a killed process leaves them to the next one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/descriptor.h"

namespace cwmp::transaction {

// One note is a line.
//
// The file has a line for each, fields separated by tabs; '%', and bytes below the blank, are written as '%' and two
// hexadecimal digits. First line "cwmp-transaction 1"; a last line without its newline was cut before the change it
// tells of and counts for nothing. Written by the process that holds the file's lock, mode 0600. Kinds:
//
//   T directory package text                                     the package's file before its first change
//   O directory package section option place kind value...       an option: kind 0 absent, 1 text, 2 list
//   S directory package section place kind type                  a section: kind 0 absent, 1 named, 2 anonymous
//   G group value...                                             a group of settings in force, no value: unknown;
//                                                                before each '!', or '=' if the group left it as is
//
// place counts the options of the section, or the sections of the package, that stood before it.
class NoteWriter {
  public:
    explicit NoteWriter(char kind) : line_(1, kind) {}
    NoteWriter& operator<<(std::string_view field);
    std::string line() const { return line_ + '\n'; }

  private:
    std::string line_;
};

class NoteReader {
  public:
    explicit NoteReader(std::string_view line) : rest_(line) {}
    // Empty behind the last one.
    std::string next();
    bool ends() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

// Whether changes are to be noted now.
bool is_running();
bool begin(int milliseconds);
// False when the note is not kept: what it tells of must not be done then.
bool keep(std::string_view lines);
// The same for changes of a package that is still as it was.
bool keep_changes(const char* directory, const char* package, const std::string& lines);

// Takes over what a killed process has noted. False when there is nothing, or when it is not cut but running.
bool take_over();
// All notes, oldest first, each line between two newlines; nothing when they cannot be read. From now on nothing is
// noted.
std::optional<std::string> notes();
// What could not be undone may be tried again: end() leaves the notes.
void keep_notes();
// Plays notes of options and sections back. False when that failed for a package: the notes are kept then.
bool undo(const std::string& notes);
// Forgets the notes. False when they stay against all intent: who recovers undoes what they tell of.
bool end();

// The right to add or delete an instance: for its length no transaction of another process runs.
class Turn {
  public:
    // False when one runs for too long.
    bool take();

  private:
    Descriptor lock_;
};

}  // namespace cwmp::transaction
