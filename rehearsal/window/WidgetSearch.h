#pragma once

#include <QApplication>
#include <QWidget>
#include <vector>

namespace tessel {

/// Returns the visible widgets of a class below another widget. Works even for classes that Qt's own search
/// can't tell apart.
template <typename T>
std::vector<T*> shownWidgets(const QWidget& ancestor) {
    std::vector<T*> found;
    for (auto* widget : ancestor.findChildren<QWidget*>()) {
        if (auto* match = dynamic_cast<T*>(widget); match && match->isVisibleTo(&ancestor))
            found.push_back(match);
    }
    return found;
}

/// Returns the visible control with that text, or null.
template <typename T>
T* shownControl(const QWidget& ancestor, const QString& text) {
    for (auto* control : shownWidgets<T>(ancestor)) {
        if (control->text() == text) return control;
    }
    return nullptr;
}

}  // namespace tessel
