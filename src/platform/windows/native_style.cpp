#include "platform/host_style.h"

namespace orvanta {

const HostStyle& HostStyle::native() {
  return windows();
}

}  // namespace orvanta
