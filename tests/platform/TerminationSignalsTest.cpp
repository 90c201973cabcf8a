#include "platform/linux/TerminationSignals.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

// How a process ends that this happens in.
template <typename Work>
int endOf(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(30);
    work();
    _exit(7);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

TEST(TerminationSignals, AreTakenOnTheMainLoop) {
  for (const int number : {SIGTERM, SIGINT}) {
    int calls = 0;
    const TerminationSignals taken([&calls] { ++calls; });
    raise(number);
    EXPECT_EQ(calls, 0) << "not in the handler";
    ASSERT_TRUE(waitUntil([&calls] { return calls != 0; }));
    runPendingEvents();
    EXPECT_EQ(calls, 1);
  }
}

TEST(TerminationSignals, ASecondOneEndsAProgramThatHangs) {
  const int status = endOf([] {
    const TerminationSignals taken([] {});
    raise(SIGTERM);
    raise(SIGTERM);
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
}

TEST(TerminationSignals, EndTheProgramAgainOnceNobodyTakesThem) {
  const int status = endOf([] {
    {
      const TerminationSignals taken([] {});
    }
    raise(SIGINT);
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGINT);
}

}  // namespace
}  // namespace lumivane
