#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// An authorization utility that does what it must not. The path that it is asked to open lists its steps:
// "send;say Resource busy;exit 1".

namespace {

using namespace std::chrono_literals;

void sendMessage(const std::vector<int>& descriptors) {
    char data = 'x';
    iovec vector{.iov_base = &data, .iov_len = 1};
    std::vector<std::byte> control(CMSG_SPACE(sizeof(int) * descriptors.size()));
    msghdr message{};
    message.msg_iov = &vector;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const cmsghdr header{CMSG_LEN(sizeof(int) * descriptors.size()), SOL_SOCKET, SCM_RIGHTS};
    std::memcpy(control.data(), &header, sizeof header);
    std::memcpy(control.data() + CMSG_LEN(0), descriptors.data(), sizeof(int) * descriptors.size());
    if (sendmsg(STDOUT_FILENO, &message, 0) != 1) std::cerr << "could not send" << std::endl;
}

int open(const std::string& target) {
    std::array<int, 2> ends{-1, -1};
    if (target == "pipe" && pipe(ends.data()) == 0) return ends[1];
    if (target == "socket" && socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0) return ends[0];
    return ::open(target.c_str(), O_RDWR);
}

void perform(const std::string& step, const std::string& detail) {
    if (step == "send") sendMessage({open(detail)});
    if (step == "send-two") sendMessage({open(detail), open(detail)});
    if (step == "send-data" && write(STDOUT_FILENO, "descriptor 7", 12) != 12) std::abort();
    if (step == "say") std::cerr << detail << std::endl;
    if (step == "say-megabyte") std::cerr << std::string(1 << 20, 'w') << std::endl;
    if (step == "say-undecodable") std::cerr << "Permission denied \xff" << std::endl;
    if (step == "close-output") close(STDOUT_FILENO);
    if (step == "wait") std::this_thread::sleep_for(300ms);
    // The descendant keeps the socket and the errors open for longer than anybody waits.
    if (step == "leave-descendant" && fork() == 0) _exit(static_cast<int>(sleep(20)));
    if (step == "be-killed") kill(getpid(), SIGKILL);
    if (step == "exit") _exit(std::stoi(detail));
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> expected{"-stdoutpipe", "-o", "2"};
    const char* locale = std::getenv("LC_ALL");
    char byte = 0;
    if (count != 5 || std::vector<std::string>(arguments + 1, arguments + 4) != expected || !locale ||
        locale != std::string("C") || read(STDIN_FILENO, &byte, 1) != 0) {
        std::cerr << "started wrongly" << std::endl;
        return 1;
    }
    std::istringstream steps(arguments[4]);
    for (std::string step; std::getline(steps, step, ';');) {
        const auto space = step.find(' ');
        perform(step.substr(0, space), space == std::string::npos ? "/dev/null" : step.substr(space + 1));
    }
    return 0;
}
