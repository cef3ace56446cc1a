#include "dxf/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace korra {
namespace {

std::string reason()
{
    return std::strerror(errno);
}

/// A new file beside the one to be replaced; gone at the end unless it took its name.
class FileBeside {
public:
    explicit FileBeside(const std::string& path) : name_(path + ".tmp-XXXXXX")
    {
        descriptor_ = mkstemp(name_.data());
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

    bool close()
    {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

    bool takeNameOf(const std::string& path)
    {
        if (std::rename(name_.c_str(), path.c_str()) != 0)
            return false;
        name_.clear();
        return true;
    }

private:
    std::string name_;
    int descriptor_;
};

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
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    const int descriptor =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return; // the contents are safe; only the name may be lost in a crash of the machine
    fsync(descriptor);
    close(descriptor);
}

/// The file itself where the path is a link to it.
std::string resolved(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

} // namespace

std::string replaceFile(const std::string& path, std::string_view contents)
{
    const std::string target = resolved(path);
    std::error_code error;
    if (std::filesystem::exists(target, error) && !std::filesystem::is_regular_file(target, error))
        return "is no file that can be replaced";
    FileBeside file(target);
    if (!file.isOpen() || fchmod(file.descriptor(), permissionsFor(target)) != 0 ||
        !writeAll(file.descriptor(), contents) || fsync(file.descriptor()) != 0 || !file.close() ||
        !file.takeNameOf(target))
        return "cannot be written: " + reason();
    syncFolderOf(target);
    return {};
}

} // namespace korra
