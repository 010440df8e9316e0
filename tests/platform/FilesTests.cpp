#include "platform/Files.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tessel {

TEST(FilesTests, onlyAFileCanBeExecutable) {
    const TemporaryFolder folder;
    EXPECT_TRUE(isExecutableFile(folder.writeScript("program", "exit 0")));
    EXPECT_FALSE(isExecutableFile(folder.write("text", "exit 0")));
    EXPECT_FALSE(isExecutableFile(folder.path()));
    EXPECT_FALSE(isExecutableFile(folder.path() / "missing"));
}

}  // namespace tessel
