#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "views/controls/Button.h"
#include "views/controls/Style.h"

namespace tessel {

class ScrollPane;

/// Asks a question or shows a message above a window. Open it with open(), which returns at once; it deletes
/// itself when it is closed.
class AlertDialog : public QDialog {
  public:
    struct Action {
        QString title;
        Button::Look look = Button::Look::bordered;
        std::function<void()> act;  ///< may be empty
    };

    struct Fields {
        QString symbol;
        Tone symbolTone = Tone::primary;
        QString symbolDescription;
        QString message;
        QString informativeText;
        /// The first one is safe: Return chooses it unless another one has the focus. Escape closes the
        /// dialog and chooses none.
        std::vector<Action> actions;
    };

    AlertDialog(const Fields& fields, QWidget* window);

  protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* makeButtons(const std::vector<Action>& actions);

    Button* safeButton = nullptr;
    ScrollPane* textPane = nullptr;
};

}  // namespace tessel
