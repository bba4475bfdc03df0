#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A directory of its own with a model and the test library, and dm run in it.
class Sandbox {
  public:
    struct Result {
        int exit;
        std::string out;
        std::string err;
        std::string calls;
    };

    Sandbox() {
        char name[] = "/tmp/dm-test-XXXXXX";
        directory_ = mkdtemp(name);
        std::filesystem::create_directory(directory_ / "model");
        std::filesystem::copy_file(AGENT_CONTRACT_LIBRARY, directory_ / "library.so");
    }
    ~Sandbox() { std::filesystem::remove_all(directory_); }
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    void write(const std::string& file, const std::string& text) const {
        std::ofstream(directory_ / file) << text;
    }

    std::string path(const std::string& file) const { return directory_ / file; }

    // `arguments` is shell text; `environment` is NAME=VALUE words before the command.
    Result run_bare(const std::string& arguments, const std::string& environment = "") const {
        std::filesystem::remove(directory_ / "calls");
        const std::string command = "cd " + directory_.string() + " && AGENT_CALLS=calls " + environment +
                                    " " + DM_PROGRAM + " >out 2>err " + arguments;
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("out"), read("err"), read("calls")};
    }

    Result run(const std::string& arguments, const std::string& environment = "") const {
        return run_bare("--library library.so --model model " + arguments, environment);
    }

  private:
    std::string read(const std::string& file) const {
        std::ostringstream text;
        std::ifstream input(directory_ / file);
        if (input.peek() != std::ifstream::traits_type::eof()) text << input.rdbuf();
        return text.str();
    }

    std::filesystem::path directory_;
};
