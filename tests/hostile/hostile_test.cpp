// Hostile input through every line of the model: no value and no instance number, however odd, may crash the
// library, run as a command, harm the store, or leave a trace when it is refused. Runs in a demo router of
// its own, because handlers look closer at a value when they find the settings around it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <uci.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

#include "cwmp/agent_state.h"
#include "cwmp/handler.h"

namespace {

namespace fs = std::filesystem;

using Locate = std::array<int, CWMP_LOCATE_SIZE>;
using Files = std::map<std::string, std::string>;

constexpr const char* kModel = "/usr/share/cwmp-datamodel/model";
constexpr const char* kStore = "/etc/config";
constexpr const char* kOwned = "/tmp/owned";  // a shell that runs a value makes this file

constexpr const char* kWritable[] = {"/etc/config", "/etc/profile.d", "/tmp", "/var/state", "/var/tmp"};

// What the library may write to, as it was when the test program began.
class World {
  public:
    World() {
        if (!fs::exists("/.router-root")) throw std::runtime_error("runs inside a router root only");
        // What a run that crashed left behind is undone first.
        if (!fs::exists(kPristine)) copy_tree("", kPristine);
        copy_tree(kPristine, "");
        files_ = everything();
        packages = files(kStore).size();
    }

    void restore() const {
        for (const auto& [path, text] : everything()) {
            if (!files_.contains(path)) fs::remove_all(path);
        }
        const Files now = everything();
        for (const auto& [path, text] : files_) {
            const auto found = now.find(path);
            if (found != now.end() && found->second == text) continue;
            fs::create_directories(fs::path(path).parent_path());
            std::ofstream(path, std::ios::binary) << text;
        }
    }

    static Files files(const char* directory) {
        Files found;
        for (const auto& entry : fs::recursive_directory_iterator(directory)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream stream(entry.path(), std::ios::binary);
            found[entry.path()] = std::string(std::istreambuf_iterator<char>(stream), {});
        }
        return found;
    }

    std::size_t packages = 0;

  private:
    static constexpr const char* kPristine = "/var/lib/pristine";

    static Files everything() {
        Files found;
        for (const char* directory : kWritable) found.merge(files(directory));
        return found;
    }

    static void copy_tree(const std::string& from, const std::string& to) {
        for (const char* directory : kWritable) {
            fs::create_directories(to + directory);
            for (const auto& entry : fs::directory_iterator(to + directory)) fs::remove_all(entry);
            fs::copy(from + directory, to + directory, fs::copy_options::recursive);
        }
    }

