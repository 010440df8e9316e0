#pragma once

#include <QPlainTextEdit>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "views/log/LatestLineFollower.h"

namespace tessel {

/// The operation log: monospaced lines that wrap at the view's width, to be read, selected and copied. It
/// follows the latest line unless the person works in it (LatestLineFollower). Main thread only.
class OperationLogView : public QPlainTextEdit {
  public:
    /// The pause is how long after the last interaction the view follows again.
    explicit OperationLogView(std::chrono::milliseconds interactionPauseDuration);

    /// Shows the whole log, lines joined by line feeds. Lines added at its end cost no new layout of the
    /// others and leave selection and reading position alone; any other text replaces the shown one and keeps
    /// of the selection what still fits. Follows when the text or the number of entries changed.
    void setLog(std::string_view text, std::size_t entryCount);

    [[nodiscard]] bool isFollowingLatest() const { return follower->isFollowingLatest(); }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void replaceText(std::string_view text);
    void insertAtEnd(std::string_view text);

    std::string shownText;
    std::optional<std::size_t> shownEntryCount;
    LatestLineFollower* follower;
};

}  // namespace tessel
