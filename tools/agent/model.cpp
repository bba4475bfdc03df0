#include "model.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <sstream>

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

using Kind = Node::Kind;

struct Place {
    std::string file;
    int line;

    [[noreturn]] void fail(const std::string& message) const {
        throw Failure{file + ":" + std::to_string(line), kNoFault, Exit::Unusable, message};
    }
};

struct CountLink {
    Node* table;
    std::string path;
    Place place;
};

size_t instance_numbers(std::string_view path) {
    const auto segments = split(path, '.');
    return static_cast<size_t>(std::count(segments.begin(), segments.end(), kInstance));
}

// Segments of a path; the empty one after a final "." is dropped.
std::vector<std::string> path_segments(std::string_view path) {
    if (path.ends_with('.')) path.remove_suffix(1);
    return split(path, '.');
}

std::string handler_name(std::string_view path) {
    std::string name;
    const auto segments = path_segments(path);
    for (size_t i = 1; i < segments.size(); ++i) {
        if (segments[i] == kInstance) continue;
        if (!name.empty()) name += '_';
        name += segments[i];
    }
    return name;
}

class Reader {
  public:
    explicit Reader(Node& root) : root_(root) {}

    void read(const std::filesystem::path& file) {
        std::ifstream input(file);
        Place place{file.string(), 0};
        std::string line;
        while (std::getline(input, line)) {
            ++place.line;
            read_line(line.substr(0, line.find('#')), place);
        }
        if (!input.eof()) place.fail("cannot be read");
    }

    // What can be told only when all files are known.
    void finish() {
        for (const CountLink& link : counts_) link_count(link);
        check(root_);
    }

  private:
    void read_line(const std::string& line, const Place& place) {
        std::istringstream columns(line);
        std::string path, access, attribute;
        if (!(columns >> path)) return;
        if (!(columns >> access)) place.fail("the access is missing");
        Node& node = insert(path, place);
        set_access(node, access, place);
        if (node.kind == Kind::Parameter) set_type(node, columns, place);
        while (columns >> attribute) set_attribute(node, attribute, place);
    }

    Node& insert(const std::string& path, const Place& place) {
        const auto segments = path_segments(path);
        if (segments.size() < 2 || !is_root_object(segments.front())) place.fail("not below a root object: " + path);
        if (instance_numbers(path) > kLocateSize) place.fail("too many instance numbers");
        const bool table = path.ends_with('.');
        if (table != (segments.back() == kInstance)) place.fail("an object ends with {i}. and a parameter does not");
        Node* node = &root_;
        for (const std::string& segment : segments) node = &enter(*node, segment, place);
        if (node->kind != Kind::Branch) place.fail("a second line for " + path);
        node->kind = table ? Kind::Table : Kind::Parameter;
        node->path = path;
        node->handler = handler_name(path);
        return *node;
    }

    static Node& enter(Node& parent, const std::string& segment, const Place& place) {
        if (segment.empty()) place.fail("empty path segment");
        for (const auto& child : parent.children) {
            if (child->segment == segment) return *child;
        }
        auto& child = parent.children.emplace_back(std::make_unique<Node>());
        child->segment = segment;
        child->path = parent.path + segment + '.';
        return *child;
    }

    static void set_access(Node& node, const std::string& access, const Place& place) {
        const bool table = node.kind == Kind::Table;
        node.writable = access == (table ? "AD" : "W");
        if (!node.writable && access != (table ? "-" : "R")) place.fail("unknown access " + access);
    }

    static void set_type(Node& node, std::istringstream& columns, const Place& place) {
        std::string type;
        if (!(columns >> type)) place.fail("the type is missing");
        auto parsed = Type::parse(type);
        if (!parsed) place.fail("unknown type " + type);
        node.type = std::move(*parsed);
    }

    void set_attribute(Node& node, const std::string& attribute, const Place& place) {
        const size_t equals = attribute.find('=');
        const std::string name = attribute.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : attribute.substr(equals + 1);
        const bool table = node.kind == Kind::Table;
        if (name == "locate") {
            node.locate = locate_positions(value, node, place);
        } else if (name == "handler" && !value.empty()) {
            node.handler = value;
        } else if (name == "notify" && !table) {
            node.notify = one_of(value, {"forceEnabled", "forceDefaultEnabled", "canDeny"}, attribute, place);
        } else if (name == "group" && node.writable && !table) {
            for (const std::string& group : split(value, ',')) {
                one_of(group, {"pppoe", "dhcp", "lan", "wan", "iptv", "vlan"}, attribute, place);
            }
            node.group = value;
        } else if (name == "differs" && !table) {
            node.differs.push_back(difference(value, place));
        } else if (name == "count" && table) {
            node.count_path = value;
            counts_.push_back({&node, value, place});
        } else if (name == "instances" && table) {
            node.instances = decimal<int>(value).value_or(0);
            if (node.instances < 1) place.fail("instances= takes a number from 1");
        } else if (name == "only") {
            restrict(node, value, place);
        } else if (!set_switch(node, attribute)) {
            place.fail("unknown attribute " + attribute);
        }
    }

