#pragma once

class QPlainTextEdit;

namespace tessel {

/// The position in the document of the first character in view. Unlike the scroll bar's value it means the
/// same place after lines were added or wrap at another width.
[[nodiscard]] int readingPosition(const QPlainTextEdit& view);

/// The position after the last character. (The document counts a last line break of its own.)
[[nodiscard]] int endPosition(const QPlainTextEdit& view);

/// Scrolls the line of this character to the top, or as near to it as the end of the text allows. A position
/// after the end means the end.
void scrollToReadingPosition(QPlainTextEdit& view, int position);

}  // namespace tessel
