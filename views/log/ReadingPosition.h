#pragma once

class QPlainTextEdit;

namespace tessel {

/// Returns the position in the document of the first character in view. Unlike the scroll bar's value, it
/// means the same place after lines were added or were wrapped at another width.
[[nodiscard]] int readingPosition(const QPlainTextEdit& view);

/// Returns the position after the last character.
[[nodiscard]] int endPosition(const QPlainTextEdit& view);

/// Scrolls the line of the character at this position to the top, or as near to it as the end of the text
/// allows. A position after the end means the end.
void scrollToReadingPosition(QPlainTextEdit& view, int position);

}  // namespace tessel
