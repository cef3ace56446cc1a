#include "dxf/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace korra {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBesideMark = ".tmp-";
constexpr std::string_view kBesidePattern = "XXXXXX";

std::string reason()
{
    return std::strerror(errno);
}

/// A new file beside the one to be replaced; gone at the end unless it took its name. A lock on it
/// tells other saves that its writer lives.
class FileBeside {
public:
    explicit FileBeside(const std::string& path) : path_(path)
    {
        do
            close();
        while (make() && wasCleared());
    }

    ~FileBeside()
    {
        close();
        if (!name_.empty())
            unlink(name_.c_str());
    }

    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }

    int descriptor() const { return descriptor_; }

    /// While the file is open: without its lock another save would take it for a leftover.
    bool takeNameOf(const std::string& path)
    {
        if (std::rename(name_.c_str(), path.c_str()) != 0)
            return false;
        name_.clear();
        return true;
    }

private:
    /// Nothing can be lost any more: what matters was synchronised.
    void close()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    bool make()
    {
        name_ = path_;
        name_.append(kBesideMark).append(kBesidePattern);
        descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
        return descriptor_ >= 0;
    }

    /// True where another save took the file for a leftover before the lock was on it.
    bool wasCleared() const
    {
        struct stat file {};

        return flock(descriptor_, LOCK_EX) == 0 && fstat(descriptor_, &file) == 0 &&
               file.st_nlink == 0;
    }

    std::string path_;
    std::string name_;
    int descriptor_ = -1;
};

/// Removes a file that a save left behind, unless its writer still has its lock.
void clearLeftover(const fs::path& file)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        unlink(file.c_str());
    close(descriptor);
}

/// Removes what saves that were killed left beside a file. Nothing depends on it: what cannot be
/// looked at or removed stays.
void clearLeftovers(const fs::path& target)
{
    const std::string begin = target.filename().string().append(kBesideMark);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (name.starts_with(begin) && name.size() == begin.size() + kBesidePattern.size() &&
            entry->symlink_status(unknown).type() == fs::file_type::regular)
            clearLeftover(entry->path());
    }
}

bool writeAll(int descriptor, std::string_view contents)
{
    while (!contents.empty()) {
        const ssize_t count = write(descriptor, contents.data(), contents.size());
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            contents.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// The permissions of the file that is replaced, or those that a new one gets.
mode_t permissionsFor(const std::string& path)
{
    struct stat old {};

    if (stat(path.c_str(), &old) == 0)
        return old.st_mode & 07777;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

void syncFolderOf(const std::string& path)
{
    const fs::path folder = fs::path(path).parent_path();
    const int descriptor =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return; // the contents are safe; only the name may be lost in a crash of the machine
    fsync(descriptor);
    close(descriptor);
}

/// The file that links lead to, whether it is there or not; a link where they never end.
fs::path resolved(fs::path path)
{
    constexpr int kMostLinks = 40;
    std::error_code error;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

} // namespace

std::string replaceFile(const std::string& path, std::string_view contents)
{
    const std::string target = resolved(path).string();
    std::error_code error;
    const fs::file_status status = fs::symlink_status(target, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return "is no file that can be replaced";
    clearLeftovers(target);
    FileBeside file(target);
    if (!file.isOpen() || fchmod(file.descriptor(), permissionsFor(target)) != 0 ||
        !writeAll(file.descriptor(), contents) || fsync(file.descriptor()) != 0 ||
        !file.takeNameOf(target))
        return "cannot be written: " + reason();
    syncFolderOf(target);
    return {};
}

} // namespace korra
