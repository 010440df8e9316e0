#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "model/SDWholeDisk.h"
#include "views/controls/Style.h"

namespace tessel {

class DisclosureButton;
class DiskInspectorContent;
class ElidedLabel;
class SymbolLabel;
class SymbolView;

/// Shows the details of the inspected disk behind one line that opens and closes them.
class DiskDetailsDisclosure : public QWidget {
  public:
    struct Fields {
        SDWholeDisk disk;
        bool isSelectedTarget = false;
        bool isExpanded = false;

        bool operator==(const Fields&) const = default;
    };

    /// `expandAction` receives whether the user wants the details open; `display` opens or closes
    /// them.
    explicit DiskDetailsDisclosure(std::function<void(bool)> expandAction);

    void display(const Fields& fields);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void buildLabel();

    std::optional<Fields> shown;
    Tone tint = Tone::blue;
    DisclosureButton* button;
    SymbolView* symbol;
    ElidedLabel* summary;
    SymbolLabel* selectedTarget;
    DiskInspectorContent* content;
};

}  // namespace tessel
