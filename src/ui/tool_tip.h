#pragma once

class QPoint;
class QString;
class QWidget;

namespace orvanta {

/// Shows `text` as the tool-tip of `over`, at the global `place`: its characters as they are, never as
/// markup, since labels and file names come from untrusted packages. Long lines are broken, and a very long
/// text is cut.
void showToolTip(const QPoint& place, const QString& text, QWidget* over);

}  // namespace orvanta
