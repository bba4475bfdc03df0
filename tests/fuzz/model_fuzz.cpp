// Random calls of every handler of the model in a demo router whose store and tools lie: random operations,
// instance numbers and values. No call may crash, hang, break a package, leave a file, section or option of its own
// making, or bring a stranger's text onto a command line outside quotes.
//   model_fuzz [SECONDS] [SEED]
#include <uci.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <random>

#include "cwmp/agent_state.h"
#include "failure.h"
#include "library.h"
#include "model.h"
#include "rows.h"
#include "store.h"

namespace {

namespace fs = std::filesystem;
using cwmp::Library;
using cwmp::Node;

constexpr const char* kCommands = "/var/log/router/commands";
constexpr int kStepSeconds = 60;
constexpr int kStepsOfAWorld = 100;
constexpr int kLies = 5;

std::mt19937_64 numbers;
stores::Snapshot pristine;
std::string step;  // what is being done, for the report of a failure

size_t below(size_t end) { return numbers() % end; }
bool one_in(size_t many) { return below(many) == 0; }
const auto& any_of(const auto& container) { return std::data(container)[below(std::size(container))]; }

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "model_fuzz: " << what << "\n  after " << step << '\n';
    std::_Exit(1);
}

// Texts that mean something to a shell, to the store or to a format hold the word that the oracles look for.
std::string hostile() {
    static const std::vector<std::string> kTexts = [] {
        std::vector<std::string> texts = rows::split(
            "1 0 true -1 4294967297 -99999999999999999999 192.168.0.9 00:11:22:33:44:55 ath0 %s%n%99999d "
            "$(@) `@` ;@; |@ ';@;' \";@;\" ../../tmp/owned \xff\xfe\xc0\x80 1\n@\n "
            "1'\n\toption\towned\t'1'\nconfig\towned\n ",
            " ");
        for (std::string& text : texts)
            if (const auto at = text.find('@'); at != std::string::npos) text.replace(at, 1, "touch /tmp/owned");
        texts.insert(texts.end(), 2, "");
        for (int byte = 1; byte < 256; ++byte) texts.back() += static_cast<char>(byte);
        return texts;
    }();
    std::string text = any_of(kTexts);
    if (one_in(8)) text += any_of(kTexts);
    if (one_in(50)) text = std::string(below(70000), text.empty() ? '9' : text[0]);
    if (one_in(20)) text.resize(below(text.size() + 1));
    return text;
}

// A tool says what nobody expects, or some options do.
void lie(const std::vector<fs::path>& answers, const std::vector<std::string>& options) {
    const std::string value = hostile();
    if (one_in(2)) {
        const std::string text = stores::text_of(any_of(answers));
        const size_t at = below(text.size() + 1);
        stores::write_file(any_of(answers), text.substr(0, at) + value + text.substr(at / 2));
    } else if (!value.empty() && uci_validate_text(value.c_str())) {
        for (int i = 0; i < kLies; ++i) stores::change(any_of(options) + "=" + value);
    }
}

// What the library and the router's scripts write, and what was there.
bool is_ours(const std::string& path) {
    constexpr const char* kOurs[] = {"/etc/",     "/tmp/tr069",    "/tmp/cwmp-config", "/tmp/ready_to_revert_item",
                                     "/tmp/.uci", "/tmp/is_binded"};
    return pristine.contains(path) || std::ranges::any_of(kOurs, [&](auto known) { return path.starts_with(known); });
}

// The word stands within single quotes, or, on a console line, where nothing is expanded.
bool is_quoted(const std::string& command) {
    const bool is_console = command.starts_with("echo \"[");
    char quote = 0;
    for (size_t i = 0; i < command.size(); ++i) {
        const char letter = command[i];
        const bool is_shown = is_console && quote == '"';
        if (letter == '\\' && quote != '\'')
            ++i;
        else if (quote == 0 ? letter == '\'' || letter == '"' : letter == quote)
            quote = quote == 0 ? letter : 0;
        else if (is_shown ? letter == '$' || letter == '`' : quote != '\'' && command.compare(i, 5, "owned") == 0)
            return false;
    }
    return quote == 0;
}

void expect_unharmed() {
    for (const auto& [name, text] : stores::snapshot()) {
        const std::string file = fs::path(name).filename();
        const bool is_text = file.starts_with('.') || file.find('-') != std::string::npos || file.ends_with("_log") ||
                             file == "trace_result";
        if (name.find("owned") != std::string::npos) fail("foreign: " + name);
        if (name[0] == '/' && !is_ours(name)) fail("a file was made: " + name);
        if ((name.starts_with("/etc/") || name.starts_with("/tmp/tr069/")) && !is_text)
            fail("a broken package: " + name);
    }
    for (const auto& command : rows::split(stores::text_of(kCommands), std::string(1, '\0')))
        if (!is_quoted(command)) fail("on a command line: " + command.substr(0, 300));
    fs::remove(kCommands);
}

const Library* library = nullptr;
unsigned flags = 0;

