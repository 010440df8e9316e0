#include "platform/qt/TerminationSignal.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace tessel {

TerminationSignal::TerminationSignal() {
    sigset_t politeRequests;
    sigemptyset(&politeRequests);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&politeRequests, signal);
    pthread_sigmask(SIG_BLOCK, &politeRequests, nullptr);
    requests = FileDescriptor(signalfd(-1, &politeRequests, SFD_CLOEXEC | SFD_NONBLOCK));
}

void TerminationSignal::handle(std::function<void()> handler) {
    auto* notifier = new QSocketNotifier(requests.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, handler = std::move(handler)] {
        signalfd_siginfo request{};
        while (read(requests.get(), &request, sizeof request) > 0)
            handler();
    });
}

}  // namespace tessel
