#include "platform/end_requests.h"

namespace orvanta {

std::unique_ptr<EndRequests> EndRequests::create() {
  return std::make_unique<EndRequests>();
}

}  // namespace orvanta