std::vector<int> any_numbers() {
    constexpr int kOdd[] = {0, -1, INT_MAX, INT_MIN, 2, 3, 9, 33};
    std::vector<int> all(CWMP_LOCATE_SIZE, 1);
    for (int& number : all)
        if (one_in(4)) number = any_of(kOdd);
    return all;
}

int call(const Node& node, int op, const std::string& value) {
    static cwmp_agent_state agent{};
    step = node.handler + " op " + std::to_string(op) + " = " + value.substr(0, 200);
    auto where = any_numbers();
    std::vector<char> text(CWMP_VALUE_SIZE, 'x');
    uint32_t capacity = static_cast<uint32_t>(below(65));
    const auto handler = library->find(node.handler);
    if (!handler) fail("no handler");
    const bool is_read = op == CWMP_OP_GET || (op == CWMP_OP_ADD && node.kind == Node::Kind::Table);
    if (!is_read) text[value.copy(text.data(), text.size() - 1)] = '\0';
    void* const third = op == CWMP_OP_LIST  ? static_cast<void*>(&capacity)
                        : op == CWMP_OP_GET ? static_cast<void*>(&agent)
                                            : &flags;
    alarm(kStepSeconds);
    const int code = cwmp::call(handler, op, where.data(), text.data(), third, &agent);
    alarm(0);
    if (op == CWMP_OP_GET && text[0] != 'x' && strnlen(text.data(), text.size()) == text.size()) fail("not terminated");
    if (node.kind == Node::Kind::Parameter && code != 0 && code != -1) fail("result " + std::to_string(code));
    if (!is_read && op != CWMP_OP_LIST && value != text.data()) fail("the caller's text was changed");
    return code;
}

std::vector<std::string> packages() {
    std::vector<std::string> texts;
    for (const auto& entry : fs::directory_iterator("/etc/config")) texts.push_back(stores::text_of(entry.path()));
    return texts;
}

// The passes of a transaction, undone when one of them refuses. What is refused at once leaves no trace.
void set(const Node& node) {
    const std::string value = hostile();
    const auto before = packages();
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        if (node.apply_only && op != CWMP_OP_APPLY) continue;
        flags = 0;
        if (call(node, op, value) == 0) continue;
        const bool switches_first = node.handler.ends_with("Bridging_Bridge_VLAN_VLANID");
        if (op == CWMP_OP_STAGE && flags != 0) fail("refused, and flags raised");
        if (op == CWMP_OP_STAGE && !switches_first && packages() != before) fail("refused, and stored");
        auto where = any_numbers();
        cwmp::call(library->find("func_obj_revert"), 1, where.data(), "", &flags, nullptr);
        return;
    }
}

void call_any(const Node& node) {
    constexpr int kOps[] = {0, 0, 0, 1, 2, 3, 4, 5, 6, -1, 99};
    const bool is_table = node.kind == Node::Kind::Table;
    const int op = one_in(4) ? any_of(kOps) : is_table ? 4 + static_cast<int>(below(3)) : 0;
    if (one_in(2) && node.writable && !is_table) return set(node);
    call(node, op, hostile());
}

void switch_any() {
    const int levels[] = {one_in(30) ? 7 : -1, 0};
    cwmp::call(library->find("debug_level"), 1, levels, nullptr);
    library->function<void()>(one_in(2) ? "cwmp_bulk_read_begin" : "cwmp_bulk_read_end")();
}

void run(int seconds) {
    const cwmp::Model model("/usr/share/cwmp-datamodel/model");
    std::vector<const Node*> nodes = model.root().lines();
    std::erase_if(nodes, [](const Node* node) { return !node->has_handler(); });
    const Library loaded("/usr/lib/libcwmp-datamodel.so");
    library = &loaded;
    std::vector<fs::path> answers;
    for (const auto& entry : fs::directory_iterator("/var/lib/router/answers")) {
        answers.push_back(entry.path());
        fs::permissions(entry.path(), fs::perms(0644));  // a text, and no program that makes one
    }
    stores::reset();
    pristine = stores::snapshot();
    std::vector<std::string> options;
    for (const auto& [name, text] : pristine)
        if (name[0] != '/' && rows::split(fs::path(name).filename(), ".").size() == 3) options.push_back(name);
    const std::time_t end = std::time(nullptr) + seconds;
    size_t calls = 0;
    while (std::time(nullptr) < end) {
        stores::reset();
        switch_any();
        for (int i = 0; i < kStepsOfAWorld; ++i, ++calls) {
            if (one_in(3)) lie(answers, options);
            call_any(*any_of(nodes));
            if (one_in(10)) expect_unharmed();
        }
        expect_unharmed();
    }
    std::cerr << calls << " calls of " << nodes.size() << " handlers\n";
}

}  // namespace

int main(int argc, char** argv) {
    const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : std::random_device()();
    std::cerr << "model_fuzz: seed " << seed << '\n';
    numbers.seed(seed);
    std::signal(SIGALRM, [](int) { fail("it hangs"); });
    try {
        run(argc > 1 ? std::atoi(argv[1]) : 60);
    } catch (const std::exception& error) {
        fail(error.what());
    } catch (const cwmp::Failure& failure) {
        fail(failure.subject + ": " + failure.message);
    }
}
