#pragma once

#include "korra/host.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tests {

/// A folder of support files of a test's own, removed at the end.
class SupportFolder {
public:
    SupportFolder() { std::filesystem::create_directories(path_); }

    ~SupportFolder() { std::filesystem::remove_all(path_); }

    SupportFolder(const SupportFolder&) = delete;
    SupportFolder& operator=(const SupportFolder&) = delete;

    /// Has the running host search it; a fresh host has to be told again.
    void use() const { korra::addSupportFolder(path_); }

    void write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path_ / name, std::ios::binary) << content;
    }

    std::string contentsOf(const std::string& name) const
    {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string pathOf(const std::string& name) const { return path_ / name; }

private:
    static inline int made_ = 0;
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        ("support_folder_" + std::to_string(::getpid()) + '_' + std::to_string(++made_));
};

} // namespace tests
