#include "platform/linux/EndLimit.h"

#include <sys/wait.h>
#include <unistd.h>

namespace lumivane {
namespace {

// How a process ends that sets itself a limit and then does this.
template <typename Work>
int endOf(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    endProcessWithin(std::chrono::milliseconds(20));
    work();
    _exit(7);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(EndLimit, EndsWhatHangs) {
  EXPECT_EQ(endOf([] {
              for (;;) pause();
            }),
            0);
}

TEST(EndLimit, DoesNotChangeAnEndInTime) {
  EXPECT_EQ(endOf([] {}), 7);
}

}  // namespace
}  // namespace lumivane
