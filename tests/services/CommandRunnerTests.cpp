#include "services/CommandRunner.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <stdlib.h>

#include "foundation/Errors.h"
#include "platform/FileDescriptor.h"
#include "tests/support/OpenResources.h"
#include "tests/support/RunLoop.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using testing::IsEmpty;
using testing::StartsWith;
using Seconds = std::chrono::duration<double>;
using Bytes = testing::Matcher<const std::string&>;

class CommandRunnerTests : public LeavesNothingOpen {};

CommandResult run(const Command& command, CommandRunner::Timeout timeout = std::nullopt) {
    return runUntilFinished(std::make_shared<RunLoop>(), CommandRunner().run(command, timeout));
}

CommandResult runShell(const std::string& script, CommandRunner::Timeout timeout = std::nullopt,
                       const std::map<std::string, std::string>& environment = {}) {
    return run({.executable = "/bin/sh", .arguments = {"-c", script}, .environment = environment}, timeout);
}

}  // namespace

TEST_F(CommandRunnerTests, aCommandLeavesItsStatusAndItsOutput) {
    constexpr size_t megabytes = 3'000'000;
    constexpr auto half = Seconds(0.5);
    const struct {
        const char* what;
        const char* script;
        CommandRunner::Timeout timeout;
        int status;
        Bytes output;
        Bytes error = IsEmpty();
        bool didTimeOut = false;
        Seconds atLeast = Seconds(0);
    } cases[] = {
        {"both streams", "echo out; echo err >&2", Seconds(20), 0, "out\n", "err\n"},
        {"status", "echo out; exit 3", Seconds(20), 3, "out\n"},
        {"signal", "echo out; kill -KILL $$", Seconds(20), SIGKILL, "out\n"},
        {"own SIGTERM", "kill -TERM $$", Seconds(20), SIGTERM, IsEmpty()},
        {"input", "cat; echo at its end", {}, 0, "at its end\n"},
        {"no time-out", "sleep 0.2; echo late", {}, 0, "late\n"},
        {"zero time-out", "sleep 0.2; echo late", Seconds(0), 0, "late\n"},
        {"negative time-out", "sleep 0.2; echo late", Seconds(-1), 0, "late\n"},
        {"megabytes", "head -c 3000000 /dev/zero & head -c 3000000 /dev/zero >&2; wait", Seconds(20), 0,
         testing::SizeIs(megabytes), testing::SizeIs(megabytes)},
        // A time-out asks politely, then kills.
        {"tidies up", "trap 'echo bye; kill $!; exit 4' TERM; sleep 60 >&- 2>&- & wait", half, 4, "bye\n",
         IsEmpty(), true, half},
        {"ignores SIGTERM", "trap '' TERM; echo out; exec sleep 60", half, SIGKILL, "out\n", IsEmpty(), true,
         Seconds(1)},
        {"writes for ever", "while :; do echo y; done", half, SIGTERM, StartsWith("y\ny\n"), IsEmpty(), true,
         half},
        // A descendant that keeps a stream open is not waited for, and makes no command late.
        {"silent", "sleep 20 & echo kept; exit 5", half, 5, "kept\n"},
        {"silent, on one stream", "sleep 20 2>&- & echo kept; exit 5", half, 5, "kept\n"},
        {"ending soon", "(sleep 0.1; echo late) & echo kept; exit 5", half, 5, "kept\nlate\n"},
        {"writing", "(while :; do echo y; done) & sleep 0.1; exit 5", half, 5, StartsWith("y\ny\n")},
        {"left by a killed command", "sleep 20 & echo kept; exec sleep 60", half, SIGTERM, "kept\n",
         IsEmpty(), true, half},
    };
    for (const auto& [what, script, timeout, status, output, error, didTimeOut, atLeast] : cases) {
        SCOPED_TRACE(what);
        const auto begin = std::chrono::steady_clock::now();
        const auto result = runShell(script, timeout);
        const Seconds duration = std::chrono::steady_clock::now() - begin;
        EXPECT_EQ(result.status, status);
        EXPECT_THAT(result.standardOutput, output);
        EXPECT_THAT(result.standardError, error);
        EXPECT_EQ(result.didTimeOut, didTimeOut);
        EXPECT_GE(duration, atLeast);
        EXPECT_LT(duration, Seconds(15));
    }
}

