#pragma once

#include <QObject>
#include <functional>

#include "platform/FileDescriptor.h"

namespace tessel {

/// Turns the polite requests to end (SIGTERM, SIGINT, SIGHUP) into calls on the main thread. To be
/// constructed before any other thread exists, or that thread might be the one that they end.
class TerminationSignal : public QObject {
  public:
    TerminationSignal();

    /// From here on, in an event loop, each request is one call. Until then requests wait.
    void handle(std::function<void()> handler);

  private:
    FileDescriptor requests;
};

}  // namespace tessel
