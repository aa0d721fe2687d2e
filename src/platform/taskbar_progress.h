#pragma once

class QWindow;

namespace orvanta {

/// Shows at the program's place in the taskbar how far a transfer is, in percent; -1 takes it away. Where the
/// taskbar shows no such thing, nothing happens. `window` is the one that the place stands for; it may be
/// null before it has been shown.
void showTaskbarProgress(const QWindow* window, int percent);

}  // namespace orvanta
