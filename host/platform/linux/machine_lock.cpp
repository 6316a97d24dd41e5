#include "machine_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace machine_lock {

namespace {

int gLock = -1;

// The name a process gives itself, as shown to a person: at most one short
// line of printable characters, whatever the process put there.
std::string programName(long pid) {
    std::ifstream comm("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    if (!std::getline(comm, name)) return "";
    std::string shown;
    for (char c : name.substr(0, 64)) {
        shown += (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) ? '?' : c;
    }
    return shown;
}

// The process holding a flock on this inode, from the kernel's table of locks;
// 0 when it is not found (another pid namespace, or just let go).
long holderOf(const struct stat &file) {
    std::ifstream locks("/proc/locks");
    const std::string wanted = ":" + std::to_string(file.st_ino);
    for (std::string line; std::getline(locks, line);) {
        std::istringstream fields(line);
        std::string number, kind, mode, access, pid, inode;
        if (!(fields >> number >> kind) || kind == "->") continue;
        if (!(fields >> mode >> access >> pid >> inode) || kind != "FLOCK") continue;
        if (inode.size() >= wanted.size() &&
            inode.compare(inode.size() - wanted.size(), wanted.size(), wanted) == 0) {
            return std::strtol(pid.c_str(), nullptr, 10);
        }
    }
    return 0;
}

std::string heldBy(const struct stat &file) {
    const long pid = holderOf(file);
    if (pid <= 0) return "another battery_host is running an extended test on this machine";
    const std::string name = programName(pid);
    return "another " + (name.empty() ? std::string("program") : name) + " (process " +
           std::to_string(pid) + ") is running an extended test on this machine";
}

int openLockFile(const std::string &file) {
    const int flags = O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    int fd = ::open(file.c_str(), O_RDWR | flags, 0666);
    // A file another user made without write for others: a lock needs no write.
    if (fd < 0 && errno == EACCES) fd = ::open(file.c_str(), O_RDONLY | flags, 0666);
    return fd;
}

} // namespace

std::string path() {
    const char *chosen = std::getenv("BATTERY_HOST_LOCK");
    if (chosen != nullptr && chosen[0] != '\0') return chosen;
    struct stat folder {};
    const bool runLock = ::stat("/run/lock", &folder) == 0 && S_ISDIR(folder.st_mode);
    return runLock ? "/run/lock/battery_host.lock" : "/tmp/battery_host.lock";
}

std::string take() {
    if (gLock >= 0) return "";
    const std::string file = path();
    const int fd = openLockFile(file);
    if (fd < 0) return "cannot open the machine's lock " + file + ": " + std::strerror(errno);
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return "the machine's lock " + file + " is not a regular file; it is left as it is";
    }
    // Every user must be able to open it after us, whatever our umask.
    if (info.st_uid == ::geteuid() && (info.st_mode & 0777) != 0666) ::fchmod(fd, 0666);
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        const std::string line = error == EWOULDBLOCK
                                     ? heldBy(info)
                                     : "cannot lock " + file + ": " + std::strerror(error);
        ::close(fd);
        return line;
    }
    gLock = fd;
    return "";
}

void release() {
    if (gLock < 0) return;
    ::close(gLock);
    gLock = -1;
}

} // namespace machine_lock
