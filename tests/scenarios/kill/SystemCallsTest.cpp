#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "scenarios/kill/SystemCalls.h"

namespace zent::testing {
namespace {

struct CallCase {
  const char* what;
  SystemCall call;
  Changes changes;
};

const CallCase kCallCases[] = {
    {"an open for reading", {SYS_openat, {3, 0, O_RDONLY | O_CLOEXEC}}, Changes::Nothing},
    {"an open that makes a file", {SYS_openat, {3, 0, O_RDONLY | O_CREAT}}, Changes::Descriptor},
    {"an open that empties a file", {SYS_openat, {3, 0, O_RDONLY | O_TRUNC}}, Changes::Descriptor},
    {"an open for writing", {SYS_openat, {3, 0, O_WRONLY}}, Changes::Descriptor},
    {"an open for both", {SYS_openat, {3, 0, O_RDWR}}, Changes::Descriptor},
    {"a write", {SYS_write, {3}}, Changes::Descriptor},
    {"a rename", {SYS_renameat2, {3}}, Changes::Descriptor},
    {"a removal", {SYS_unlinkat, {3}}, Changes::Descriptor},
    {"a copy in the kernel", {SYS_copy_file_range, {3, 0, 4}}, Changes::Path},
    {"an attribute of a path", {SYS_setxattr, {}}, Changes::Path},
    {"a read", {SYS_read, {3}}, Changes::Nothing},
    {"a flush", {SYS_fsync, {3}}, Changes::Nothing},
    {"a lock", {SYS_flock, {3}}, Changes::Nothing},
};

TEST(SystemCalls, TellWhatTheyChange) {
  for (const CallCase& row : kCallCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ChangesOf(row.call), row.changes);
  }
}

TEST(SystemCalls, HaveNames) {
  EXPECT_EQ(NameOf({SYS_unlinkat, {}}), "unlinkat");
  EXPECT_EQ(NameOf({SYS_getpid, {}}), std::to_string(SYS_getpid));
}

}  // namespace
}  // namespace zent::testing
