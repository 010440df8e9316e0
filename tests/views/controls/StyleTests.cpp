#include "views/controls/Style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>

namespace tessel {

TEST(StyleTests, aThemesOwnFontForLabelsTakesNoTextsPlace) {
    QApplication::setFont(QFont());  // with nothing set, as a theme gives it
    QLabel label;
    label.setFont(styledFont(FontRole::body));
    QApplication::setFont(QFont("DejaVu Sans Mono"), "QLabel");
    EXPECT_EQ(QFontInfo(label.font()).family().toStdString(),
              QFontInfo(QApplication::font()).family().toStdString());
    QApplication::setFont(QFont(), "QLabel");
}

}  // namespace tessel
