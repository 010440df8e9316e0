#include "platform/DescriptorChannel.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

namespace tessel {

namespace {

/// A type that differs between systems.
using Length = decltype(cmsghdr::cmsg_len);

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

TEST(DescriptorChannelTests, onlyAWellFormedRightsEntryCounts) {
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
    for (const size_t size : {0U, 1U}) {
        auto afterShortEntry =
            controlData({{static_cast<Length>(CMSG_LEN(size)), SOL_SOCKET, SCM_RIGHTS, 7}});
        afterShortEntry.resize(CMSG_SPACE(size));
        std::ranges::copy(controlData({rights}), std::back_inserter(afterShortEntry));
        EXPECT_EQ(findDescriptor(afterShortEntry), 42);
    }
}

TEST(DescriptorChannelTests, aStaleInterruptionDoesNotHideTheEnd) {
    auto channel = DescriptorChannel::create();
    channel.sendingEnd.close();
    errno = EINTR;
    EXPECT_EQ(receiveDescriptor(channel.receivingEnd.get()).outcome, ReceivedDescriptor::Outcome::closed);
}

}  // namespace tessel
