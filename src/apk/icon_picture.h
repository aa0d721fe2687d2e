#pragma once

#include <QString>

namespace orvanta {

class PictureBox;

/// Draws the picture in the file at `path` into `target`, at its own size from the top left corner. Returns
/// whether it was drawn: false if the file is missing, is not a picture, or is larger than any icon.
bool ShowPicture(const QString& path, PictureBox* target);

}  // namespace orvanta
