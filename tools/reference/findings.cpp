#include "findings.h"

#include <array>
#include <fstream>

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

// Texts hold no control characters: they are escaped where they are made.
constexpr char kField = '\x1f', kFact = '\x1e';
constexpr std::string Finding::*kFields[] = {&Finding::path,     &Finding::model,  &Finding::value,
                                             &Finding::misfit,   &Finding::stored, &Finding::group,
                                             &Finding::services, &Finding::others, &Finding::back};

}  // namespace

void save(const World& world, const std::filesystem::path& file) {
    std::ofstream out(file, std::ios::binary);
    for (const Finding& finding : world.findings) {
        for (const auto field : kFields) out << finding.*field << kField;
        for (const std::string& fact : finding.facts) out << fact << kFact;
        out << '\n';
    }
    out.close();
    if (!out) throw Failure{file.string(), kNoFault, Exit::NotAllowed, "cannot be written"};
}

World load_world(const std::filesystem::path& file) {
    World world{file.stem().string(), {}};
    std::ifstream input(file, std::ios::binary);
    std::string line;
    while (std::getline(input, line)) {
        const auto fields = split(line, kField);
        if (fields.size() != std::size(kFields) + 1) {
            throw Failure{file.string(), kNoFault, Exit::Unusable, "no findings"};
        }
        Finding& finding = world.findings.emplace_back();
        for (std::size_t i = 0; i < std::size(kFields); ++i) finding.*kFields[i] = fields[i];
        finding.facts = split(fields.back(), kFact);
        finding.facts.pop_back();
    }
    if (world.findings.empty()) throw Failure{file.string(), kNoFault, Exit::Unusable, "no findings"};
    return world;
}

}  // namespace cwmp
