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
    const struct {
        const char* what;
        const char* script;
        std::optional<double> timeout;
        int status;
        Bytes output;
        Bytes error;
    } cases[] = {
        {"silence", "true", {}, 0, IsEmpty(), IsEmpty()},
        {"both streams", "echo out; echo err >&2", 20, 0, "out\n", "err\n"},
        {"status", "echo out; exit 3", 20, 3, "out\n", IsEmpty()},
        {"signal", "echo out; kill -KILL $$", 20, SIGKILL, "out\n", IsEmpty()},
        {"own SIGTERM", "kill -TERM $$", 20, SIGTERM, IsEmpty(), IsEmpty()},
        {"input", "cat; echo at its end", {}, 0, "at its end\n", IsEmpty()},
        {"no time-out", "sleep 0.2; echo late", {}, 0, "late\n", IsEmpty()},
        {"zero time-out", "sleep 0.2; echo late", 0, 0, "late\n", IsEmpty()},
        {"negative time-out", "sleep 0.2; echo late", -1, 0, "late\n", IsEmpty()},
        {"megabytes", "head -c 3000000 /dev/zero & head -c 3000000 /dev/zero >&2; wait", 20, 0,
         testing::SizeIs(megabytes), testing::SizeIs(megabytes)},
    };
    for (const auto& [what, script, timeout, status, output, error] : cases) {
        SCOPED_TRACE(what);
        const auto result = runShell(script, timeout ? std::optional(Seconds(*timeout)) : std::nullopt);
        EXPECT_EQ(result.status, status);
        EXPECT_THAT(result.standardOutput, output);
        EXPECT_THAT(result.standardError, error);
        EXPECT_FALSE(result.didTimeOut);
    }
}

TEST_F(CommandRunnerTests, aTimeoutAsksPolitelyThenKills) {
    const struct {
        const char* what;
        const char* script;
        int status;
        Bytes output;
        Seconds atLeast;
    } cases[] = {
        {"tidies up", "trap 'echo bye; kill $!; exit 4' TERM; sleep 60 >&- 2>&- & wait", 4, "bye\n",
         Seconds(0.5)},
        {"ignores SIGTERM", "trap '' TERM; echo out; exec sleep 60", SIGKILL, "out\n", Seconds(1.0)},
        {"writes for ever", "while :; do echo y; done", SIGTERM, StartsWith("y\ny\n"), Seconds(0.5)},
    };
    for (const auto& [what, script, status, output, atLeast] : cases) {
        SCOPED_TRACE(what);
        const auto begin = std::chrono::steady_clock::now();
        const auto result = runShell(script, Seconds(0.5));
        const Seconds duration = std::chrono::steady_clock::now() - begin;
        EXPECT_TRUE(result.didTimeOut);
        EXPECT_EQ(result.status, status);
        EXPECT_THAT(result.standardOutput, output);
        EXPECT_GE(duration, atLeast);
        EXPECT_LT(duration, Seconds(20));
    }
}

TEST_F(CommandRunnerTests, aDescendantThatKeepsAStreamOpenIsNotWaitedFor) {
    const struct {
        const char* what;
        const char* script;
        bool isKilled;
        Bytes output;
    } cases[] = {
        {"silent", "sleep 20 & echo kept; exit 5", false, "kept\n"},
        {"silent, on one stream", "sleep 20 2>&- & echo kept; exit 5", false, "kept\n"},
        {"ending soon", "(sleep 0.1; echo late) & echo kept; exit 5", false, "kept\nlate\n"},
        {"writing", "(while :; do echo y; done) & sleep 0.1; exit 5", false, StartsWith("y\ny\n")},
        {"left by a killed command", "sleep 20 & echo kept; exec sleep 60", true, "kept\n"},
    };
    for (const auto& [what, script, isKilled, output] : cases) {
        SCOPED_TRACE(what);
        const auto begin = std::chrono::steady_clock::now();
        const auto result = runShell(script, Seconds(0.5));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, Seconds(15));
        // A command is not late if only its streams are waited for.
        EXPECT_EQ(result.didTimeOut, isKilled);
        EXPECT_EQ(result.status, isKilled ? SIGTERM : 5);
        EXPECT_THAT(result.standardOutput, output);
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
