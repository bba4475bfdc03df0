#include "subject.h"

#include <cwmp/handler.h>

#include <algorithm>
#include <cstdint>
#include <map>

#include "services.h"
#include "text.h"
#include "values.h"

namespace cwmp {

namespace {

constexpr std::size_t kFewOptions = 6;
constexpr std::size_t kFewValues = 4;
constexpr std::size_t kLongFact = 300;
constexpr const char* kAnyText = "zz";

std::string joined(const std::vector<std::string>& parts, const char* separator) {
    std::string result;
    for (const std::string& part : parts) result += (result.empty() ? "" : separator) + part;
    return result;
}

std::string in_quotes(const std::string& value) { return '"' + shown(value) + '"'; }

bool is_word(char letter) { return std::isalnum(static_cast<unsigned char>(letter)) != 0; }

// The text with the value replaced by "=", so that the same thing done with another value looks the same.
std::string without_value(std::string text, const std::string& value) {
    if (value.empty()) return text;
    for (std::size_t at = text.find(value); at != std::string::npos; at = text.find(value, at + 1)) {
        const bool inside =
            (at > 0 && is_word(text[at - 1]) && is_word(value.front())) ||
            (at + value.size() < text.size() && is_word(text[at + value.size()]) && is_word(value.back()));
        if (!inside) text.replace(at, value.size(), "=");
    }
    return text;
}

std::string change_text(const Change& change, const std::string& value) {
    if (!change.value) return change.place + " gone";
    return change.place + "=" + (*change.value == value ? "=" : shown(*change.value));
}

// The mirror of the agent's own package, and what the demo's check script keeps for itself.
bool is_copy(const Change& change) {
    return change.place.starts_with("/tmp/cwmp-config") || change.place.starts_with("/var/state/check_params");
}

std::string changes_text(const Outcome& outcome, const std::string& value) {
    std::vector<std::string> parts;
    for (const Change& change : outcome.changes) parts.push_back(change_text(change, value));
    return joined(parts, ", ");
}

std::string seen_text(const watch::Seen& seen, const std::string& value) {
    std::string text, last;
    for (const std::string& command : seen.commands) {
        const std::string run = " runs `" + shown(without_value(command, value)) + "`";
        text += run == last ? " again" : run;
        last = run;
    }
    for (const std::string& message : seen.logged) text += " logs `" + shown(without_value(message, value)) + "`";
    return text;
}

std::string answer_text(const Outcome& outcome) {
    if (outcome.code != 0) return "refused " + std::to_string(outcome.code);
    return outcome.value == kUntouched ? "untouched" : in_quotes(outcome.value);
}

std::string set_text(const Outcome& outcome, const std::string& value) {
    std::string text = outcome.code == 0 ? "done" : "refused in op " + std::to_string(outcome.code);
    if (!outcome.changes.empty()) text += " stores " + changes_text(outcome, value);
    if (outcome.flags) text += " raises " + joined(services_of(outcome.flags), "+");
    return text + seen_text(outcome.seen, value);
}

// Which values led to which text, in the order of first appearance.
class Groups {
  public:
    void add(const std::string& text, const std::string& value) {
        const auto entry =
            std::find_if(groups_.begin(), groups_.end(), [&](auto& group) { return group.text == text; });
        if (entry != groups_.end()) {
            entry->values.push_back(value);
        } else {
            groups_.push_back({text, {value}});
        }
    }
    // The largest group is what happens otherwise, when there are many values.
    std::vector<std::string> lines(bool otherwise) const {
        std::size_t largest = 0;
        for (std::size_t i = 0; i < groups_.size(); ++i) {
            if (groups_[i].values.size() > groups_[largest].values.size()) largest = i;
        }
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < groups_.size(); ++i) {
            const bool rest = otherwise && i == largest && groups_[i].values.size() > 3;
            lines.push_back((rest ? "else" : joined(groups_[i].values, " ")) + ": " + groups_[i].text);
        }
        return lines;
    }

  private:
    struct Group {
        std::string text;
        std::vector<std::string> values;
    };
    std::vector<Group> groups_;
};

class Subject {
  public:
    Subject(Router& router, const Node& node, const std::vector<int>& numbers)
        : router_(router), node_(node), numbers_(numbers) {
        finding_.path = concrete_path(node.path, numbers);
        finding_.model = node.path;
    }

    Finding& finding() { return finding_; }

    void read() {
        const Outcome got = router_.get(node_, numbers_);
        value_ = got.value;
        readable_ = got.code == 0;
        finding_.value = answer_text(got);
        fact("GET " + finding_.value + seen_text(got.seen, ""));
        if (!got.changes.empty()) fact("GET stores " + changes_text(got, ""));
        // The agent's buffer is empty before.
        if (value_ == kUntouched) value_.clear();
        const bool fits = node_.type.holds(value_) || (node_.secret && value_.empty());
        if (readable_ && !fits) finding_.misfit = "answer " + finding_.value + " is no " + node_.type.text;
        reads_ = got.seen.options;
        commands_ = got.seen.commands;
    }

