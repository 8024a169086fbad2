// Lets one call into the file system fail, of all that concern one directory.
//
// Linked into a program, these functions stand in front of the system library's, for the toolkit
// too. The calls are counted in whatever thread they are made.

#define _GNU_SOURCE

#include <dlfcn.h>
#include <errno.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static char place[4096];
static int error_then;
static atomic_int calls, failing;

/// The call that failed last, for the report.
const char* failed_call = "none";

/// From now on, lets the call of that number on something in a directory fail; 0 ends that.
/// Answers how many there were since the last time.
int fail_call(const char* directory, int number, int error)
{
    failing = 0; // nothing is compared with the place while it changes
    strncpy(place, directory, sizeof place - 1);
    error_then = error;
    const int made = atomic_exchange(&calls, 0);
    failing = number;
    return made;
}

static int fails(const char* call, int descriptor, const char* path)
{
    char link[32];
    char full[4096] = "";
    if (failing != 0 && (!path || path[0] != '/')) {
        snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
        path = readlink(link, full, sizeof full - 1) > 0 ? full : "";
    }
    if (failing == 0 || strncmp(path, place, strlen(place)) != 0 ||
        atomic_fetch_add(&calls, 1) + 1 != failing) {
        return 0;
    }
    failed_call = call;
    errno = error_then;
    return 1;
}

#define CALL(type, failure, name, parameters, arguments, fd, path)                                 \
    type name parameters                                                                           \
    {                                                                                              \
        type(*hidden) parameters = (type(*) parameters)dlsym(RTLD_NEXT, #name);                    \
        return fails(#name, fd, path) ? failure : hidden arguments;                                \
    }
#define STAT(name) CALL(int, -1, name, (const char* path, void* into), (path, into), -1, path)
#define OPEN(name) CALL(int, -1, name, (const char* at, int how, int mode), (at, how, mode), -1, at)
#define BY_FD(name) CALL(int, -1, name, (int fd), (fd), fd, NULL)
#define NEXT(name) CALL(void*, NULL, name, (void* all), (all), dirfd(all), NULL)

// Headers would declare some of these with types that a plain forwarding cannot have.
int dirfd(void* directory);
OPEN(open)
OPEN(open64)
STAT(stat)
STAT(stat64)
STAT(lstat64)
BY_FD(fsync)
BY_FD(fdatasync)
NEXT(readdir)
NEXT(readdir64)
CALL(int, -1, fstat, (int fd, void* into), (fd, into), fd, NULL)
CALL(int, -1, fstat64, (int fd, void* into), (fd, into), fd, NULL)
CALL(int, -1, fstatat, (int fd, const char* at, void* to, int how), (fd, at, to, how), fd, at)
CALL(int, -1, statx, (int fd, const char* at, int how, unsigned what, void* to),
     (fd, at, how, what, to), fd, at)
CALL(char*, NULL, realpath, (const char* path, char* into), (path, into), -1, path)
CALL(void*, NULL, opendir, (const char* path), (path), -1, path)
CALL(ssize_t, -1, read, (int fd, void* into, size_t n), (fd, into, n), fd, NULL)
CALL(ssize_t, -1, write, (int fd, const void* from, size_t n), (fd, from, n), fd, NULL)
CALL(int, -1, rename, (const char* path, const char* to), (path, to), -1, path)
CALL(int, -1, renameat2, (int fd, const char* at, int to_fd, const char* to, unsigned how),
     (fd, at, to_fd, to, how), fd, at)
CALL(int, -1, linkat, (int fd, const char* at, int to_fd, const char* to, int how),
     (fd, at, to_fd, to, how), to_fd, to)
