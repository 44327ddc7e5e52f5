// Makes the calls of a program fail that reach files below one directory, or its memory: loaded in front of the
// system's library (LD_PRELOAD). Only tests use it. What it does stands in the environment:
//
//   FAULT_ROOT     the directory; calls for other files pass
//   FAULT_PROGRAM  the file name of the program that is meant; others that it starts, or that start it, pass
//   FAULT_COUNTS   a file that gets the count of each kind of call when the program ends: "write 17"
//   FAULT_STACKS   a file that gets a line for each allocation: the calls that led to it, as a number; and one that
//                  says "begin" for each process
//   FAULT_RECORD   a directory that gets a copy of every file that takes the place of another
//   FAULT_KIND     open, read, write, flush, close, rename, truncate, unlink, make or allocate
//   FAULT_AT       which call of the kind fails, from 1
//   FAULT_HOW      error: it fails, once; always: from then on all of its kind do; space: there is no room from then
//                  on; short: it does half of what it should; before, after: the process is killed
//   FAULT_TOLD     a file that gets the path of the call that failed
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/stat.h>
#include <unistd.h>

enum Kind { OPEN, READ, WRITE, FLUSH, CLOSE, RENAME, TRUNCATE, UNLINK, MAKE, ALLOCATE, KINDS };
static const char* const NAMES[KINDS] = {"open",   "read",     "write",  "flush", "close",
                                         "rename", "truncate", "unlink", "make",  "allocate"};
enum How { NONE, ERROR, ALWAYS, SPACE, SHORT, BEFORE, AFTER };
static const char* const HOWS[] = {"", "error", "always", "space", "short", "before", "after"};

enum { FILES = 1024, STREAMS = 256, DEEPEST_STACK = 128 };

static bool on, full;
static char root[PATH_MAX];
static atomic_long count[KINDS];
static enum Kind kind = KINDS;
static enum How how = NONE;
static long at;
static const char *told, *counts, *record;
static int stacks = -1;  // the file that gets them
static char* path_of[FILES];  // of the files below the root that are open, by descriptor
static struct {
    FILE* stream;
    int handle;
} streams[STREAMS];

// What the library itself calls: the system's, behind the names below.
extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void __libc_free(void*);

static long raw_write(int handle, const void* from, size_t size) {
    return syscall(SYS_write, handle, from, size);
}

static void add_line(const char* file, const char* text) {
    const int handle = (int)syscall(SYS_openat, AT_FDCWD, file, O_WRONLY | O_CREAT | O_APPEND, 0666);
    if (handle < 0)
        return;
    raw_write(handle, text, strlen(text));
    raw_write(handle, "\n", 1);
    syscall(SYS_close, handle);
}

// --- which call fails -----------------------------------------------------------------------------------------

// What happens to this call of the kind; the path is for the report.
static enum How fate(enum Kind of, const char* path) {
    if (!on)
        return NONE;
    const long number = atomic_fetch_add(&count[of], 1) + 1;
    if (full && (of == WRITE || of == MAKE))
        return SPACE;
    if (of != kind || number < at || (number > at && how != ALWAYS))
        return NONE;
    if (number == at && told != NULL)
        add_line(told, path == NULL ? "" : path);
    if (how == SPACE)
        full = true;
    if (how == BEFORE)
        raise(SIGKILL);
    return how;
}

static void end_if(enum How what) {
    if (what == AFTER)
        raise(SIGKILL);
}

// Whether a call fails by its fate; errno tells why.
static bool fails(enum How what, int reason) {
    if (what != ERROR && what != ALWAYS && what != SPACE)
        return false;
    errno = what == SPACE ? ENOSPC : reason;
    return true;
}