TEST_F(CommandRunnerTests, whatACommandInherits) {
    setenv("TESSEL_KEPT", "inherited", 1);
    setenv("TESSEL_REPLACED", "inherited", 1);
    // A library may have forgotten to mark its descriptors close-on-exec.
    const FileDescriptor stray(open("/dev/null", O_RDWR));
    const auto result = runShell(
        "echo $TESSEL_KEPT $TESSEL_REPLACED $TESSEL_ADDED; echo /dev/fd/*; [ /dev/fd/0 -ef /dev/null ]", {},
        {{"TESSEL_REPLACED", "by the caller"}, {"TESSEL_ADDED", "a=b"}});
    // The last one is the shell's own, by which it reads that folder.
    EXPECT_EQ(result.standardOutput,
              "inherited by the caller a=b\n/dev/fd/0 /dev/fd/1 /dev/fd/2 /dev/fd/3\n");
    EXPECT_EQ(result.status, 0) << "its input is not the null device";
    const auto all = run({.executable = "/usr/bin/env", .environment = {{"TESSEL_REPLACED", "once"}}});
    EXPECT_THAT(all.standardOutput, testing::HasSubstr("TESSEL_REPLACED=once\n"));
    EXPECT_THAT(all.standardOutput, testing::Not(testing::HasSubstr("TESSEL_REPLACED=inherited")));
    unsetenv("TESSEL_KEPT");
    unsetenv("TESSEL_REPLACED");
}

TEST_F(CommandRunnerTests, aCommandCanBeStoppedThoughItsParentBlocksOrIgnoresSignals) {
    sigset_t blocked;
    sigset_t usual;
    sigfillset(&blocked);
    pthread_sigmask(SIG_BLOCK, &blocked, &usual);
    const auto previous = signal(SIGPIPE, SIG_IGN);
    const auto result = runShell("grep SigBlk /proc/self/status; kill -PIPE $$");
    pthread_sigmask(SIG_SETMASK, &usual, nullptr);
    signal(SIGPIPE, previous);
    EXPECT_EQ(result.standardOutput, "SigBlk:\t0000000000000000\n");
    EXPECT_EQ(result.status, SIGPIPE);
}

TEST_F(CommandRunnerTests, aFailureIsSeenEvenWhereTheParentIgnoredItsChildren) {
    const auto previous = signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(runShell("sleep 0.1; exit 3").status, 3);
    signal(SIGCHLD, previous);
}

TEST_F(CommandRunnerTests, theWordsOfAFailedCommand) {
    const struct {
        const char* output;
        const char* error;
        const char* combined;
    } cases[] = {
        {"", "", ""},
        {" out \n", "", "out"},
        {"", "\n err\n\n", "err"},
        {"out\n", "err\n", "out\nerr"},
        {"\xff", "err", "err"},
        {"out", "cut off: \xc3", "out"},
        {"overlong: \xc0\x80", "surrogate: \xed\xa0\x80", ""},
    };
    for (const auto& [output, error, combined] : cases) {
        SCOPED_TRACE(combined);
        CommandResult result{.status = 1, .standardOutput = output, .standardError = error};
        const std::string words = combined;
        EXPECT_EQ(result.combinedOutput(), words);
        EXPECT_EQ(result.failureMessage("It failed."), words.empty() ? "It failed." : words);
        result.didTimeOut = true;
        EXPECT_EQ(result.failureMessage("It failed."),
                  words.empty() ? "The command timed out." : words + "\nThe command timed out.");
    }
}

}  // namespace tessel
