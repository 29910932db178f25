// In the tables an assignment that cannot be computed is left out: its target keeps its value and the run
// goes on with the next one.
#pragma once

#include "engine/checked.h"

namespace tv {

// False when the formula failed or its value is not finite; the target then stands.
template <class Formula>
bool assign(double& target, Formula formula) {
  try {
    target = finite(formula());
    return true;
  } catch (const ArithmeticFailure&) {
    return false;
  }
}

}  // namespace tv