    Files files_;
};

World& world() {
    static World the_world;
    return the_world;
}

class Library {
  public:
    Library() : handle_(dlopen("/usr/lib/libcwmp-datamodel.so", RTLD_NOW)) {
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        // The console's lines go through a shell, which expands what it finds in them.
        const int silence[] = {-1, 0};
        call("debug_level", CWMP_OP_APPLY, silence, nullptr);
    }
    ~Library() { dlclose(handle_); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool has(const std::string& name) const { return dlsym(handle_, name.c_str()) != nullptr; }

    int call(const std::string& name, int op, ...) const {
        const auto handler = reinterpret_cast<cwmp_handler>(dlsym(handle_, name.c_str()));
        va_list args;
        va_start(args, op);
        const int code = handler(op, args);
        va_end(args);
        return code;
    }

  private:
    void* handle_;
};

// A line of the model that has a handler.
struct Line {
    std::string path, handler;
    std::size_t numbers = 0;  // entries of locate that the path fills
    bool writable = false;
    bool is_object = false;
    bool apply_only = false;
};

void PrintTo(const Line& line, std::ostream* stream) { *stream << line.path; }

Line parse(const std::string& text) {
    std::istringstream columns(text);
    Line line;
    std::string access, attribute;
    columns >> line.path >> access;
    if (line.path.starts_with('#')) line.path.clear();
    line.writable = access == "W" || access == "AD";
    line.is_object = line.path.ends_with('.');
    std::istringstream segments(line.path.substr(line.path.find('.') + 1));
    for (std::string segment; std::getline(segments, segment, '.');) {
        if (segment == "{i}") {
            ++line.numbers;
        } else {
            line.handler += (line.handler.empty() ? "" : "_") + segment;
        }
    }
    while (columns >> attribute) {
        const std::string value = attribute.substr(attribute.find('=') + 1);
        if (attribute.starts_with("handler=")) line.handler = value;
        if (attribute.starts_with("locate=")) {
            line.numbers = value == "none"
                               ? 0
                               : static_cast<std::size_t>(std::count(value.begin(), value.end(), ',')) + 1;
        }
        line.apply_only |= attribute == "passes=apply";
    }
    return line;
}

// Each handler once, though several paths may lead to it.
std::vector<Line> model() {
    std::vector<Line> lines;
    std::set<std::pair<std::string, std::size_t>> known;
    for (const auto& [name, text] : World::files(kModel)) {
        std::istringstream stream(text);
        for (std::string row; std::getline(stream, row);) {
            const Line line = parse(row);
            const bool is_fixed_table = line.is_object && !line.writable;
            if (line.path.empty() || is_fixed_table) continue;
            if (known.emplace(line.handler, line.numbers).second) lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> hostile_values() {
    const std::string owned = std::string("touch ") + kOwned;
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return {"",
            "%s%n%s%n%99999d",
            "$(" + owned + ")",
            "`" + owned + "`",
            ";" + owned + ";",
            "|" + owned,
            "';" + owned + ";'",
            "\";" + owned + ";\"",
            "1\n" + owned + "\n",
            "1'\n\toption owned '1'\nconfig owned 'owned'\n",
            "../../tmp/owned",
            "4294967297",
            "-99999999999999999999",
            "\xff\xfe\xc0\x80",
            bytes,
            std::string(65536, 'x'),
            std::string(65536, '9'),
            std::string(65536, '\'')};
}

std::string shown(const std::string& value) {
    return ::testing::PrintToString(value.substr(0, 60)) + " (" + std::to_string(value.size()) + " bytes)";
}

// Instance numbers that no path has: in all places, then in each place with 1 in the others.
std::vector<Locate> odd_numbers(std::size_t numbers) {
    std::vector<Locate> all;
    for (const int odd : {0, -1, INT_MAX, INT_MIN}) {
        Locate locate{};
        for (std::size_t i = 0; i < numbers; ++i) locate[i] = odd;
        all.push_back(locate);
        for (std::size_t i = 0; i < numbers && numbers > 1; ++i) {
            for (std::size_t j = 0; j < numbers; ++j) locate[j] = i == j ? odd : 1;
            all.push_back(locate);
        }
    }
    return all;
}

Locate ordinary_numbers(std::size_t numbers) {
    Locate locate{};
    for (std::size_t i = 0; i < numbers; ++i) locate[i] = 1;
    return locate;
}

// These switch the package over to custom identifiers before they look at the new one.
bool writes_before_it_checks(const std::string& handler, const std::string& package) {
    return handler.ends_with("Bridging_Bridge_VLAN_VLANID") && package == "/etc/config/iptv";
}

class Hostile : public ::testing::TestWithParam<Line> {
  protected:
    ~Hostile() override { world().restore(); }

    void get(Locate locate) {
        // Nothing, or a terminated answer within the size that the agent provides.
        const std::vector<char> untouched(CWMP_VALUE_SIZE, 'x');
        std::vector<char> value = untouched;
        const int code = library.call(line.handler, CWMP_OP_GET, locate.data(), value.data(), &agent);
        EXPECT_TRUE(code == 0 || code == -1) << code;
        if (value != untouched) {
            EXPECT_LT(strnlen(value.data(), value.size()), value.size()) << "not terminated";
        }
    }

    // The passes of a transaction; a refused value changes neither the store nor, in its first pass, the
    // flags.
    void set(const Locate& numbers, const std::string& value) {
        SCOPED_TRACE(shown(value));
        const Files before = World::files(kStore);
        unsigned flags = 0;
        int code = 0;
        bool wrote = false;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            if (line.apply_only && op != CWMP_OP_APPLY) continue;
            Locate locate = numbers;
            std::string copy = value;
            code = library.call(line.handler, op, locate.data(), copy.data(), &flags, &agent);
            EXPECT_TRUE(code == 0 || code == -1) << code;
            EXPECT_EQ(copy, value) << "the caller's text was changed";
            if (code != 0) break;
            wrote = true;
        }
        if (code != 0) {
            revert();
            for (const auto& [package, text] : World::files(kStore)) {
                if (writes_before_it_checks(line.handler, package)) continue;
                const auto found = before.find(package);
                EXPECT_TRUE(found != before.end() && found->second == text)
                    << "refused, and " << package << " changed";
            }
            EXPECT_TRUE(wrote || flags == 0) << "refused, and flags " << flags << " raised";
        }
        expect_unharmed();
        get(numbers);
    }

    void revert() {
        if (!library.has("func_obj_revert")) return;
        Locate locate{};
        unsigned flags = 0;
        library.call("func_obj_revert", CWMP_OP_APPLY, locate.data(), "", &flags, nullptr);
    }

    // No value ran as a command, no package came or went, each can still be read, and none has sections from
    // a value.
    static void expect_unharmed() {
        EXPECT_FALSE(fs::exists(kOwned)) << "the value ran as a command";
        const Files now = World::files(kStore);
        EXPECT_EQ(now.size(), world().packages) << "packages came or went";
        const std::unique_ptr<uci_context, decltype(&uci_free_context)> context(uci_alloc_context(),
                                                                                &uci_free_context);
        for (const auto& [path, text] : now) {
            uci_package* package = nullptr;
            const std::string name = fs::path(path).filename();
            EXPECT_EQ(uci_load(context.get(), name.c_str(), &package), UCI_OK) << path << " is broken";
            if (package == nullptr) continue;
            EXPECT_EQ(uci_lookup_section(context.get(), package, "owned"), nullptr) << path;
        }
    }

    void object(Locate locate, const std::string& number) {
        unsigned flags = 0;
        library.call(line.handler, CWMP_OP_DELETE, locate.data(), number.c_str(), &flags, &agent);
        expect_unharmed();
    }

    const Line& line = GetParam();
    Library library;
    cwmp_agent_state agent{};
};

TEST_P(Hostile, InstanceNumbersAreSafe) {
    ASSERT_TRUE(library.has(line.handler));
    for (const Locate& locate : odd_numbers(line.numbers)) {
        SCOPED_TRACE(::testing::PrintToString(locate));
        if (line.is_object) {
            object(locate, "1");
            for (uint32_t capacity : {0U, 1U, 64U}) {
                std::vector<uint32_t> list(capacity);
                Locate own = locate;
                library.call(line.handler, CWMP_OP_LIST, own.data(), list.data(), &capacity, &agent);
            }
            std::vector<char> number(CWMP_VALUE_SIZE);
            Locate own = locate;
            unsigned flags = 0;
            library.call(line.handler, CWMP_OP_ADD, own.data(), number.data(), &flags, &agent);
            expect_unharmed();
        } else {
            get(locate);
            if (line.writable) set(locate, "1");
        }
        world().restore();
    }
}

TEST_P(Hostile, ValuesAreSafe) {
    if (!line.writable) return;
    ASSERT_TRUE(library.has(line.handler));
    for (const auto& value : hostile_values()) {
        if (line.is_object) {
            object(ordinary_numbers(line.numbers), value);
        } else {
            set(ordinary_numbers(line.numbers), value);
        }
        world().restore();
    }
}

std::string test_name(const ::testing::TestParamInfo<Line>& info) {
    std::string name = info.param.path;
    for (char& letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Model, Hostile, ::testing::ValuesIn(model()), test_name);

}  // namespace
