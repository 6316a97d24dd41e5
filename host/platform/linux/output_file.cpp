#include "output_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace output_file {

namespace {

constexpr const char *kTemporaryMark = ".battery_host-";
constexpr size_t kRandomLength = 6; // mkstemp's XXXXXX
constexpr int kMostLinks = 40;      // as the kernel's own limit on a chain of links

std::string reason(int error) {
    return std::strerror(error);
}

std::string cannotWrite(const std::string &path, int error) {
    return "cannot write " + path + ": " + reason(error);
}

std::string folderOf(const std::string &path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string &path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

long nameMaxOf(const std::string &folder) {
    const long limit = pathconf(folder.c_str(), _PC_NAME_MAX);
    return limit > 0 ? limit : NAME_MAX;
}

Kind kindOf(mode_t mode) {
    if (S_ISREG(mode)) return Kind::Regular;
    if (S_ISDIR(mode)) return Kind::Folder;
    if (S_ISCHR(mode) || S_ISFIFO(mode) || S_ISSOCK(mode)) return Kind::Stream;
    return Kind::Other;
}

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

// 0, or the errno of the write that failed. A short write is carried on.
int writeAll(int fd, const std::string &content) {
    size_t done = 0;
    while (done < content.size()) {
        const ssize_t written = ::write(fd, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return written < 0 ? errno : EIO;
        done += static_cast<size_t>(written);
    }
    return 0;
}

mode_t modeOfNewFile() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// A fresh temporary beside `target`, locked while it is ours: the lock tells
// a later run's clean-up that a writer still lives.
std::optional<std::pair<int, std::string>> createTemporary(const std::string &target, int &error) {
    const std::string folder = folderOf(target);
    const std::string prefix = temporaryPrefix(nameOf(target), nameMaxOf(folder));
    for (int attempt = 0; attempt < 8; ++attempt) {
        std::string name = folder + "/" + prefix + std::string(kRandomLength, 'X');
        const int fd = ::mkostemp(name.data(), O_CLOEXEC);
        if (fd < 0) {
            error = errno;
            return std::nullopt;
        }
        struct stat info {};
        // Another run's clean-up may have taken it before the lock: another name.
        if (::flock(fd, LOCK_EX) == 0 && ::fstat(fd, &info) == 0 && info.st_nlink > 0) {
            return std::make_pair(fd, name);
        }
        ::close(fd);
    }
    error = EAGAIN;
    return std::nullopt;
}

std::string replace(const std::string &path, const std::string &target,
                    const std::string &content) {
    struct stat old {};
    const bool existed = ::stat(target.c_str(), &old) == 0;
    int error = 0;
    const auto temporary = createTemporary(target, error);
    if (!temporary) return cannotWrite(path, error);
    FileDescriptor fd(temporary->first);
    const std::string &name = temporary->second;
    // The new file keeps the old one's permissions; a new one gets the umask's.
    const mode_t mode = existed ? (old.st_mode & 07777) : modeOfNewFile();
    if (::fchmod(fd.get(), mode) != 0 || (error = writeAll(fd.get(), content)) != 0 ||
        ::fsync(fd.get()) != 0 || ::rename(name.c_str(), target.c_str()) != 0) {
        if (error == 0) error = errno;
        ::unlink(name.c_str());
        return cannotWrite(path, error);
    }
    // The rename itself survives a power cut once the folder is synced.
    FileDescriptor folder(::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() >= 0) ::fsync(folder.get());
    return "";
}

std::string writeInPlace(const std::string &path, const std::string &target,
                         const std::string &content) {
    // Not blocking: a FIFO nobody reads is an error, not a hang. A device
    // ignores the truncation; a regular file swapped in since the look at it
    // is at least written whole.
    FileDescriptor fd(
        ::open(target.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_TRUNC | O_CLOEXEC));
    if (fd.get() < 0) return cannotWrite(path, errno);
    const int flags = ::fcntl(fd.get(), F_GETFL);
    if (flags >= 0) ::fcntl(fd.get(), F_SETFL, flags & ~O_NONBLOCK);
    const int error = writeAll(fd.get(), content);
    return error == 0 ? "" : cannotWrite(path, error);
}

} // namespace

Target resolve(const std::string &path) {
    if (path == "-") return {path, Kind::StandardOutput, ""};
    if (path.empty()) return {path, Kind::Missing, "an empty path names no file"};
    std::string current = path;
    for (int links = 0; links <= kMostLinks; ++links) {
        struct stat info {};
        if (::lstat(current.c_str(), &info) != 0) {
            if (errno == ENOENT) return {current, Kind::Missing, ""};
            return {current, Kind::Missing, cannotWrite(path, errno)};
        }
        if (!S_ISLNK(info.st_mode)) return {current, kindOf(info.st_mode), ""};
        std::string link(PATH_MAX, '\0');
        const ssize_t length = ::readlink(current.c_str(), link.data(), link.size());
        if (length < 0) return {current, Kind::Missing, cannotWrite(path, errno)};
        link.resize(static_cast<size_t>(length));
        current = link[0] == '/' ? link : folderOf(current) + "/" + link;
    }
    return {current, Kind::Missing, cannotWrite(path, ELOOP)};
}

std::string writeTo(const std::string &path, const Target &target, const std::string &content) {
    if (!target.error.empty()) return target.error;
    switch (target.kind) {
    case Kind::StandardOutput: {
        const size_t written = std::fwrite(content.data(), 1, content.size(), stdout);
        return written == content.size() && std::fflush(stdout) == 0
                   ? ""
                   : "cannot write standard output: " + reason(errno);
    }
    case Kind::Stream:
        return writeInPlace(path, target.path, content);
    case Kind::Missing:
    case Kind::Regular:
        return replace(path, target.path, content);
    case Kind::Folder:
        return cannotWrite(path, EISDIR);
    case Kind::Other:
        break;
    }
    return "cannot write " + path + ": neither a file nor a character device, FIFO or socket";
}

std::string write(const std::string &path, const std::string &content) {
    return writeTo(path, resolve(path), content);
}

std::string temporaryPrefix(const std::string &name, long nameMax) {
    const size_t fixed = 1 + std::strlen(kTemporaryMark) + kRandomLength;
    const size_t room = nameMax > static_cast<long>(fixed) ? size_t(nameMax) - fixed : 1;
    return "." + name.substr(0, room) + kTemporaryMark;
}

void removeLeftovers(const std::string &path) {
    const Target target = resolve(path);
    if (!target.error.empty() || (target.kind != Kind::Regular && target.kind != Kind::Missing)) {
        return;
    }
    const std::string folder = folderOf(target.path);
    const std::string prefix = temporaryPrefix(nameOf(target.path), nameMaxOf(folder));
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::opendir(folder.c_str()), ::closedir);
    if (!entries) return;
    while (const dirent *entry = ::readdir(entries.get())) {
        const std::string name = entry->d_name;
        if (name.size() != prefix.size() + kRandomLength ||
            name.compare(0, prefix.size(), prefix)) {
            continue;
        }
        const std::string leftover = folder + "/" + name;
        FileDescriptor fd(::open(leftover.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat info {};
        // Only our own files, and only those no living writer holds.
        if (fd.get() >= 0 && ::fstat(fd.get(), &info) == 0 && S_ISREG(info.st_mode) &&
            info.st_uid == ::geteuid() && ::flock(fd.get(), LOCK_EX | LOCK_NB) == 0) {
            ::unlink(leftover.c_str());
        }
    }
}

namespace {

// Who a path is, to tell two names of one file apart from two files: device
// and inode of the file, or of its folder and its name while it is missing.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    std::string name;
    bool operator==(const Identity &other) const {
        return device == other.device && inode == other.inode && name == other.name;
    }
};

std::optional<Identity> identityOf(const std::string &path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) return Identity{info.st_dev, info.st_ino, ""};
    if (::stat(folderOf(path).c_str(), &info) == 0) {
        return Identity{info.st_dev, info.st_ino, nameOf(path)};
    }
    return std::nullopt;
}

std::string checkOne(const std::string &path) {
    const Target target = resolve(path);
    if (!target.error.empty()) return target.error;
    switch (target.kind) {
    case Kind::StandardOutput:
        return "";
    case Kind::Folder:
        return path + " is a folder, not a file to write";
    case Kind::Other:
        return path + " is neither a file nor a character device, FIFO or socket";
    case Kind::Stream:
        return ::access(target.path.c_str(), W_OK) == 0 ? "" : cannotWrite(path, errno);
    case Kind::Missing:
    case Kind::Regular:
        break;
    }
    const std::string folder = folderOf(target.path);
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
        return "no folder '" + folder + "' for " + path;
    }
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        return "cannot write in folder '" + folder + "' for " + path + ": " + reason(errno);
    }
    if (static_cast<long>(nameOf(target.path).size()) > nameMaxOf(folder)) {
        return cannotWrite(path, ENAMETOOLONG);
    }
    return "";
}

} // namespace

std::string checkBeforeRun(const std::vector<std::string> &outputs,
                           const std::vector<std::string> &inputs) {
    std::vector<std::pair<std::string, Identity>> seen;
    for (const std::string &input : inputs) {
        struct stat info {};
        if (!input.empty() && ::stat(input.c_str(), &info) == 0) {
            seen.emplace_back(input, Identity{info.st_dev, info.st_ino, ""});
        }
    }
    for (const std::string &output : outputs) {
        if (const std::string problem = checkOne(output); !problem.empty()) return problem;
        if (output == "-") continue;
        const std::optional<Identity> identity = identityOf(resolve(output).path);
        if (!identity) continue;
        for (const auto &[other, known] : seen) {
            if (known == *identity) return output + " is the same file as " + other;
        }
        seen.emplace_back(output, *identity);
        removeLeftovers(output);
    }
    return "";
}

} // namespace output_file
