#include "model.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

constexpr const char* kModel = "/usr/share/cwmp-datamodel/model";

ModelLine parse(const std::string& text) {
    std::istringstream columns(text);
    ModelLine line;
    std::string access, attribute;
    columns >> line.path >> access;
    if (line.path.starts_with('#')) line.path.clear();
    line.writable = access == "W" || access == "AD";
    line.is_object = line.path.ends_with('.');
    std::istringstream segments(line.path.substr(line.path.find('.') + 1));
    for (std::string segment; std::getline(segments, segment, '.');) {
        if (segment == "{i}")
            ++line.numbers;
        else
            line.handler += (line.handler.empty() ? "" : "_") + segment;
    }
    while (columns >> attribute) {
        const std::string value = attribute.substr(attribute.find('=') + 1);
        if (attribute.starts_with("handler=")) line.handler = value;
        if (attribute.starts_with("locate="))
            line.numbers = value == "none"
                               ? 0
                               : static_cast<std::size_t>(std::count(value.begin(), value.end(), ',')) + 1;
        line.apply_only |= attribute == "passes=apply";
        line.secret |= attribute == "secret";
    }
    return line;
}

}  // namespace

void PrintTo(const ModelLine& line, std::ostream* stream) { *stream << line.path; }

std::vector<ModelLine> model_lines() {
    std::vector<ModelLine> lines;
    std::set<std::pair<std::string, std::size_t>> known;
    for (const auto& file : std::filesystem::directory_iterator(kModel)) {
        std::ifstream stream(file.path());
        for (std::string row; std::getline(stream, row);) {
            const ModelLine line = parse(row);
            const bool is_fixed_table = line.is_object && !line.writable;
            if (line.path.empty() || is_fixed_table) continue;
            if (known.emplace(line.handler, line.numbers).second) lines.push_back(line);
        }
    }
    return lines;
}
