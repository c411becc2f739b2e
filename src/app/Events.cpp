#include "app/Events.h"

namespace mv {

Events& events() {
  static Events instance;
  return instance;
}

}  // namespace mv
