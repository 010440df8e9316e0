#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "views/controls/Button.h"
#include "views/controls/Style.h"

namespace tessel {

/// A question or a message above a window. Shown with open(), it waits for nobody and frees itself.
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
        std::vector<Action> actions;  ///< the first is the safe one: Return chooses it, Escape does nothing
    };

    AlertDialog(const Fields& fields, QWidget* window);

  private:
    QWidget* makeButtons(const std::vector<Action>& actions);
};

}  // namespace tessel
