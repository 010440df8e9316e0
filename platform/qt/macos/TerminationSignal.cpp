#include "platform/qt/TerminationSignal.h"

#include <signal.h>
#include <sys/event.h>

#include <QSocketNotifier>

namespace tessel {

TerminationSignal::TerminationSignal() : requests(kqueue()) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        // The queue counts a signal even though it is ignored.
        signal(number, SIG_IGN);
        struct kevent request{};
        EV_SET(&request, number, EVFILT_SIGNAL, EV_ADD, 0, 0, nullptr);
        kevent(requests.get(), &request, 1, nullptr, 0, nullptr);
    }
}

void TerminationSignal::handle(std::function<void()> handler) {
    auto* notifier = new QSocketNotifier(requests.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, handler = std::move(handler)] {
        struct kevent request{};
        const timespec noWaiting{};
        while (kevent(requests.get(), nullptr, 0, &request, 1, &noWaiting) > 0)
            handler();
    });
}

}  // namespace tessel
