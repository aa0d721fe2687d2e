#pragma once

#include <QString>

namespace orvanta {

class PictureBox;

/// Draws the picture in the file at `path` into `target`, at its own size from the top left corner. Returns
/// whether it was drawn: not where the file is missing, is no picture, or has more pixels a side than any
/// icon.
bool ShowPicture(const QString& path, PictureBox* target);

}  // namespace orvanta
