#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace palisor {

struct ReplayResult {
    int status = -1;
    std::string output;
    std::string errors;
};

/// Runs palisor-replay in a folder of its own, which goes with the object.
class ReplayRun {
  public:
    ReplayRun() {
        std::string name = std::filesystem::temp_directory_path() / "replay-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        folder = name;
    }
    ~ReplayRun() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    ReplayRun(const ReplayRun&) = delete;
    ReplayRun& operator=(const ReplayRun&) = delete;

    /// Plays `scenario` as the file "s" of the folder, which `arguments` may name and which is the
    /// standard input as well. What it prints goes to `output` and is read back from "out".
    ReplayResult play(const std::string& scenario, const std::string& arguments = "s",
                      const std::string& output = "out") const {
        std::ofstream(folder / "s", std::ios::binary) << scenario;
        const std::string command = "cd '" + folder.string() + "' && '" PALISOR_REPLAY "' " +
                                    arguments + " <s >" + output + " 2>err";
        const int result = std::system(command.c_str());
        return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, read("out"), read("err")};
    }

  private:
    std::string read(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path folder;
};

} // namespace palisor
