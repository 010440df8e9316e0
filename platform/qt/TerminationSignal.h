#pragma once

#include <QObject>
#include <functional>

#include "platform/FileDescriptor.h"

namespace tessel {

/// Turns polite requests to terminate (SIGTERM, SIGINT, SIGHUP) into calls on the main thread. Requires: it
/// is constructed before any other thread exists, because a request that reached such a thread would end the
/// program.
class TerminationSignal : public QObject {
  public:
    TerminationSignal();

    /// Calls the handler from the event loop after each request, including any that arrived since
    /// construction; requests that arrive together may count as one.
    void handle(std::function<void()> handler);

  private:
    FileDescriptor requests;
};

}  // namespace tessel
