#pragma once

#include <functional>

#include "text/bilingual.h"

namespace orvanta {

/// The user's situation in one sentence, and the one button to go on with.
struct Status {
  enum class Sign { None, Good, Working, Hint, Warning, Error };

  Sign sign = Sign::None;
  Bilingual sentence;
  Bilingual details = {};  ///< what else to do or know; for the tool-tip
  Bilingual caption = {};  ///< of the button; without a caption there is no button
  std::function<void()> action = {};

  /// Whether something is wrong that the user must fix first.
  bool isTrouble() const { return sign == Sign::Warning || sign == Sign::Error; }
  /// Sentence and details, line by line in both languages.
  QString wholeText() const;

  /// Whether it reads the same; what the button does goes by its caption.
  bool readsAs(const Status& other) const {
    return sign == other.sign && sentence == other.sentence && details == other.details &&
           caption == other.caption;
  }
};

}  // namespace orvanta
