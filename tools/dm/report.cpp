#include "report.h"

#include <algorithm>

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

// Left-aligned columns two blanks apart.
void print_table(const std::vector<std::vector<std::string>>& rows, FILE* out) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (const auto& row : rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line.append(widths[i] - row[i].size() + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::fprintf(out, "%s\n", line.c_str());
    }
}

// A transaction ends with its first refusal, which is the reason.
void print_revert(const Report& report, FILE* out) {
    std::fprintf(out, "%s", *report.reverted ? "the transaction was reverted" : "nothing could be reverted");
    for (const Failure& error : report.errors) {
        std::fprintf(out, ": %s: %s", printable(error.subject).c_str(), printable(error.message).c_str());
    }
    std::fprintf(out, "\n");
}

std::vector<std::vector<std::string>> parameter_rows(const std::vector<Report::Parameter>& parameters) {
    std::vector<std::vector<std::string>> rows;
    for (const auto& parameter : parameters) {
        auto& row = rows.emplace_back(std::vector{printable(parameter.path)});
        if (!parameter.passes.empty()) row.push_back(joined(parameter.passes, ","));
        row.push_back(printable(parameter.value));
    }
    return rows;
}

std::vector<std::vector<std::string>> printable_rows(std::vector<std::vector<std::string>> rows) {
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

void print_text(const Report& report, FILE* out) {
    auto rows = report.table ? printable_rows(*report.table) : parameter_rows(report.parameters);
    if (report.names) {
        for (const auto& name : *report.names) {
            const bool parameter = name.kind == Entry::Kind::Parameter;
            rows.push_back({name.path, std::string(name.access()), parameter ? name.type.text : ""});
        }
    }
    if (report.instances) {
        for (const std::string& path : *report.instances) rows.push_back({path});
    }
    print_table(rows, out);
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

void print_errors(const Report& report, FILE* err) {
    for (const Failure& error : report.errors) {
        const std::string fault = error.fault ? "fault " + std::to_string(error.fault) + ": " : "";
        std::fprintf(err, "dm: %s: %s%s\n", printable(error.subject).c_str(), fault.c_str(),
                     printable(error.message).c_str());
    }
}

}  // namespace cwmp