    // What an attribute without a value of its own says.
    static bool set_switch(Node& node, const std::string& attribute) {
        const bool table = node.kind == Kind::Table;
        if (attribute == "passes=apply" && !table)
            node.apply_only = true;
        else if (attribute == "secret" && !table)
            node.secret = true;
        else if (attribute == "inform" && !table)
            node.inform = true;
        else if (attribute == "reboot" && node.writable)
            node.reboot = true;
        else
            return false;
        return true;
    }

    static std::string one_of(const std::string& value, std::initializer_list<std::string_view> known,
                              const std::string& attribute, const Place& place) {
        if (std::find(known.begin(), known.end(), value) == known.end()) place.fail("unknown " + attribute);
        return value;
    }

    // differs=kept:W is a parameter that the published model lets an ACS set.
    static Difference difference(const std::string& value, const Place& place) {
        const size_t colon = value.find(':');
        const std::string what = colon == std::string::npos ? "" : value.substr(colon + 1);
        const bool word = what == "R" || what == "W" || what == "filled" || what == "path";
        if (!word && !Type::parse(what)) {
            place.fail("differs= takes a reason, a colon and R, W, a type, filled or path");
        }
        return {one_of(value.substr(0, colon), {"kept", "vendor", "unset"}, "differs=" + value, place), what};
    }

    // only=2:1,3 is a path that exists where its second instance number is 1 or 3.
    static void restrict(Node& node, const std::string& value, const Place& place) {
        const size_t colon = value.find(':');
        node.only_position = decimal<size_t>(value.substr(0, colon)).value_or(0);
        if (colon == std::string::npos || node.only_position < 1 || node.only_position > instance_numbers(node.path)) {
            place.fail("only= takes a position of the path's instance numbers, a colon and its values");
        }
        for (const std::string& part : split(value.substr(colon + 1), ',')) {
            node.only.push_back(decimal<int>(part).value_or(0));
        }
    }

    static std::vector<size_t> locate_positions(const std::string& value, const Node& node, const Place& place) {
        std::vector<size_t> positions;
        if (value == "none") return positions;
        for (const std::string& part : split(value, ',')) {
            const size_t position = decimal<size_t>(part).value_or(0);
            if (position < 1 || position > instance_numbers(node.path)) {
                place.fail("locate= takes positions of the path's instance numbers or none");
            }
            positions.push_back(position);
        }
        if (positions.size() > kLocateSize) place.fail("too many positions in locate=");
        return positions;
    }

    void link_count(const CountLink& link) const {
        const Node* node = &root_;
        for (const std::string& segment : split(link.path, '.')) node = node ? node->child(segment) : nullptr;
        if (!node || node->kind != Kind::Parameter) link.place.fail("count= names no parameter: " + link.path);
        if (instance_numbers(node->path) >= instance_numbers(link.table->path)) {
            link.place.fail("count= may hold the outer instance numbers only");
        }
        link.table->count = node;
    }

    static void check(const Node& node) {
        auto fail = [&](const char* message) { throw Failure{node.path, kNoFault, Exit::Unusable, message}; };
        if (node.kind == Kind::Parameter && !node.children.empty()) fail("the model has a parameter with others below");
        if (node.segment == kInstance) {
            if (node.kind != Kind::Table) fail("the model has no line for this object");
            if (!node.writable && !node.count && !node.instances) fail("the model tells no number of instances");
        }
        if (node.child(kInstance) && node.children.size() > 1) fail("the model has names beside instance numbers");
        for (const auto& child : node.children) check(*child);
    }

    Node& root_;
    std::vector<CountLink> counts_;
};

}  // namespace

const Node* Node::child(std::string_view name) const {
    for (const auto& child : children) {
        if (child->segment == name) return child.get();
    }
    return nullptr;
}

std::vector<const Node*> Node::lines() const {
    std::vector<const Node*> found;
    if (kind != Kind::Branch) found.push_back(this);
    for (const auto& child : children) {
        const auto below = child->lines();
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

std::string_view Entry::access() const {
    if (kind == Kind::Parameter) return writable ? "W" : "R";
    return writable ? "AD" : "-";
}

bool Entry::has_handler() const { return kind == Kind::Parameter || (kind == Kind::Table && writable); }

Model::Model(const std::filesystem::path& directory) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() == ".txt") files.push_back(entry->path());
    }
    if (error) throw Failure{directory.string(), kNoFault, Exit::Unusable, "no model: " + error.message()};
    if (files.empty()) throw Failure{directory.string(), kNoFault, Exit::Unusable, "no model files here"};
    std::sort(files.begin(), files.end());
    Reader reader(root_);
    for (const auto& file : files) reader.read(file);
    reader.finish();
}

bool Node::exists_below(const std::vector<int>& numbers) const {
    if (only_position == 0 || only_position > numbers.size()) return true;
    return std::find(only.begin(), only.end(), numbers[only_position - 1]) != only.end();
}

bool is_root_object(std::string_view segment) { return segment == "Device" || segment == "InternetGatewayDevice"; }

std::string concrete_path(std::string_view model_path, const std::vector<int>& numbers) {
    std::string path(model_path);
    size_t at = 0;
    for (int number : numbers) {
        at = path.find(kInstance, at);
        if (at == std::string::npos) break;
        path.replace(at, kInstance.size(), std::to_string(number));
    }
    return path;
}

}  // namespace cwmp
