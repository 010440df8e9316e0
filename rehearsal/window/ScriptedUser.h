#pragma once

#include <QAbstractButton>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>

#include "app/VelmoraTesselApp.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// Plays a user who takes the window through a whole write with the mouse.
class ScriptedUser {
  public:
    struct Audience {
        std::function<void(const QString& stage)> watch;  ///< called at each stage while it can be seen
        std::function<void()> listen;                     ///< called often, and finally at the end
    };

    ScriptedUser(VelmoraTesselApp& application, Audience audience) :
        application(application),
        audience(std::move(audience)) {}

    /// Writes the image that the open panel suggests to the card. Throws std::runtime_error if an operation
    /// fails, or if nothing moves for a minute. Requires: it is awaited on the main thread.
    Task<> writeSuggestedImage(std::string diskID);

  private:
    Task<> lookAround();
    Task<> chooseImage();
    Task<> chooseCard(std::string diskID);
    Task<> confirm();
    Task<> watchTheWrite();
    Task<> until(std::string expectation, std::function<bool()> isFulfilled) const;
    void click(QAbstractButton* button) const;
    void clickRow(const std::string& diskID, QPoint position) const;

    VelmoraTesselApp& application;
    Audience audience;
};

}  // namespace tessel
