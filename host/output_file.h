#pragma once

#include <string>
#include <vector>

// Every file the host writes (the report, the metrics, the restore journal)
// goes out through here, by these rules:
// - a regular file, or a name where nothing is yet, is replaced whole: the
//   text goes to a uniquely named temporary beside it (created exclusively,
//   named `.<name>.battery_host-XXXXXX`, cut to fit the folder's name limit),
//   is synced and renamed over the name, so a reader sees the old file or the
//   new one; the temporary is removed on every failure;
// - a symbolic link is followed: its target is what is replaced;
// - a character device, FIFO or socket (/dev/stdout, /dev/null) is written in
//   place and never replaced;
// - a folder is refused; `-` is standard output.
namespace output_file {

enum class Kind {
    Missing,        // nothing there yet: created
    Regular,        // replaced through a temporary
    Stream,         // character device, FIFO or socket: written in place
    StandardOutput, // `-`
    Folder,         // refused
    Other,          // a block device or anything else: refused
};

// Where a path's text goes in the end: the target of its links, and what it is.
struct Target {
    std::string path; // the link chain followed; the person's path when no link
    Kind kind = Kind::Missing;
    std::string error; // a link that cannot be followed: one line
};

Target resolve(const std::string &path);

// Empty on success, else one line naming `path` and the reason.
std::string write(const std::string &path, const std::string &content);
// The same, for a target already resolved (the unit tests' seam for the
// kinds a test cannot make, such as a character device).
std::string writeTo(const std::string &path, const Target &target, const std::string &content);

// The name of the temporary that replaces `name` (only the name, no folder),
// before its six random characters: cut so that the whole fits `nameMax`.
std::string temporaryPrefix(const std::string &name, long nameMax);

// Removes what a killed host left beside `path`: temporaries of `path` that no
// living writer holds.
void removeLeftovers(const std::string &path);

// Empty when every output can be written at the end of the run, else one line:
// not empty, not a folder, its folder there and writable, and none the same
// file as another output or as one of `inputs` (device and inode compared).
std::string checkBeforeRun(const std::vector<std::string> &outputs,
                           const std::vector<std::string> &inputs);

} // namespace output_file
