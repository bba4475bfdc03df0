// The program's own cases: every text file of the root's case directory, see docs/testing.md. With --renew the
// files are written anew, each row with what its call told.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "router_test.h"
#include "rows.h"

namespace {

constexpr const char* kDirectory = "/usr/share/router/cases";
constexpr std::size_t kWidth = 118;

struct Line {
    std::string text;      // of a call: without what it told
    std::string expected;  // of a call
};

// A title, then its lines; the first case of a file has no title and is the world of the others.
struct Case {
    std::string title;
    std::vector<Line> lines;
};

class CaseTest : public RouterTest {
  public:
    CaseTest(std::vector<Line>& start, std::vector<Line>& own) : start_(start), own_(own) {}

    void TestBody() override {
        for (auto* lines : {&start_, &own_}) {
            for (Line& line : *lines) {
                if (line.text.empty() || line.text[0] == '#') continue;
                if (!is_call(line.text)) {
                    world(line.text);
                } else if (const std::string now = told(line.text); renew) {
                    line.expected = now;
                } else {
                    EXPECT_EQ(now, rows::shortened(line.expected)) << line.text;
                }
            }
        }
    }

    using RouterTest::is_call;
    static inline bool renew = false;

  private:
    std::vector<Line>& start_;
    std::vector<Line>& own_;
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
            const std::string call = CaseTest::is_call(line) ? rows::take_until(line, " =>") : "";
            lines.push_back(call.empty() ? Line{line, ""} : Line{call, rows::trim(line)});
        }
    }
    return cases;
}

// A row, broken between parts where it is too long.
std::string written(const Line& line) {
    if (!CaseTest::is_call(line.text)) return line.text + "\n";
    std::string text, current = line.text + " =>", mark;
    for (const auto& told : rows::split(line.expected, " / ")) {
        for (const auto& part : rows::split(told, " | ")) {
            if (current.size() + 1 + mark.size() + part.size() > kWidth) {
                text += current + "\n";
                current = "   ";
            }
            current += " " + mark + part;
            mark = "| ";
        }
        mark = "/ ";
    }
    return text + current + "\n";
}

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
            if (each.title.empty()) continue;
            std::string name = each.title;
            std::replace(name.begin(), name.end(), ' ', '_');
            testing::RegisterTest(path.stem().c_str(), name.c_str(), nullptr, nullptr, path.c_str(), 0,
                                  [&start = cases[0].lines, &own = each.lines]() -> RouterTest* {
                                      return new CaseTest(start, own);
                                  });
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
