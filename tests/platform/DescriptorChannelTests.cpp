#include "platform/DescriptorChannel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <limits>
#include <vector>

#include "tests/support/OpenResources.h"

namespace tessel {

namespace {

using Outcome = ReceivedDescriptor::Outcome;

class DescriptorChannelTests : public LeavesNothingOpen {};

/// Whose type is not the same on every system.
using Length = decltype(cmsghdr::cmsg_len);

FileDescriptor openNull() {
    return FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC));
}

void sendMessage(int socket, const std::vector<int>& descriptors) {
    char data = 'x';
    iovec vector{.iov_base = &data, .iov_len = 1};
    std::vector<std::byte> control(descriptors.empty() ? 0 : CMSG_SPACE(sizeof(int) * descriptors.size()));
    msghdr message{};
    message.msg_iov = &vector;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = static_cast<Length>(control.size());
    if (!descriptors.empty()) {
        const auto length = static_cast<Length>(CMSG_LEN(sizeof(int) * descriptors.size()));
        const cmsghdr header{length, SOL_SOCKET, SCM_RIGHTS};
        std::memcpy(control.data(), &header, sizeof header);
        std::memcpy(control.data() + CMSG_LEN(0), descriptors.data(), sizeof(int) * descriptors.size());
    }
    ASSERT_EQ(sendmsg(socket, &message, 0), 1);
}

struct Entry {
    Length length;
    int level;
    int type;
    int value;
};

std::vector<std::byte> controlData(const std::vector<Entry>& entries) {
    std::vector<std::byte> bytes;
    for (const auto& [length, level, type, value] : entries) {
        std::vector<std::byte> entry(CMSG_SPACE(sizeof value));
        const cmsghdr header{length, level, type};
        std::memcpy(entry.data(), &header, sizeof header);
        std::memcpy(entry.data() + CMSG_LEN(0), &value, sizeof value);
        bytes.insert(bytes.end(), entry.begin(), entry.end());
    }
    return bytes;
}

}  // namespace

TEST_F(DescriptorChannelTests, aDescriptorArrivesOnceAndCloseOnExec) {
    auto channel = DescriptorChannel::create();
    sendMessage(channel.sendingEnd.get(), {openNull().get()});
    const auto received = receiveDescriptor(channel.receivingEnd.get());
    ASSERT_EQ(received.outcome, Outcome::received);
    EXPECT_EQ(write(received.descriptor.get(), "x", 1), 1);
    EXPECT_EQ(fcntl(received.descriptor.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(DescriptorChannelTests, refusedMessagesLeaveNothingOpen) {
    auto channel = DescriptorChannel::create();
    sendMessage(channel.sendingEnd.get(), {});
    EXPECT_EQ(receiveDescriptor(channel.receivingEnd.get()).outcome, Outcome::missing);
    for (const size_t count : {2U, 3U, 8U}) {
        const auto null = openNull();
        sendMessage(channel.sendingEnd.get(), std::vector(count, null.get()));
        EXPECT_EQ(receiveDescriptor(channel.receivingEnd.get()).outcome, Outcome::truncated);
    }
    channel.sendingEnd.close();
    EXPECT_EQ(receiveDescriptor(channel.receivingEnd.get()).outcome, Outcome::closed);
    const auto notASocket = receiveDescriptor(openNull().get());
    EXPECT_EQ(notASocket.outcome, Outcome::failed);
    EXPECT_EQ(notASocket.errorCode, ENOTSOCK);
}

TEST_F(DescriptorChannelTests, onlyAWellFormedRightsEntryCounts) {
    const Entry rights{CMSG_LEN(sizeof(int)), SOL_SOCKET, SCM_RIGHTS, 42};
    const Entry timestamp{CMSG_LEN(sizeof(int)), SOL_SOCKET, SCM_TIMESTAMP, 7};
    const Entry otherLevel{CMSG_LEN(sizeof(int)), 0, SCM_RIGHTS, 7};
    const Entry withoutRoom{CMSG_LEN(0), SOL_SOCKET, SCM_RIGHTS, 7};
    const struct {
        const char* what;
        std::vector<Entry> entries;
        std::optional<int> expected;
    } cases[] = {
        {"nothing", {}, std::nullopt},
        {"rights", {rights}, 42},
        {"rights after others", {timestamp, otherLevel, rights}, 42},
        {"only others", {timestamp, otherLevel}, std::nullopt},
        {"shorter than a header", {{4, SOL_SOCKET, SCM_RIGHTS, 7}, rights}, std::nullopt},
        {"longer than the data", {{400, SOL_SOCKET, SCM_RIGHTS, 7}}, std::nullopt},
        {"huge", {{std::numeric_limits<Length>::max(), SOL_SOCKET, SCM_RIGHTS, 7}}, std::nullopt},
        {"no room for a descriptor", {withoutRoom}, std::nullopt},
    };
    for (const auto& [what, entries, expected] : cases) {
        EXPECT_EQ(findDescriptor(controlData(entries)), expected) << what;
    }
}

}  // namespace tessel
