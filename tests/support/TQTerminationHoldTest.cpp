#include "support/TQTerminationHold.h"

#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <csignal>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Entries = std::set<std::string>;

/// Ends another process by a signal that comes in the middle of what it does, and tells how it ended.
int statusOfProcessEndedBy(int signal, const TemporaryDirectory& directory) {
    const pid_t child = fork();
    if (child == 0) {
        {
            const TQTerminationHold hold;
            {
                const TQTerminationHold within;
                raise(signal);
            }
            directory.fileWith("end of work", "");
        }
        directory.fileWith("after the end", "");
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST(TQTerminationHold, AProcessThatIsToEndDoesSoAfterwards) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TemporaryDirectory directory;
        const int status = statusOfProcessEndedBy(signal, directory);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(directory.entries(), Entries{"end of work"});
    }
}

} // namespace
#endif