    // The answer when the places that it was read from hold something else.
    void read_variants(bool thoroughly) {
        const bool few = reads_.size() <= kFewOptions;
        std::vector<std::string> reads;
        for (const std::string& place : reads_) {
            if (place.ends_with('.')) {
                fact("looks for " + place);
                continue;
            }
            if (!few && reads.size() >= 3 && place != reads_.back()) continue;
            reads.push_back(place);
        }
        for (const std::string& place : reads) {
            vary("given " + place, few && thoroughly, [&](const std::optional<std::string>& content, auto&& act) {
                router_.with_option(place, content, act);
            });
        }
        for (const std::string& command : commands_) {
            vary("given `" + shown(command) + "`", thoroughly,
                 [&](const std::optional<std::string>& content, auto&& act) {
                     watch::make_up_answers([&](const std::string& run) -> std::optional<std::string> {
                         if (run != command) return std::nullopt;
                         return content ? *content + "\n" : "";
                     });
                     act();
                     watch::make_up_answers(nullptr);
                 });
            if (thoroughly) start_without(command);
        }
    }

    void start_without(const std::string& command) {
        watch::silence_unknown(true);
        watch::keep_from_starting(command);
        const Outcome got = router_.get(node_, numbers_);
        watch::keep_from_starting("");
        watch::silence_unknown(false);
        fact("given `" + shown(command) + "` not started: " + answer_text(got) + seen_text(got.seen, ""));
    }

    // most: how many values are tried before one that does something ends it.
    void write(std::size_t most) {
        Groups groups;
        std::size_t tried = 0, refused = 0, count = 0;
        for (const std::string& value : values_to_try(node_.type)) {
            const Outcome outcome = router_.transact(node_, numbers_, value);
            groups.add(set_text(outcome, value), in_quotes(value));
            if (!outcome.group.empty()) finding_.group = outcome.group;
            if (!node_.type.holds(value)) {
                ++tried;
                refused += outcome.code != 0;
            } else if (outcome.code == 0 && (sample_.empty() || finding_.stored.empty())) {
                take_sample(value, outcome);
            }
            const bool enough = ++count >= most && !sample_.empty();
            if (enough && (!finding_.stored.empty() || count >= most + kFewValues)) break;
        }
        for (const std::string& line : groups.lines(false)) fact("SET " + line);
        if (tried > 0) finding_.others = refused == tried ? "refused" : refused == 0 ? "taken" : "some taken";
    }

    void write_back() {
        if (!readable_ || node_.secret) return;
        const Outcome outcome = router_.transact(node_, numbers_, value_);
        if (outcome.code != 0) fact("SET of the value that GET shows is refused");
        const bool changed = !std::all_of(outcome.changes.begin(), outcome.changes.end(), is_copy);
        if (changed) finding_.back = changes_text(outcome, value_);
        if (!finding_.back.empty()) fact("SET of the value that GET shows: " + finding_.back);
    }

    // Each pass alone, where it does something else than the three together.
    void write_passes() {
        if (sample_.empty()) return;
        const Outcome whole = router_.transact(node_, numbers_, sample_);
        Groups groups;
        for (const int op : {+CWMP_OP_STAGE, +CWMP_OP_CHECK, +CWMP_OP_APPLY, 7}) {
            const Outcome alone = router_.set(node_, numbers_, op, sample_);
            const bool same = alone.code == whole.code && alone.changes == whole.changes && alone.flags == whole.flags;
            if (!same) groups.add(set_text(alone, sample_), std::to_string(op));
        }
        for (const std::string& line : groups.lines(false)) fact("op " + line);
    }

    void write_variants() {
        if (sample_.empty()) return;
        const Outcome whole = router_.transact(node_, numbers_, sample_);
        const std::string usual = set_text(whole, sample_);
        for (const std::string& place : whole.seen.options) {
            if (place.ends_with('.')) continue;
            Groups groups;
            for (const char* content : {"", "0", "1", "9", "on", "off", "AP", "pppoe", kAnyText}) {
                if (place.find("cwmp_settings") != std::string::npos) break;  // every write looks at it
                const std::optional<std::string> given = *content ? std::optional<std::string>(content) : std::nullopt;
                router_.with_option(place, given, [&] {
                    std::string text = set_text(router_.transact(node_, numbers_, sample_), sample_);
                    if (given) text = without_value(text, *given);
                    if (text != usual) groups.add(text, given ? in_quotes(*given) : "missing");
                });
            }
            for (const std::string& line : groups.lines(false)) {
                fact("SET " + in_quotes(sample_) + " given " + place + " " + line);
            }
        }
    }

    void refuse_write() {
        const Outcome outcome = router_.set(node_, numbers_, CWMP_OP_APPLY, "1");
        if (outcome.code != -1 || !outcome.changes.empty() || !outcome.seen.logged.empty()) {
            fact("SET of the read-only parameter: " + set_text(outcome, "1"));
        }
    }

