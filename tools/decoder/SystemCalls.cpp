// The half of Sandbox.h that limits and filters.
#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <memory>

#include "tools/decoder/Sandbox.h"

namespace lumivane {
namespace {

// What reading files, computing in threads and talking over an open socket take. Names that a processor's kernel does
// not have are passed over.
constexpr int kAllowed[] = {
    // Files that are open, and looking at names
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(pread64), SCMP_SYS(preadv), SCMP_SYS(lseek), SCMP_SYS(close),
    SCMP_SYS(close_range), SCMP_SYS(fstat), SCMP_SYS(newfstatat), SCMP_SYS(stat), SCMP_SYS(lstat),
    SCMP_SYS(statx), SCMP_SYS(fstatfs), SCMP_SYS(statfs), SCMP_SYS(access), SCMP_SYS(faccessat),
    SCMP_SYS(faccessat2), SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(getcwd), SCMP_SYS(getdents64),
    SCMP_SYS(dup), SCMP_SYS(pipe2), SCMP_SYS(fadvise64),
    // The line to the show; standard error
    SCMP_SYS(sendmsg), SCMP_SYS(recvmsg), SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(poll), SCMP_SYS(ppoll),
    // Memory
    SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(brk),
    // Threads
    SCMP_SYS(futex), SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(gettid), SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity), SCMP_SYS(membarrier), SCMP_SYS(exit), SCMP_SYS(exit_group),
    SCMP_SYS(set_tid_address),
    // Signals of its own
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    // What time it is, and who we are
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_getres), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(restart_syscall), SCMP_SYS(getrandom), SCMP_SYS(getpid),
    SCMP_SYS(getppid), SCMP_SYS(getuid), SCMP_SYS(geteuid), SCMP_SYS(getgid), SCMP_SYS(getegid),
    SCMP_SYS(getrusage), SCMP_SYS(getrlimit), SCMP_SYS(sysinfo), SCMP_SYS(uname)};

struct ReleaseFilter {
  void operator()(void* filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, ReleaseFilter>;

template <typename... Conditions>
bool allow(const Filter& filter, int call, Conditions... conditions) {
  const scmp_arg_cmp all[] = {conditions..., scmp_arg_cmp{}};
  const int error = seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call, sizeof...(conditions), all);
  return error == 0 || error == -EDOM;
}

scmp_arg_cmp noneOf(unsigned argument, scmp_datum_t bits) {
  return {argument, SCMP_CMP_MASKED_EQ, bits, 0};
}
scmp_arg_cmp exactly(unsigned argument, scmp_datum_t value) {
  return {argument, SCMP_CMP_EQ, value, 0};
}

// Not: whom the kernel is to signal about a file, and with which signal.
bool allowOpenFiles(const Filter& filter) {
  constexpr int kHarmless[] = {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL};
  return std::all_of(std::begin(kHarmless), std::end(kHarmless), [&filter](int command) {
    return allow(filter, SCMP_SYS(fcntl), exactly(1, static_cast<scmp_datum_t>(command)));
  });
}

// Calls that are harmless with some arguments only.
bool allowWithConditions(const Filter& filter) {
  constexpr scmp_datum_t kWriting = O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND;
  constexpr scmp_datum_t kThread = CLONE_THREAD | CLONE_VM | CLONE_SIGHAND;
  const auto self = static_cast<scmp_datum_t>(::getpid());
  return allow(filter, SCMP_SYS(openat), noneOf(2, kWriting)) &&
         allow(filter, SCMP_SYS(open), noneOf(1, kWriting)) &&
         allow(filter, SCMP_SYS(mmap), noneOf(2, PROT_EXEC)) &&
         allow(filter, SCMP_SYS(mprotect), noneOf(2, PROT_EXEC)) &&
         allow(filter, SCMP_SYS(clone), scmp_arg_cmp{0, SCMP_CMP_MASKED_EQ, kThread, kThread}) &&
         allow(filter, SCMP_SYS(tgkill), exactly(0, self)) &&  // for abort()
         allowOpenFiles(filter) && allow(filter, SCMP_SYS(prctl), exactly(0, PR_SET_NAME)) &&
         allow(filter, SCMP_SYS(prlimit64), exactly(0, 0), exactly(2, 0));
}

void setLimit(__rlimit_resource resource, rlim_t value) {
  const rlimit limit{value, value};
  (void)::setrlimit(resource, &limit);  // lower ones are always granted
}

}  // namespace

void limitResources(std::uint64_t memoryBytes, std::uint64_t sharedBytes) {
  setLimit(RLIMIT_FSIZE, 0);
  setLimit(RLIMIT_CORE, 1);  // 0 would not hold back a program that the kernel pipes cores to; 1 does
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  (void)memoryBytes, (void)sharedBytes;  // the sanitizers' shadow memory takes up terabytes of addresses
#else
  if (memoryBytes == 0) return;
  setLimit(RLIMIT_DATA, static_cast<rlim_t>(memoryBytes));
  setLimit(RLIMIT_AS, static_cast<rlim_t>(memoryBytes + sharedBytes));
#endif
}

bool filterSystemCalls() {
  const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
  if (!filter || seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) != 0) return false;
  for (const int call : kAllowed) {
    if (!allow(filter, call)) return false;
  }
  // The C library falls back from clone3, whose arguments a filter cannot see, to clone.
  if (seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) != 0) return false;
  return allowWithConditions(filter) && seccomp_load(filter.get()) == 0;
}

}  // namespace lumivane
