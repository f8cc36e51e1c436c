#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace testing_support {

/// A new folder that is removed with everything in it.
class TempFolder {
  public:
    TempFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "palisor-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        folder = name;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path(const std::string& name = {}) const {
        return name.empty() ? folder : folder + "/" + name;
    }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

    std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(path(name), std::ios::binary).rdbuf();
        return text.str();
    }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            result.push_back(entry.path().filename());
        std::sort(result.begin(), result.end());
        return result;
    }

  private:
    std::string folder;
};

} // namespace testing_support
