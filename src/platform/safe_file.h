#pragma once
// Writing files without harming what is already there. Every file the
// plug-in, pwext and pwpack write goes through these two functions.
//
// The new content goes into a temporary file that is created exclusively
// under a fresh, short name in the target's folder (never a fixed name, never
// through a symbolic link: a file or link planted there is never opened), and
// is then renamed over the target. So:
// - a failure never leaves half a file under the target's name, and the
//   temporary file is removed;
// - a target that exists but is not a regular file (a folder, a device, a
//   FIFO, a socket) is refused and left as it is; a symbolic link at the
//   target is replaced by the new file, never written through;
// - a copy's source must be a regular file (a FIFO or device is refused
//   without blocking), and a file copied onto itself is left alone;
// - a target name of any length the file system accepts can be written,
//   since the temporary name does not grow with it.
// Failures say what failed and why, naming the file.
#include <string>
#include <string_view>

#include "platform/file_result.h"

FileResult WriteFileSafely(const std::string& path, std::string_view bytes);
FileResult CopyFileSafely(const std::string& from, const std::string& to);
