/* libzt4config: inter-process locks.
 *
 * Whole-file advisory record locks on a descriptor the caller opened (shared for readers,
 * exclusive for writers; both block until granted), and wait/signal on semaphore 0 of a System V
 * semaphore set the caller created. The library never creates a lock or a semaphore itself.
 */
#ifndef ZT4CONFIG_LOCK_H
#define ZT4CONFIG_LOCK_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Shared lock on the whole file; blocks. 0, or -1 (silently for fd < 0 or a NULL name). */
ZT4_API int LockReadFile(int fd, const char* filename) ZT4_NOEXCEPT;
/* Releases a read lock. 0, or -1 (silently for fd < 0 or a NULL name). */
ZT4_API int UnLockReadFile(int fd, const char* filename) ZT4_NOEXCEPT;
/* Exclusive lock on the whole file; blocks. 0, or -1 (logged); filename only names the file. */
ZT4_API int LockWriteFile(int fd, const char* filename) ZT4_NOEXCEPT;
/* Releases a write lock. 0, or -1 (logged). */
ZT4_API int UnLockWriteFile(int fd, const char* filename) ZT4_NOEXCEPT;

/* Waits on (decrements) semaphore 0 of the set, with SEM_UNDO; blocks. 0, or 1 on failure. */
ZT4_API int Psem(int semid) ZT4_NOEXCEPT;
/* Signals (increments) semaphore 0 of the set, with SEM_UNDO. 0, or 1 on failure. */
ZT4_API int Vsem(int semid) ZT4_NOEXCEPT;
/* Logs one line describing the set. moment: 0 before, 1 after, other none; operation: -1 wait,
 * 1 signal, other information only. No result. */
ZT4_API void displayInfoSem(int semid, int moment, int operation) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_LOCK_H */
