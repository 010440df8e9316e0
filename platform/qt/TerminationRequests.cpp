#include "platform/qt/TerminationRequests.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>
#include <utility>

#include "foundation/Errors.h"
#include "platform/NewDescriptors.h"

namespace tessel {

namespace {

/// The entry of the watch's pipe. A signal handler reaches only what is global.
std::atomic<int> entry = -1;

void noteRequest(int) {
    const int error = errno;
    [[maybe_unused]] const auto written = write(entry, "", 1);
    errno = error;
}

/// Handlers are not passed on to the programs that this one starts, as blocked and ignored signals would be.
class TerminationWatch : public TemporaryActivity {
  public:
    explicit TerminationWatch(std::function<void()> onRequest) :
        requests(makePipe()),
        notifier(requests.first.get(), QSocketNotifier::Read) {
        for (const auto* end : {&requests.first, &requests.second})
            fcntl(end->get(), F_SETFL, O_NONBLOCK);
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier,
                         [this, onRequest = std::move(onRequest)] {
                             std::array<char, 64> taken{};
                             while (read(requests.first.get(), taken.data(), taken.size()) > 0)
                                 onRequest();
                         });
        entry = requests.second.get();
        handleBy(SIG_DFL, noteRequest);
    }

    ~TerminationWatch() override {
        handleBy(noteRequest, SIG_DFL);
        entry = -1;
    }

  private:
    using Handler = void (*)(int);

    static void handleBy(Handler before, Handler now) {
        struct sigaction change{};
        change.sa_handler = now;
        change.sa_flags = SA_RESTART;
        for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
            struct sigaction current{};
            sigaction(signal, nullptr, &current);
            if (current.sa_handler == before) sigaction(signal, &change, nullptr);
        }
    }

    DescriptorPair requests;
    QSocketNotifier notifier;
};

}  // namespace

std::unique_ptr<TemporaryActivity> watchTerminationRequests(std::function<void()> onRequest) {
    try {
        return std::make_unique<TerminationWatch>(std::move(onRequest));
    } catch (const PlatformError&) {
        return nullptr;
    }
}

}  // namespace tessel
