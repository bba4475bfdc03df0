#include "report.h"

#include <algorithm>
#include <numeric>

#include "services.h"
#include "text.h"

namespace cwmp {

namespace {

std::string joined(const std::vector<std::string>& parts, const char* separator) {
    std::string result;
    for (const std::string& part : parts) {
        if (!result.empty()) result += separator;
        result += part;
    }
    return result;
}

using Rows = std::vector<std::vector<std::string>>;

constexpr size_t kGap = 2;
constexpr size_t kNarrowest = 12;

// Of all columns, the last gives way first, then the widest.
void fit(std::vector<size_t>& widths, size_t columns) {
    const size_t gaps = widths.empty() ? 0 : (widths.size() - 1) * kGap;
    for (size_t all = std::accumulate(widths.begin(), widths.end(), gaps); all > columns; --all) {
        size_t& widest = *std::max_element(widths.begin(), widths.end());
        size_t& narrowed = widths.back() > 2 * kNarrowest ? widths.back() : widest;
        if (narrowed <= kNarrowest) return;
        --narrowed;
    }
}

// Left-aligned columns two blanks apart; a cell that is wider than its column goes on below.
void print_table(const Rows& rows, size_t columns, FILE* out) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    if (columns) fit(widths, columns);
    for (const auto& row : rows) {
        Rows cells;
        size_t height = 1;
        for (size_t i = 0; i < row.size(); ++i) {
            height = std::max(height, cells.emplace_back(folded(row[i], widths[i])).size());
        }
        for (size_t at = 0; at < height; ++at) {
            std::string line;
            for (size_t i = 0; i < row.size(); ++i) {
                const std::string& piece = at < cells[i].size() ? cells[i][at] : "";
                line += piece + std::string(widths[i] - piece.size() + kGap, ' ');
            }
            line.erase(line.find_last_not_of(' ') + 1);
            std::fprintf(out, "%s\n", line.c_str());
        }
    }
}

void print_revert(const Report& report, FILE* out) {
    std::fprintf(out, "%s", *report.reverted ? "the transaction was reverted" : "not everything could be undone");
    for (const Failure& error : report.errors) {
        std::fprintf(out, ": %s: %s", printable(error.subject).c_str(), printable(error.message).c_str());
    }
    std::fprintf(out, "\n");
}

Rows parameter_rows(const Report& report) {
    Rows rows;
    for (const auto& parameter : report.parameters) {
        if (report.table && parameter.path.starts_with(report.table_of)) continue;
        auto& row = rows.emplace_back(std::vector{printable(parameter.path)});
        if (!parameter.passes.empty()) row.push_back(joined(parameter.passes, ","));
        row.push_back(printable(parameter.value));
    }
    return rows;
}

Rows printable_rows(Rows rows) {
    for (auto& row : rows) {
        for (std::string& cell : row) cell = printable(cell);
    }
    return rows;
}

}  // namespace

Exit Report::exit() const {
    Exit worst = Exit::Done;
    for (const Failure& error : errors) worst = std::max(worst, error.exit);
    return worst;
}

void print_text(const Report& report, size_t columns, FILE* out) {
    auto rows = parameter_rows(report);
    if (report.names) {
        for (const auto& name : *report.names) {
            const bool parameter = name.kind == Entry::Kind::Parameter;
            rows.push_back({name.path, std::string(name.access()), parameter ? name.type.text : ""});
        }
    }
    if (report.instances) {
        for (const std::string& path : *report.instances) rows.push_back({path});
    }
    print_table(rows, columns, out);
    if (report.table) print_table(printable_rows(*report.table), columns, out);
    for (const std::string& note : report.notes) std::fprintf(out, "%s\n", note.c_str());
    for (const auto& group : report.groups) {
        std::fprintf(out, "group %s: %s\n", group.name.c_str(), joined(group.steps, ", ").c_str());
    }
    if (report.diagnostics_complete) std::fputs("diagnostics complete\n", out);
    if (report.reverted) print_revert(report, out);
    if (report.apply_flags) {
        const auto services = services_of(*report.apply_flags);
        const std::string text = services.empty() ? "none" : joined(services, ", ");
        std::fprintf(out, "apply flags 0x%04x: %s\n", *report.apply_flags, text.c_str());
    }
}

void print_plain(const Report& report, FILE* out) {
    for (const auto& parameter : report.parameters) {
        std::fprintf(out, "%s=%s\n", parameter.path.c_str(), as_line(parameter.value).c_str());
    }
    if (report.names) {
        for (const Entry& name : *report.names) std::fprintf(out, "%s\n", name.path.c_str());
    }
    if (report.secrets) {
        for (const std::string& path : *report.secrets) std::fprintf(out, "# secret: %s\n", path.c_str());
    }
    if (report.instances) {
        for (const std::string& path : *report.instances) std::fprintf(out, "%s\n", path.c_str());
    }
}

void print_errors(const Report& report, FILE* err) {
    for (const Failure& error : report.errors) {
        const std::string fault = error.fault ? "fault " + std::to_string(error.fault) + ": " : "";
        std::fprintf(err, "dm: %s: %s%s\n", printable(error.subject).c_str(), fault.c_str(),
                     printable(error.message).c_str());
    }
}

}  // namespace cwmp