// The path of a file below the root, in `to`; false for other files. Directories on the way are followed.
static bool is_meant(int directory, const char* path, char* to) {
    if (!on || path == NULL)
        return false;
    char whole[2 * PATH_MAX], start[64];
    if (path[0] == '/') {
        snprintf(whole, sizeof whole, "%s", path);
    } else {
        snprintf(start, sizeof start, directory == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/%d", directory);
        char base[PATH_MAX];
        const long size = syscall(SYS_readlinkat, AT_FDCWD, start, base, sizeof base - 1);
        if (size < 0)
            return false;
        base[size] = '\0';
        snprintf(whole, sizeof whole, "%s/%s", base, path);
    }
    char* const slash = strrchr(whole, '/');
    char last[PATH_MAX];
    snprintf(last, sizeof last, "%s", slash + 1);
    slash[slash == whole] = '\0';
    char real[PATH_MAX];
    if (realpath(whole, real) == NULL)
        return false;
    const size_t length = strlen(root);
    if (strncmp(real, root, length) != 0 || (real[length] != '/' && real[length] != '\0'))
        return false;
    snprintf(to, PATH_MAX, "%s/%s", real, last);
    return true;
}

static void note_open(int handle, const char* path) {
    if (handle >= 0 && handle < FILES) {
        __libc_free(path_of[handle]);
        const size_t size = strlen(path) + 1;
        path_of[handle] = __libc_malloc(size);
        memcpy(path_of[handle], path, size);
    }
}

static const char* noted(int handle) {
    return on && handle >= 0 && handle < FILES ? path_of[handle] : NULL;
}

// --- descriptors ----------------------------------------------------------------------------------------------

static int open_file(int directory, const char* path, int flags, mode_t mode) {
    char real[PATH_MAX];
    const bool meant = is_meant(directory, path, real);
    enum How what = NONE;
    if (meant) {
        const bool exists = syscall(SYS_faccessat, directory, path, F_OK) == 0;
        if (full && !exists && (flags & O_CREAT) != 0) {
            errno = ENOSPC;
            return -1;
        }
        what = fate(OPEN, real);
        if (fails(what, EACCES))
            return -1;
    }
    const int handle = (int)syscall(SYS_openat, directory, path, flags, mode);
    end_if(what);
    if (meant)
        note_open(handle, real);
    return handle;
}

#define WITH_MODE(flags, mode)                                   \
    mode_t mode = 0;                                             \
    if (((flags) & O_CREAT) != 0 || ((flags) & O_TMPFILE) == O_TMPFILE) { \
        va_list rest;                                            \
        va_start(rest, flags);                                   \
        mode = va_arg(rest, mode_t);                             \
        va_end(rest);                                            \
    }

int open(const char* path, int flags, ...) {
    WITH_MODE(flags, mode)
    return open_file(AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
    WITH_MODE(flags, mode)
    return open_file(AT_FDCWD, path, flags, mode);
}
int openat(int directory, const char* path, int flags, ...) {
    WITH_MODE(flags, mode)
    return open_file(directory, path, flags, mode);
}
int openat64(int directory, const char* path, int flags, ...) {
    WITH_MODE(flags, mode)
    return open_file(directory, path, flags, mode);
}

ssize_t read(int handle, void* to, size_t size) {
    const char* const path = noted(handle);
    const enum How what = path == NULL ? NONE : fate(READ, path);
    if (fails(what, EIO))
        return -1;
    const ssize_t done = syscall(SYS_read, handle, to, what == SHORT && size > 1 ? size / 2 : size);
    end_if(what);
    return done;
}

ssize_t write(int handle, const void* from, size_t size) {
    const char* const path = noted(handle);
    const bool was_full = full;
    const enum How what = path == NULL ? NONE : fate(WRITE, path);
    const bool half = what == SHORT || (what == SPACE && !was_full);
    if (half && size > 1)
        return syscall(SYS_write, handle, from, size / 2);
    if (fails(what, EIO))
        return -1;
    const ssize_t done = syscall(SYS_write, handle, from, size);
    end_if(what);
    return done;
}

// In two calls, so that each may fail.
ssize_t writev(int handle, const struct iovec* parts, int number) {
    struct part {
        void* start;
        size_t size;
    };
    const struct part* const all = (const struct part*)parts;
    ssize_t done = 0;
    for (int i = 0; i < number; ++i) {
        const ssize_t now = all[i].size == 0 ? 0 : write(handle, all[i].start, all[i].size);
        if (now < 0)
            return done > 0 ? done : now;
        done += now;
        if ((size_t)now < all[i].size)
            break;
    }
    return done;
}

ssize_t sendfile(int to, int from, off_t* offset, size_t size) {
    const char* const path = noted(to);
    const enum How what = path == NULL ? NONE : fate(WRITE, path);
    if (fails(what, EIO))
        return -1;
    const ssize_t done = syscall(SYS_sendfile, to, from, offset, what == SHORT && size > 1 ? size / 2 : size);
    end_if(what);
    return done;
}
ssize_t sendfile64(int to, int from, off_t* offset, size_t size) {
    return sendfile(to, from, offset, size);
}

int fsync(int handle) {
    const char* const path = noted(handle);
    const enum How what = path == NULL ? NONE : fate(FLUSH, path);
    if (fails(what, EIO))
        return -1;
    const int done = (int)syscall(SYS_fsync, handle);
    end_if(what);
    return done;
}

int ftruncate(int handle, off_t size) {
    const char* const path = noted(handle);
    const enum How what = path == NULL ? NONE : fate(TRUNCATE, path);
    if (fails(what, EIO))
        return -1;
    const int done = (int)syscall(SYS_ftruncate, handle, size);
    end_if(what);
    return done;
}
int ftruncate64(int handle, off_t size) {
    return ftruncate(handle, size);
}

// A failing close has closed.
int close(int handle) {
    const char* const path = noted(handle);
    const enum How what = path == NULL ? NONE : fate(CLOSE, path);
    if (path != NULL) {
        __libc_free(path_of[handle]);
        path_of[handle] = NULL;
    }
    const int done = (int)syscall(SYS_close, handle);
    end_if(what);
    return fails(what, EIO) ? -1 : done;
}

// --- streams --------------------------------------------------------------------------------------------------

// A stream over the descriptor calls above: the system's own streams do not come through them.
static int handle_of(const void* cookie) {
    return (int)((const char*)cookie - (const char*)NULL) - 1;
}
static ssize_t stream_read(void* cookie, char* to, size_t size) {
    return read(handle_of(cookie), to, size);
}
static ssize_t stream_write(void* cookie, const char* from, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t now = write(handle_of(cookie), from + done, size - done);
        if (now < 0)
            break;
        done += (size_t)now;
    }
    return (ssize_t)done;
}
static int stream_seek(void* cookie, off64_t* place, int from) {
    const off64_t found = lseek64(handle_of(cookie), *place, from);
    if (found < 0)
        return -1;
    *place = found;
    return 0;
}
static int stream_close(void* cookie) {
    const int handle = handle_of(cookie);
    for (int i = 0; i < STREAMS; ++i)
        if (streams[i].stream != NULL && streams[i].handle == handle)
            streams[i].stream = NULL;
    return close(handle);
}

FILE* fdopen(int handle, const char* mode) {
    const cookie_io_functions_t calls = {stream_read, stream_write, stream_seek, stream_close};
    FILE* const stream = fopencookie((char*)NULL + handle + 1, mode, calls);
    if (stream == NULL)
        return NULL;
    for (int i = 0; i < STREAMS; ++i)
        if (streams[i].stream == NULL) {
            streams[i].handle = handle;
            streams[i].stream = stream;
            return stream;
        }
    abort();
}

FILE* fopen(const char* path, const char* mode) {
    const bool both = strchr(mode, '+') != NULL;
    int flags = both ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
    if (mode[0] != 'r')
        flags |= O_CREAT | (mode[0] == 'w' ? O_TRUNC : O_APPEND);
    if (strchr(mode, 'e') != NULL)
        flags |= O_CLOEXEC;
    const int handle = open_file(AT_FDCWD, path, flags, 0666);
    return handle < 0 ? NULL : fdopen(handle, mode);
}
FILE* fopen64(const char* path, const char* mode) {
    return fopen(path, mode);
}

int fileno(FILE* stream) {
    for (int i = 0; i < STREAMS; ++i)
        if (streams[i].stream == stream)
            return streams[i].handle;
    return stream == stdin ? 0 : stream == stdout ? 1 : stream == stderr ? 2 : stream->_fileno;
}

// --- names ----------------------------------------------------------------------------------------------------

// Keeps what is to take a place, and the name of the place, one file for both.
static void keep_copy(const char* from, const char* to) {
    static int number = 0;
    char name[PATH_MAX], line[2 * PATH_MAX], piece[4096];
    snprintf(name, sizeof name, "%s/%d-%d", record, (int)getpid(), number++);
    const int source = (int)syscall(SYS_openat, AT_FDCWD, from, O_RDONLY);
    const int copy = (int)syscall(SYS_openat, AT_FDCWD, name, O_WRONLY | O_CREAT, 0666);
    for (long size; (size = syscall(SYS_read, source, piece, sizeof piece)) > 0;)
        raw_write(copy, piece, (size_t)size);
    syscall(SYS_close, source);
    syscall(SYS_close, copy);
    snprintf(line, sizeof line, "%s\t%s", name, to);
    snprintf(name, sizeof name, "%s/list", record);
    add_line(name, line);
}

int renameat(int from_directory, const char* from, int to_directory, const char* to) {
    char real[PATH_MAX];
    const bool meant = is_meant(to_directory, to, real);
    const enum How what = meant ? fate(RENAME, real) : NONE;
    if (fails(what, EACCES))
        return -1;
    if (meant && record != NULL)
        keep_copy(from, real);
    const int done = (int)syscall(SYS_renameat2, from_directory, from, to_directory, to, 0);
    end_if(what);
    return done;
}
int rename(const char* from, const char* to) {
    return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

int unlinkat(int directory, const char* path, int flags) {
    char real[PATH_MAX];
    const bool meant = is_meant(directory, path, real);
    // Those that are not there fail anyway.
    const bool there = meant && syscall(SYS_faccessat, directory, path, F_OK) == 0;
    const enum How what = there ? fate(UNLINK, real) : NONE;
    if (fails(what, EACCES))
        return -1;
    if (there && record != NULL) {
        char list[PATH_MAX], line[2 * PATH_MAX];
        snprintf(list, sizeof list, "%s/list", record);
        snprintf(line, sizeof line, "\t%s", real);
        add_line(list, line);
    }
    const int done = (int)syscall(SYS_unlinkat, directory, path, flags);
    end_if(what);
    return done;
}
int unlink(const char* path) {
    return unlinkat(AT_FDCWD, path, 0);
}
int rmdir(const char* path) {
    return unlinkat(AT_FDCWD, path, AT_REMOVEDIR);
}
int remove(const char* path) {
    const int done = unlinkat(AT_FDCWD, path, 0);
    return done == 0 || errno != EISDIR ? done : rmdir(path);
}

int mkdir(const char* path, mode_t mode) {
    char real[PATH_MAX];
    const enum How what = is_meant(AT_FDCWD, path, real) ? fate(MAKE, real) : NONE;
    if (fails(what, EACCES))
        return -1;
    const int done = (int)syscall(SYS_mkdirat, AT_FDCWD, path, mode);
    end_if(what);
    return done;
}

char* mkdtemp(char* name) {
    static int number = 0;
    const size_t length = strlen(name);
    for (int attempt = 0; attempt < 100; ++attempt) {
        char end[16];
        snprintf(end, sizeof end, "%06d", (int)(getpid() * 10 + number++) % 1000000);
        memcpy(name + length - 6, end, 6);
        if (mkdir(name, 0700) == 0)
            return name;
        if (errno != EEXIST)
            break;
    }
    return NULL;
}

int link(const char* from, const char* to) {
    char real[PATH_MAX];
    const enum How what = is_meant(AT_FDCWD, to, real) ? fate(MAKE, real) : NONE;
    if (fails(what, EACCES))
        return -1;
    const int done = (int)syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0);
    end_if(what);
    return done;
}

int symlink(const char* to, const char* path) {
    char real[PATH_MAX];
    const enum How what = is_meant(AT_FDCWD, path, real) ? fate(MAKE, real) : NONE;
    if (fails(what, EACCES))
        return -1;
    const int done = (int)syscall(SYS_symlinkat, to, AT_FDCWD, path);
    end_if(what);
    return done;
}

// --- memory ---------------------------------------------------------------------------------------------------

// The calls that led here are one number: their places in the code, which lies elsewhere in every process, folded.
static void note_stack(void) {
    void* calls[DEEPEST_STACK];
    const int depth = backtrace(calls, DEEPEST_STACK);
    unsigned long folded = 14695981039346656037UL;
    for (int i = 0; i < depth; ++i) {
        Dl_info module;
        const bool known = dladdr(calls[i], &module) != 0;
        folded = (folded ^ ((unsigned long)calls[i] - (known ? (unsigned long)module.dli_fbase : 0))) * 1099511628211UL;
    }
    char line[32];
    raw_write(stacks, line, (size_t)snprintf(line, sizeof line, "%lx\n", folded));
}

static bool refuses_memory(void) {
    if (on && stacks >= 0)
        note_stack();
    return fails(fate(ALLOCATE, NULL), ENOMEM);
}
void* malloc(size_t size) {
    return refuses_memory() ? NULL : __libc_malloc(size);
}
void* calloc(size_t number, size_t size) {
    return refuses_memory() ? NULL : __libc_calloc(number, size);
}
void* realloc(void* there, size_t size) {
    return refuses_memory() ? NULL : __libc_realloc(there, size);
}

// --- begin and end --------------------------------------------------------------------------------------------

static void tell_counts(void) {
    if (!on || counts == NULL)
        return;
    on = false;
    for (int i = 0; i < KINDS; ++i) {
        char line[64];
        snprintf(line, sizeof line, "%s %ld", NAMES[i], (long)count[i]);
        add_line(counts, line);
    }
}

static int (*main_of_program)(int, char**, char**);

// From here on, not while the program is loaded.
static int counted_main(int number, char** arguments, char** environment) {
    const char* const program = getenv("FAULT_PROGRAM");
    const char* const place = getenv("FAULT_ROOT");
    if (place == NULL || (program != NULL && strcmp(program, program_invocation_short_name) != 0))
        return main_of_program(number, arguments, environment);
    snprintf(root, sizeof root, "%s", place);
    told = getenv("FAULT_TOLD");
    counts = getenv("FAULT_COUNTS");
    record = getenv("FAULT_RECORD");
    const char* text = getenv("FAULT_KIND");
    for (int i = 0; text != NULL && i < KINDS; ++i)
        if (strcmp(text, NAMES[i]) == 0)
            kind = (enum Kind)i;
    text = getenv("FAULT_HOW");
    for (int i = 1; text != NULL && i <= AFTER; ++i)
        if (strcmp(text, HOWS[i]) == 0)
            how = (enum How)i;
    text = getenv("FAULT_AT");
    at = text == NULL ? 0 : atol(text);
    text = getenv("FAULT_STACKS");
    if (text != NULL) {
        void* first_call_loads_a_library[1];
        backtrace(first_call_loads_a_library, 1);
        stacks = (int)syscall(SYS_openat, AT_FDCWD, text, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        raw_write(stacks, "begin\n", 6);
    }
    atexit(tell_counts);
    on = true;
    return main_of_program(number, arguments, environment);
}

typedef int start_main(int (*)(int, char**, char**), int, char**, void (*)(void), void (*)(void), void (*)(void), void*);

int __libc_start_main(int (*program)(int, char**, char**), int number, char** arguments, void (*begin)(void),
                      void (*end)(void), void (*loader_end)(void), void* stack) {
    main_of_program = program;
    start_main* const real = (start_main*)dlsym(RTLD_NEXT, "__libc_start_main");
    return real(counted_main, number, arguments, begin, end, loader_end, stack);
}
