// The steps the two calibration writers share: a scratch file that is theirs alone while they
// write it, and the copy of the staged file over its target.
#pragma once

#include <string>

namespace zt4 {

enum class ScratchFailure { None, Open, Lock };

// Opens (creating) the scratch file, takes its write lock and empties it. The file is opened
// without O_TRUNC and emptied only under the lock, and the lock is taken again when another
// writer renamed the file away meanwhile, so that two writers never write into one file. The
// descriptor, or -1 with `failure` set (errno tells why an open failed).
int openScratchFile(const std::string& path, ScratchFailure& failure);

// Runs "cp <source> <target>" as an argument vector (no shell: the names may hold any
// character), holding the target's write lock meanwhile so that readers never see a half-copied
// file. The wait status of cp, or -1 with errno set when cp could not be started.
int copyStagedFile(const std::string& source, const std::string& target);

}  // namespace zt4