    // Instance numbers that the model does not list.
    void other_numbers(const std::vector<std::vector<int>>& known) {
        watch::silence_unknown(true);
        for (std::size_t position = 0; position < numbers_.size(); ++position) {
            Groups got, set;
            for (int number : {0, 1, 2, 3, 4, 5, 9, 99}) {
                if (std::find(known[position].begin(), known[position].end(), number) != known[position].end())
                    continue;
                std::vector<int> numbers = numbers_;
                numbers[position] = number;
                const Outcome read = router_.get(node_, numbers);
                got.add(answer_text(read) + seen_text(read.seen, ""), std::to_string(number));
                if (!node_.writable) continue;
                set.add(set_text(router_.transact(node_, numbers, sample_), sample_), std::to_string(number));
            }
            const std::string of = " of instance number " + std::to_string(position + 1) + " ";
            for (const std::string& line : got.lines(true)) fact("GET" + of + line);
            for (const std::string& line : set.lines(true)) fact("SET" + of + line);
        }
        watch::silence_unknown(false);
    }

  private:
    // The end of a long one is left to its checksum.
    void fact(std::string text) {
        if (text.size() > kLongFact) {
            const std::string rest = text.substr(kLongFact);
            std::uint32_t sum = 2166136261;
            for (const unsigned char letter : rest) sum = (sum ^ letter) * 16777619;
            text.resize(kLongFact);
            while (!text.empty() && (text.back() & 0x80)) text.pop_back();
            text += "… and " + std::to_string(rest.size()) + " more of sum " + std::to_string(sum);
        }
        finding_.facts.push_back(std::move(text));
    }

    void take_sample(const std::string& value, const Outcome& outcome) {
        if (!sample_.empty() && outcome.changes.empty()) return;
        sample_ = value;
        std::vector<std::string> places;
        for (const Change& change : outcome.changes) {
            if (!is_copy(change)) places.push_back(change.place);
        }
        finding_.stored = joined(places, ", ");
        finding_.services = joined(services_of(outcome.flags), ", ");
    }

    template <typename Vary>
    void vary(const std::string& what, bool thoroughly, Vary with) {
        Groups groups;
        auto look = [&](const std::optional<std::string>& content) {
            with(content, [&] {
                const Outcome got = router_.get(node_, numbers_);
                std::string text = answer_text(got);
                if (content && !content->empty() && got.value == *content) text = "as it is";
                for (const std::string& message : got.seen.logged) text += " logs `" + shown(message) + "`";
                groups.add(text, content ? in_quotes(*content) : "missing");
                passes_through_ = text == "as it is";
            });
        };
        watch::silence_unknown(true);
        look(std::nullopt);
        look(kAnyText);
        if (thoroughly && !passes_through_) {
            for (const std::string& content : contents_to_try()) look(content);
        }
        watch::silence_unknown(false);
        for (const std::string& line : groups.lines(true)) fact(what + " " + line);
    }

    Router& router_;
    const Node& node_;
    const std::vector<int>& numbers_;
    Finding finding_;
    std::string value_;   // that GET answers
    std::string sample_;  // a valid value that SET takes, if possible one that changes something
    bool readable_ = false;
    bool passes_through_ = false;
    std::vector<std::string> reads_, commands_;
};

}  // namespace

Finding examine(Router& router, const Node& node, const std::vector<int>& numbers,
                const std::vector<std::vector<int>>& known, Depth depth) {
    Subject subject(router, node, numbers);
    subject.read();
    if (depth == Depth::Glance) return subject.finding();
    // Which of the instances this is, at the level where it is furthest from the first.
    std::ptrdiff_t place = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        place = std::max(place, std::find(known[i].begin(), known[i].end(), numbers[i]) - known[i].begin());
    }
    const bool first = place == 0 && depth == Depth::Full;
    if (node.writable) {
        subject.write(first ? 1000 : 1);
        subject.write_back();
    }
    if (depth == Depth::Brief) return subject.finding();
    if (place < 4) subject.read_variants(place < 2);
    if (!first) return subject.finding();
    if (node.writable) {
        subject.write_passes();
        subject.write_variants();
    } else {
        subject.refuse_write();
    }
    subject.other_numbers(known);
    return subject.finding();
}

Finding examine_object(Router& router, const Node& table, const std::vector<int>& outer) {
    Finding finding;
    finding.path = concrete_path(table.path, outer);
    finding.model = table.path;
    const Outcome added = router.add(table, outer);
    finding.facts.push_back("ADD " + added.value + " " + set_text(added, ""));
    std::vector<std::string> numbers = {"0", "99", "x"};
    for (int number : router.list(table, outer)) numbers.push_back(std::to_string(number));
    for (const std::string& number : numbers) {
        finding.facts.push_back("DELETE " + number + " " + set_text(router.remove(table, outer, number), ""));
    }
    Node other = {};
    static_cast<Entry&>(other) = table;
    finding.facts.push_back("OP 9 " + set_text(router.set(other, outer, 9, "1"), ""));
    std::vector<int> wrong = outer;
    wrong.push_back(7);
    finding.facts.push_back("ADD below 7 " + set_text(router.add(table, wrong), ""));
    for (std::size_t i = 0; i < outer.size(); ++i) {
        wrong = outer;
        wrong[i] = 0;
        finding.facts.push_back("ADD below 0 " + set_text(router.add(table, wrong), ""));
    }
    return finding;
}

}  // namespace cwmp
