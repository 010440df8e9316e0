#pragma once

#include <QAbstractButton>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>

#include "app/Application.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// Plays a person who takes the window through a whole write with the mouse. Tells the watcher about each
/// stage while it can be seen.
class ScriptedUser {
  public:
    using Watcher = std::function<void(const QString& stage)>;

    ScriptedUser(Application& application, Watcher watcher) :
        application(application),
        watch(std::move(watcher)) {}

    /// Writes the image that the open panel suggests to the card. Throws std::runtime_error if the window
    /// does not do what is expected within a minute. Await it on the main thread.
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

    Application& application;
    Watcher watch;
};

}  // namespace tessel
