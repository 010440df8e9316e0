#pragma once

#include <QPlainTextEdit>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "views/log/Coordinator.h"

namespace tessel {

/// Shows the operation log as monospaced lines that wrap at the view's width and can be selected and copied.
/// It keeps the latest line in view unless the reader is busy in it (see Coordinator). Use it on the
/// main thread only.
class OperationLogView : public QPlainTextEdit {
  public:
    /// The view follows the log again once this long has passed since the last interaction.
    explicit OperationLogView(std::chrono::milliseconds interactionPauseDuration);

    /// Shows the whole log, whose lines are joined by line feeds. Lines that were added at its end are laid
    /// out alone and leave the selection and the reading position as they are. Any other text replaces the
    /// one that is shown and keeps as much of the selection as fits. The view follows if the text or the
    /// number of entries has changed.
    void setLog(std::string_view text, std::size_t entryCount);

    [[nodiscard]] bool isFollowingLatest() const { return coordinator->isFollowingLatest(); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    /// Scrolls, and does not zoom, whatever keys are held.
    void wheelEvent(QWheelEvent* event) override;

  private:
    void replaceText(std::string_view text);
    void insertAtEnd(std::string_view text);

    std::string shownText;
    std::optional<std::size_t> lastEntryCount;
    Coordinator* coordinator;
};

}  // namespace tessel
