// The program's own cases: every text file of the root's case directory, see docs/testing.md. With --renew the
// files are written anew, each row with what its call told.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>

#include "router_test.h"
#include "rows.h"

using rows::Words;

namespace {

constexpr const char* kDirectory = "/usr/share/router/cases";
constexpr std::size_t kWidth = 115;
constexpr const char* kCalls[] = {"get ",    "set ",         "stage ",  "check ",  "apply ",
                                  "passes ", "add ",         "delete ", "list ",   "call ",
                                  "text ",   "transaction ", "do ",     "starved "};

bool is_call(const std::string& line) {
    return std::any_of(std::begin(kCalls), std::end(kCalls),
                       [&](const char* verb) { return line.starts_with(verb); });
}

struct Line {
    std::string text;      // of a call: without what it told
    std::string expected;  // of a call
};

// A title, then its lines; the first case of a file has no title and is the world of the others.
struct Case {
    std::string title;
    std::vector<Line> lines;
};

std::vector<Case> read_cases(const std::filesystem::path& path) {
    std::vector<Case> cases(1);
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);) {
        auto& lines = cases.back().lines;
        if (line.starts_with("== ")) {
            cases.push_back({line.substr(3), {}});
        } else if (line.starts_with("    ") && !lines.empty()) {
            lines.back().expected += (lines.back().expected.empty() ? "" : " ") + rows::trim(line);
        } else {
            const auto arrow = is_call(line) ? line.find(" =>") : std::string::npos;
            lines.push_back({line.substr(0, arrow),
                             arrow == std::string::npos ? "" : rows::trim(line.substr(arrow + 3))});
        }
    }
    return cases;
}

// A row, broken between calls where it is too long, and within a call that is too long.
std::string written(const Line& line) {
    if (!is_call(line.text)) return line.text + "\n";
    std::string text, current = line.text + " =>";
    const auto add = [&](const std::string& piece) {
        if (current.size() + 1 + piece.size() > kWidth) {
            text += current + "\n";
            current = "   ";
        }
        current += " " + piece;
    };
    std::string mark;
    for (const auto& told : rows::split(line.expected, " / ")) {
        if (told.size() + 6 <= kWidth) {
            add(mark + told);
        } else {
            for (const auto& part : rows::split(told, " | ")) {
                add(mark + part);
                mark = "| ";
            }
        }
        mark = "/ ";
    }
    return text + current + "\n";
}

class CaseTest : public RouterTest {
  public:
    CaseTest(std::vector<Line>& start, Case& own) : start_(start), own_(own) {}

    void TestBody() override {
        for (auto* lines : {&start_, &own_.lines}) {
            for (Line& line : *lines) {
                if (line.text.empty() || line.text[0] == '#') continue;
                if (!is_call(line.text)) {
                    if (line.text.starts_with("use "))
                        use(line.text.substr(4));
                    else
                        world(line.text);
                    continue;
                }
                const std::string now = told(line.text);
                if (renew)
                    line.expected = now;
                else
                    EXPECT_EQ(now, line.expected) << line.text;
            }
        }
    }

    static bool renew;

  private:
    // A world that several files have in common.
    void use(const std::string& name) {
        for (const auto& line : rows::split(text_of(kDirectory + ("/" + name) + ".world").value_or(""), "\n"))
            world(line);
    }

    std::vector<Line>& start_;
    Case& own_;
};
bool CaseTest::renew = false;

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    CaseTest::renew = argc > 1 && std::string(argv[1]) == "--renew";
    std::map<std::string, std::vector<Case>> files;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(kDirectory, none))
        if (entry.path().extension() == ".cases") files[entry.path()] = read_cases(entry.path());
    for (auto& [path, cases] : files) {
        const std::string suite = std::filesystem::path(path).stem();
        for (std::size_t i = 1; i < cases.size(); ++i) {
            std::string name = cases[i].title;
            std::replace(name.begin(), name.end(), ' ', '_');
            testing::RegisterTest(
                suite.c_str(), name.c_str(), nullptr, nullptr, path.c_str(), 0,
                [&cases, i]() -> RouterTest* { return new CaseTest(cases[0].lines, cases[i]); });
        }
    }
    const int result = RUN_ALL_TESTS();
    for (const auto& [path, cases] : files) {
        if (!CaseTest::renew) break;
        std::ofstream stream(path);
        for (const Case& each : cases) {
            if (!each.title.empty()) stream << "== " << each.title << "\n";
            for (const Line& line : each.lines) stream << written(line);
        }
    }
    return result;
}
