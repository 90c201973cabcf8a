// The main function of tests that move and play what the user's own folders hold: in a home of their own, without a
// session bus. Libraries ask for these folders once in a process, so they are set before anything else.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/TemporaryFolder.h"

int main(int argc, char** argv) {
  const lumivane::TemporaryFolder home;
  // NOLINTBEGIN(concurrency-mt-unsafe): there is no other thread yet
  setenv("HOME", home.path().c_str(), 1);
  setenv("XDG_DATA_HOME", (home / "data/home").c_str(), 1);
  setenv("XDG_DATA_DIRS", (home / "data/shared").c_str(), 1);
  setenv("XDG_CACHE_HOME", "/dev/null/no-cache",
         1);  // libcanberra keeps for seconds what it found in a theme
  setenv("LC_ALL", "C", 1);
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  unsetenv("XDG_RUNTIME_DIR");
  unsetenv("DISPLAY");
  unsetenv("CANBERRA_DRIVER");
  unsetenv("CANBERRA_DEVICE");
  // NOLINTEND(concurrency-mt-unsafe)
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
