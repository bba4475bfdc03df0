#pragma once

#include <cwmp/transaction.h>

#include "library.h"
#include "report.h"

namespace cwmp {

// A change of the store that happens whole or not at all. Other callers wait for its end.
class Change {
  public:
    // Throws Failure when another caller's change does not end.
    Change(const Library& library, Report& report);
    ~Change();
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    void keep();

    // Tells in the report whether everything is as it was, and what is to be reloaded for that.
    void undo();

  private:
    bool end(int keep);

    const Library& library_;
    Report& report_;
    bool running_ = true;
};

// Undoes what a killed caller has left half done.
void recover(const Library& library, Report& report);

}  // namespace cwmp
