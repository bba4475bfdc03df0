#include "config/transaction.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "config/store_directory.h"
#include "config/uci_context.h"
#include "cwmp/transaction.h"

namespace cwmp::transaction {
namespace {

constexpr std::string_view kHeader = "cwmp-transaction 1\n";
constexpr std::string_view kDigits = "0123456789ABCDEF";

struct Running {
    Descriptor file;
    off_t start = 0;  // of its notes; what a cut transaction has left stands before
    bool noting = false;
    bool kept = false;  // what could not be undone may be tried again
};
Running running;

off_t size_of(const Descriptor& file) {
    struct stat status = {};
    return fstat(file.get(), &status) == 0 ? status.st_size : 0;
}

constexpr off_t kFirst = kHeader.size();

Descriptor open_notes() {
    make_store_directory(kScratchStore);
    if (!is_trusted_directory(kScratchStore)) return Descriptor();
    return open_own_file(CWMP_TRANSACTION_NOTES, O_RDWR | O_CREAT | O_APPEND);
}

bool cut_back(off_t size) { return ftruncate(running.file.get(), size) == 0; }

}  // namespace

NoteWriter& NoteWriter::operator<<(std::string_view field) {
    line_ += '\t';
    for (const char letter : field) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte >= ' ' && letter != '%') {
            line_ += letter;
        } else {
            line_ += '%';
            line_ += kDigits[byte >> 4];
            line_ += kDigits[byte & 15];
        }
    }
    return *this;
}

std::string NoteReader::next() {
    std::string field;
    std::size_t i = 0;
    for (; i < rest_.size() && rest_[i] != '\t'; ++i) {
        if (rest_[i] == '%' && i + 2 < rest_.size()) {
            field += static_cast<char>(kDigits.find(rest_[i + 1]) << 4 | kDigits.find(rest_[i + 2]));
            i += 2;
        } else {
            field += rest_[i];
        }
    }
    rest_.remove_prefix(std::min(i + 1, rest_.size()));
    return field;
}

bool is_running() { return running.noting; }

bool begin(int milliseconds) {
    if (running.file) return false;
    running.file = open_notes();
    const bool locked = running.file && lock_within(running.file.get(), milliseconds);
    if (const auto text = locked ? read_whole(running.file.get()) : std::nullopt) {
        const auto whole = static_cast<off_t>(text->rfind('\n') + 1);
        running.start = std::max(whole, kFirst);
        running.noting = cut_back(whole) && (whole > 0 || write_whole(running.file.get(), kHeader));
        if (running.noting) return true;
        cut_back(whole);
    }
    running = Running();
    return false;
}

bool keep(std::string_view lines) {
    const off_t before = size_of(running.file);
    if (write_whole(running.file.get(), lines)) return true;
    cut_back(before);
    return false;
}

bool keep_changes(const char* directory, const char* package, const std::string& lines) {
    const std::string first = (NoteWriter('T') << directory << package).line();
    const std::string_view begins(first.data(), first.size() - 1);
    const auto known = read_whole(running.file.get(), running.start);
    if (known && known->find(begins) != std::string::npos) return keep(lines);
    const auto text = package_text(directory, package);
    return text && keep((NoteWriter('T') << directory << package << *text).line() + lines);
}

bool take_over() {
    if (running.file || access(CWMP_TRANSACTION_NOTES, F_OK) != 0) return false;
    running.file = open_notes();
    running.start = kFirst;
    if (running.file && lock_within(running.file.get(), 0) && size_of(running.file) > kFirst) return true;
    running = Running();
    return false;
}

std::optional<std::string> notes() {
    running.noting = false;
    auto text = read_whole(running.file.get(), running.start);
    if (!text) return std::nullopt;
    text->insert(0, 1, '\n');
    text->resize(text->rfind('\n') + 1);
    return text;
}

namespace {

// key: the fields of the package as its notes have them, tabs around.
bool undo_package(const std::string& notes, std::string_view key) {
    NoteReader fields(key.substr(1));
    const std::string directory = fields.next();
    UciContext context(directory.c_str());
    if (!context || !context.load_to_change(fields.next().c_str())) return false;
    std::string before;
    for (std::size_t end = notes.size() - 1; end > 0;) {
        const std::size_t start = notes.rfind('\n', end - 1) + 1;
        const auto line = std::string_view(notes).substr(start, end - start);
        if (line.substr(1).starts_with(key)) {
            if (line[0] == 'T') {
                before = NoteReader(line.substr(1 + key.size())).next();
            } else if (!context.restore(line[0], NoteReader(line.substr(1 + key.size())))) {
                return false;
            }
        }
        end = start - 1;
    }
    return context.commit_as(before);
}

}  // namespace

void keep_notes() { running.kept = true; }

bool undo(const std::string& notes) {
    constexpr std::string_view kBegins = "\nT\t";
    bool undone = true;
    for (std::size_t at = 0; (at = notes.find(kBegins, at)) != std::string::npos; ++at) {
        const std::size_t package = notes.find('\t', at + kBegins.size()) + 1;
        const std::size_t end = notes.find('\t', package) + 1;
        const auto begins = std::string_view(notes).substr(at, end - at);
        // A cut transaction may have noted the same package before.
        if (notes.find(begins) == at) undone = undo_package(notes, begins.substr(kBegins.size() - 1)) && undone;
    }
    if (!undone) keep_notes();
    return undone;
}

bool end() {
    const bool forgotten = running.kept || cut_back(running.start > kFirst ? running.start : 0);
    running = Running();
    return forgotten;
}

bool Turn::take() {
    constexpr int kPatience = 30'000;
    if (!running.file) lock_ = open_notes();
    // Where it cannot be noted, nobody can have begun one.
    return !lock_ || lock_within(lock_.get(), kPatience);
}

}  // namespace cwmp::transaction
