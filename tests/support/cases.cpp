// The program's own cases: every text file of the root's case directory, see docs/testing.md. With --renew the
// files are written anew, each row with what its call told.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "router_test.h"
#include "rows.h"

namespace {

constexpr const char* kDirectory = "/usr/share/router/cases";
constexpr std::size_t kWidth = 120;

// A title, "== So it is", then its lines, a row with those it goes on in; the first case of a file has no title and
// is the world of the others.
using Case = std::vector<std::string>;

std::vector<Case> read_cases(const std::filesystem::path& path) {
    std::vector<Case> cases(1);
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("== ")) cases.emplace_back();
        if (line.starts_with("    "))
            cases.back().back() += "\n" + line;
        else
            cases.back().push_back(line);
    }
    return cases;
}

// A row, broken between parts where it is too long.
std::string written(const std::string& call, const std::string& told) {
    std::string text, current = call + " =>", mark;
    for (const auto& each : rows::split(told, " / ")) {
        for (const auto& part : rows::split(each, " | ")) {
            if (current.size() + 1 + mark.size() + part.size() > kWidth) {
                text += current + "\n";
                current = "   ";
            }
            current += " " + mark + part;
            mark = "| ";
        }
        mark = "/ ";
    }
    return text + current;
}

class CaseTest : public RouterTest {
  public:
    CaseTest(Case& start, Case& own) : cases_{&start, &own} {}

    void TestBody() override {
        for (Case* lines : cases_)
            for (std::string& line : *lines)
                if (!line.empty() && !line.starts_with('#') && !line.starts_with("== ")) run(line);
    }

    static inline bool renew = false;

  private:
    void run(std::string& line) {
        if (!is_call(line)) return world(line);
        std::string row = line;
        const std::string call = rows::take_until(row, " =>"), now = written(call, told(call));
        if (renew)
            line = now;
        else
            EXPECT_EQ(line, now);
    }

    std::array<Case*, 2> cases_;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    CaseTest::renew = argc > 1 && std::string(argv[1]) == "--renew";
    std::map<std::filesystem::path, std::vector<Case>> files;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(kDirectory, none))
        if (entry.path().extension() == ".cases") files[entry.path()] = read_cases(entry.path());
    for (auto& [path, cases] : files) {
        for (Case& each : cases) {
            if (&each == &cases[0]) continue;
            std::string name = each[0].substr(3);
            std::replace(name.begin(), name.end(), ' ', '_');
            const auto make = [&start = cases[0], &each]() -> RouterTest* { return new CaseTest(start, each); };
            testing::RegisterTest(path.stem().c_str(), name.c_str(), nullptr, nullptr, path.c_str(), 0, make);
        }
    }
    const int result = RUN_ALL_TESTS();
    for (const auto& [path, cases] : files) {
        if (!CaseTest::renew) break;
        std::ofstream stream(path);
        for (const Case& each : cases)
            for (const std::string& line : each) stream << line << "\n";
    }
    return result;
}
